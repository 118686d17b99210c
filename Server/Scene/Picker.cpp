#include "Server/Scene/Picker.h"

#include "Server/Scene/MeshTree.h"

#include <algorithm>
#include <cmath>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Node;

namespace {

/// In the coordinates of the group that the searched node hangs under. The direction keeps its length through
/// all transformations, so that places along the ray can be compared wherever they were found.
struct Ray
{
    GkPoint3d start;
    GkVector3d direction;

    Ray transformed(const GkMatrix3d& matrix) const { return {matrix * start, matrix * direction}; }
};

bool isFinite(const GkVector3d& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// Whether the ray meets the box before `limit`.
bool meets(const Ray& ray, const BBox& box, double limit)
{
    double from = 0, to = limit;
    const double start[3] = {ray.start.x, ray.start.y, ray.start.z};
    const double direction[3] = {ray.direction.x, ray.direction.y, ray.direction.z};
    const double low[3] = {box.low().x, box.low().y, box.low().z};
    const double high[3] = {box.high().x, box.high().y, box.high().z};
    for (int i = 0; i < 3; ++i) {
        if (direction[i] == 0) {
            if (start[i] < low[i] || start[i] > high[i])
                return false;
            continue;
        }
        const double a = (low[i] - start[i]) / direction[i], b = (high[i] - start[i]) / direction[i];
        from = std::max(from, std::min(a, b));
        to = std::min(to, std::max(a, b));
    }
    // A flat box has no depth, and rounding may turn what is left around.
    return from <= to * (1 + 1e-12) + 1e-12;
}

class Search
{
public:
    explicit Search(const Ray& ray) : m_ray(ray) {}

    void visit(const Node& node, const Ray& above)
    {
        if (!node.visible() || node.boundingBox().isEmpty() || !meets(above, node.boundingBox(), m_limit))
            return;
        const Ray ray = above.transformed(node.transform().inverse());
        m_path.push_back(&node);
        if (const auto* group = cast<GroupNode>(&node)) {
            for (const auto& child : group->children())
                visit(*child, ray);
        } else if (const auto* body = cast<BodyNode>(&node)) {
            visitMesh(body->mesh(), ray);
        }
        m_path.pop_back();
    }

    std::optional<PickedPoint> result() const
    {
        if (m_found.empty())
            return std::nullopt;
        PickedPoint picked;
        for (const Node* node : m_found) {
            picked.localToWorld = picked.localToWorld * node->transform();
            picked.path.emplace_back(const_cast<Node*>(node));
        }
        picked.path.erase(picked.path.begin());
        const Ray local = m_ray.transformed(picked.localToWorld.inverse());
        picked.along = m_limit;
        picked.localPoint = local.start + local.direction * m_limit;
        picked.localNormal = m_normal.normal();
        if (picked.localNormal.dotProduct(local.direction) > 0)
            picked.localNormal = -picked.localNormal;
        return picked;
    }

private:
    void visitMesh(const std::shared_ptr<const BodyMesh>& mesh, const Ray& ray)
    {
        MeshTree::Hit hit{};
        bool nearer = false;
        if (const MeshTree* tree = MeshTree::of(mesh)) {
            nearer = tree->meet(*mesh, ray.start, ray.direction, m_limit, hit);
        } else {
            hit.along = m_limit;
            for (uint32_t i = 0; i < mesh->triangles.size() / 3; ++i) {
                const double along = meetTriangle(*mesh, i, ray.start, ray.direction);
                if (along < 0 || along >= hit.along)
                    continue;
                hit = {along, i};
                nearer = true;
            }
        }
        if (!nearer)
            return;
        m_limit = hit.along;
        const auto corner = [&](size_t index) {
            const float* p = &mesh->positions[size_t(mesh->triangles[size_t(hit.triangle) * 3 + index]) * 3];
            return GkPoint3d(p[0], p[1], p[2]);
        };
        m_normal = (corner(1) - corner(0)).crossProduct(corner(2) - corner(0));
        m_found = m_path;
    }

    Ray m_ray;
    double m_limit = 1e300;
    GkVector3d m_normal;
    std::vector<const Node*> m_path, m_found;
};

} // namespace

std::optional<PickedPoint> pick(const Node& root, const GkPoint3d& start, const GkVector3d& direction)
{
    if (!isFinite(start.asVector()) || !isFinite(direction) || direction.lengthSqrd() == 0)
        return std::nullopt;
    const Ray ray{start, direction};
    Search search(ray);
    search.visit(root, ray);
    return search.result();
}

} // namespace Vs::Scene
