#include "Server/Scene/Outermost.h"

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Node;

namespace {

class OutermostSearch
{
public:
    explicit OutermostSearch(const GkVector3d& direction) : m_direction(direction) {}

    void search(const Node& node, const GkMatrix3d& above) { search(node, above, lengthsIn(above)); }
    const std::optional<GkPoint3d>& found() const { return m_found; }

private:
    /// How far points lie in the direction, from their coordinates under a matrix: computed once for the
    /// direction, instead of transforming each point into the world.
    struct Lengths
    {
        double origin, x, y, z;

        double at(double px, double py, double pz) const { return origin + px * x + py * y + pz * z; }
        double ofFarthest(const BBox& box) const
        {
            const GkPoint3d &low = box.low(), &high = box.high();
            return at(x > 0 ? high.x : low.x, y > 0 ? high.y : low.y, z > 0 ? high.z : low.z);
        }
    };

    Lengths lengthsIn(const GkMatrix3d& toWorld) const
    {
        const auto part = [&](const GkVector3d& axis) { return (toWorld * axis).dotProduct(m_direction); };
        return {(toWorld * GkPoint3d::kOrigin).asVector().dotProduct(m_direction), part(GkVector3d::kXAxis),
                part(GkVector3d::kYAxis), part(GkVector3d::kZAxis)};
    }

    void search(const Node& node, const GkMatrix3d& above, const Lengths& lengths)
    {
        if (!node.visible() || node.boundingBox().isEmpty() ||
            (m_found && lengths.ofFarthest(node.boundingBox()) <= m_farthest))
            return;
        const GkMatrix3d toWorld = above * node.transform();
        const Lengths within = lengthsIn(toWorld);
        if (const auto* group = cast<GroupNode>(&node)) {
            for (const auto& child : group->children())
                search(*child, toWorld, within);
        } else if (const auto* body = cast<BodyNode>(&node); body && body->mesh()) {
            take(body->mesh()->positions, toWorld, within);
            take(body->mesh()->edgePoints, toWorld, within);
            take(body->mesh()->vertexPoints, toWorld, within);
        } else {
            eachCorner(node.boundingBox(), above, [&](const GkPoint3d& corner) { take(corner); });
        }
    }

    template <class Visit>
    static void eachCorner(const BBox& box, const GkMatrix3d& toWorld, Visit&& visit)
    {
        for (int i = 0; i < 8; ++i)
            visit(toWorld * GkPoint3d(i & 1 ? box.high().x : box.low().x, i & 2 ? box.high().y : box.low().y,
                                      i & 4 ? box.high().z : box.low().z));
    }
    void take(const GkPoint3d& point)
    {
        const double along = point.asVector().dotProduct(m_direction);
        if (m_found && along <= m_farthest)
            return;
        m_farthest = along;
        m_found = point;
    }
    void take(const std::vector<float>& points, const GkMatrix3d& toWorld, const Lengths& lengths)
    {
        size_t best = points.size();
        double farthest = m_found ? m_farthest : 0;
        for (size_t i = 0; i + 2 < points.size(); i += 3) {
            const double along = lengths.at(points[i], points[i + 1], points[i + 2]);
            if (along <= farthest && (m_found || best < points.size()))
                continue;
            farthest = along;
            best = i;
        }
        if (best < points.size())
            take(toWorld * GkPoint3d(points[best], points[best + 1], points[best + 2]));
    }

    GkVector3d m_direction;
    std::optional<GkPoint3d> m_found;
    double m_farthest = 0; ///< How far it lies in the direction.
};

} // namespace

std::optional<GkPoint3d> outermostPoint(const Node& node, const GkVector3d& direction)
{
    OutermostSearch search(direction);
    search.search(node, GkMatrix3d());
    return search.found();
}

} // namespace Vs::Scene
