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

    void search(const Node& node, const GkMatrix3d& above)
    {
        if (!node.visible() || node.boundingBox().isEmpty() || !mayGoBeyond(node.boundingBox(), above))
            return;
        const GkMatrix3d toWorld = above * node.transform();
        if (const auto* group = cast<GroupNode>(&node)) {
            for (const auto& child : group->children())
                search(*child, toWorld);
        } else if (const auto* body = cast<BodyNode>(&node); body && body->mesh()) {
            take(body->mesh()->positions, toWorld);
            take(body->mesh()->edgePoints, toWorld);
            take(body->mesh()->vertexPoints, toWorld);
        } else {
            eachCorner(node.boundingBox(), above, [&](const GkPoint3d& corner) { take(corner); });
        }
    }
    const std::optional<GkPoint3d>& found() const { return m_found; }

private:
    template <class Visit>
    static void eachCorner(const BBox& box, const GkMatrix3d& toWorld, Visit&& visit)
    {
        for (int i = 0; i < 8; ++i)
            visit(toWorld * GkPoint3d(i & 1 ? box.high().x : box.low().x, i & 2 ? box.high().y : box.low().y,
                                      i & 4 ? box.high().z : box.low().z));
    }
    bool mayGoBeyond(const BBox& box, const GkMatrix3d& toWorld) const
    {
        bool beyond = !m_found;
        if (!beyond)
            eachCorner(box, toWorld, [&](const GkPoint3d& corner) {
                beyond = beyond || corner.asVector().dotProduct(m_direction) > m_farthest;
            });
        return beyond;
    }
    void take(const GkPoint3d& point)
    {
        const double along = point.asVector().dotProduct(m_direction);
        if (m_found && along <= m_farthest)
            return;
        m_farthest = along;
        m_found = point;
    }
    // The direction goes into the body's coordinates once, in place of each point out of them.
    void take(const std::vector<float>& points, const GkMatrix3d& toWorld)
    {
        const GkPoint3d origin = toWorld * GkPoint3d::kOrigin;
        const auto part = [&](const GkVector3d& axis) { return (toWorld * axis).dotProduct(m_direction); };
        const double x = part(GkVector3d::kXAxis), y = part(GkVector3d::kYAxis), z = part(GkVector3d::kZAxis);
        size_t best = points.size();
        double farthest = m_found ? m_farthest - origin.asVector().dotProduct(m_direction) : 0;
        for (size_t i = 0; i + 2 < points.size(); i += 3) {
            const double along = points[i] * x + points[i + 1] * y + points[i + 2] * z;
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
