#include "Server/Scene/NodeChange.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GeometryNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::InstanceNode;
using Rendra::Graphics::Node;

namespace {

bool hangsUnder(const Node* node, const Node* above)
{
    if (node == above)
        return true;
    const auto* group = cast<GroupNode>(above);
    return group && std::any_of(group->children().begin(), group->children().end(),
                                [&](const auto& child) { return hangsUnder(node, child.get()); });
}

/// A circle with this many segments looks round at any size that a reticle has.
constexpr int kLinesOfCircle = 180;

} // namespace

StrongRef<GeometryNode> NodeChange::createLODGeometryNode(GroupNode* parent, bool)
{
    StrongRef<GeometryNode> node = GeometryNode::make();
    if (parent)
        NodeChange(parent).add(node);
    return node;
}

StrongRef<InstanceNode> NodeChange::createInstanceNode(GroupNode* parent, bool)
{
    StrongRef<InstanceNode> node = InstanceNode::make();
    if (parent)
        NodeChange(parent).add(node);
    return node;
}

StrongRef<InstanceNode> NodeChange::createGroupNode(GroupNode* parent, int, bool, bool transient)
{
    return createInstanceNode(parent, transient);
}

NodeChange& NodeChange::name(const std::string& name)
{
    // It isn't shown anywhere, so nothing needs to be redrawn.
    if (name != m_node->name())
        m_node->rare().name = name;
    return *this;
}

NodeChange& NodeChange::owner(const void* owner)
{
    m_node->m_owner = owner;
    return *this;
}

NodeChange& NodeChange::expect(size_t coming)
{
    auto* group = cast<GroupNode>(m_node);
    if (group && coming > group->m_children.size())
        group->m_children.reserve(group->m_children.size() + coming);
    return *this;
}

NodeChange& NodeChange::transform(const GkPlacement& transform)
{
    if (!(m_node->m_place == transform)) {
        m_node->m_place = transform;
        m_node->touch();
    }
    return *this;
}

// What can be picked doesn't affect the look.
NodeChange& NodeChange::ghost(std::optional<bool> ghost)
{
    if (m_node->m_ghost != ghost) {
        m_node->m_ghost = ghost;
        m_node->touch();
    }
    return *this;
}

NodeChange& NodeChange::transform(const GkPoint3d& point)
{
    const bool isPlace = std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
    return isPlace ? transform(GkPlacement(GkMatrix3d::translation(point.asVector()))) : *this;
}

NodeChange& NodeChange::visible(bool visible)
{
    if (m_node->m_visible != visible) {
        m_node->m_visible = visible;
        m_node->touch();
    }
    return *this;
}

NodeChange& NodeChange::colour(const std::optional<Colour>& colour)
{
    if (m_node->m_colour != colour) {
        m_node->m_colour = colour;
        m_node->touchLook();
    }
    return *this;
}

NodeChange& NodeChange::highlight(Rendra::Graphics::Highlight highlight)
{
    if (m_node->m_highlight != highlight) {
        m_node->m_highlight = highlight;
        m_node->touchLook();
    }
    return *this;
}

NodeChange& NodeChange::mesh(std::shared_ptr<const BodyMesh> mesh)
{
    auto* body = cast<BodyNode>(m_node);
    if (body && body->m_mesh != mesh) {
        body->m_mesh = std::move(mesh);
        body->touch();
    }
    return *this;
}

NodeChange& NodeChange::bodyColour(const Colour& colour)
{
    auto* body = cast<BodyNode>(m_node);
    if (body && body->m_bodyColour != colour) {
        body->m_bodyColour = colour;
        body->touchLook();
    }
    return *this;
}

NodeChange& NodeChange::litParts(std::vector<Rendra::Graphics::LitPart> parts)
{
    auto* body = cast<BodyNode>(m_node);
    if (body && body->litParts() != parts) {
        body->rare().litParts = std::move(parts);
        body->touchLook();
    }
    return *this;
}

NodeChange& NodeChange::polyline(std::vector<GkPoint3d> points)
{
    if (auto* geometry = cast<GeometryNode>(m_node)) {
        geometry->m_polylines.push_back(std::move(points));
        geometry->touch();
    }
    return *this;
}

NodeChange& NodeChange::arc(const GkPoint3d& centre, const GkVector3d& normal, const GkVector3d& reference,
                            double from, double to, int clientType)
{
    auto* geometry = cast<GeometryNode>(m_node);
    if (!geometry || !std::isfinite(from) || !std::isfinite(to))
        return *this;
    const double turns = std::min(1.0, std::abs(to - from) / (2 * std::numbers::pi));
    const int lines = std::max(1, int(std::ceil(turns * kLinesOfCircle)));
    std::vector<GkPoint3d> points;
    for (int i = 0; i <= lines; ++i) {
        GkVector3d spoke = reference;
        points.push_back(centre + spoke.rotateBy(from + (to - from) * i / lines, normal));
    }
    geometry->m_clientType = clientType;
    return polyline(std::move(points));
}

NodeChange& NodeChange::texture(std::shared_ptr<const Rendra::Graphics::Texture> texture)
{
    auto* geometry = cast<GeometryNode>(m_node);
    if (geometry && geometry->m_texture != texture) {
        geometry->m_texture = std::move(texture);
        geometry->touch();
    }
    return *this;
}

NodeChange& NodeChange::billBoard(const GkPoint3d& origin, const GkVector3d& normal,
                                  Rendra::Graphics::EBillboard kind)
{
    if (auto* geometry = cast<GeometryNode>(m_node)) {
        geometry->m_billboard = {origin, normal, kind};
        geometry->touch();
    }
    return *this;
}

NodeChange& NodeChange::depthPriority(int priority)
{
    auto* geometry = cast<GeometryNode>(m_node);
    if (geometry && geometry->m_depthPriority != priority) {
        geometry->m_depthPriority = priority;
        geometry->touch();
    }
    return *this;
}

NodeChange& NodeChange::countsInBounds(bool counts)
{
    auto* geometry = cast<GeometryNode>(m_node);
    if (geometry && geometry->m_countsInBounds != counts) {
        geometry->m_countsInBounds = counts;
        geometry->touch();
    }
    return *this;
}

NodeChange& NodeChange::lineStyle(float weight, const Colour& colour)
{
    if (auto* instance = cast<InstanceNode>(m_node)) {
        instance->m_lineStyle = {weight, colour};
        instance->touch();
    }
    return *this;
}

NodeChange& NodeChange::occludedEffect(const std::string& name, const Colour& colour, float opacity)
{
    if (auto* instance = cast<InstanceNode>(m_node)) {
        instance->m_occludedEffect = {name, colour, opacity};
        instance->touch();
    }
    return *this;
}

NodeChange& NodeChange::add(StrongRef<Node> child)
{
    auto* group = cast<GroupNode>(m_node);
    // Only a group that has parents can be below its new child.
    if (!group || !child || group->has(child.get()) || child.get() == group ||
        (group->m_parent && cast<GroupNode>(child.get()) && hangsUnder(group, child.get())))
        return *this;
    child->hangsUnder(group);
    group->m_children.push_back(std::move(child));
    group->touchChildren();
    return *this;
}

NodeChange& NodeChange::remove(const Node* child)
{
    auto* group = cast<GroupNode>(m_node);
    if (!group || !child || !group->has(child))
        return *this;
    // What was added last is the most likely to be removed, as by an undo.
    const auto found = std::find_if(group->m_children.rbegin(), group->m_children.rend(),
                                    [&](const auto& other) { return other.get() == child; });
    (*found)->losesParent(group);
    group->m_children.erase(std::next(found).base());
    group->touchChildren();
    return *this;
}

NodeChange& NodeChange::removeAll()
{
    auto* group = cast<GroupNode>(m_node);
    if (!group || group->m_children.empty())
        return *this;
    for (const auto& child : group->m_children)
        child->losesParent(group);
    group->m_children.clear();
    group->touchChildren();
    return *this;
}

NodeChange& NodeChange::data(std::unique_ptr<Rendra::Graphics::NodeData> data)
{
    if (auto* group = cast<GroupNode>(m_node))
        group->m_data = std::move(data);
    return *this;
}

NodeChange& NodeChange::clearSource()
{
    auto* group = cast<GroupNode>(m_node);
    if (group && group->data())
        group->data()->clearSource();
    return *this;
}

} // namespace Vs::Scene
