#pragma once

#include "Server/Scene/Node.h"
#include "Server/Scene/Private/Probe.h"

#include <memory>
#include <utility>
#include <vector>

namespace Vs::Scene {

/// The tree of the children of a group, by their indices in GroupNode::children; null for a group of few.
/// Kept as long as no child is moved, added or removed. Main thread only.
std::shared_ptr<const BoxTree> childTree(const Rendra::Graphics::GroupNode& group);

/// Finds the visible bodies near a probe, except ghosts (Node::ghost).
template <class Visit>
class BodySearch
{
public:
    using Path = std::vector<const Rendra::Graphics::Node*>;

    /// `visit(const BodyNode&, const Probe&, const Path&)` gets the probe in the body's coordinates and the
    /// nodes from the searched one down to the body. Nothing is searched beyond `limit`, a place along the
    /// probe that visits may lower.
    BodySearch(const double& limit, Visit visit) : m_limit(limit), m_visit(std::move(visit)) {}

    /// `above` is in the coordinates of the group that contains the node.
    void search(const Rendra::Graphics::Node& node, const Probe& above) { search(node, above, false); }

private:
    void search(const Rendra::Graphics::Node& node, const Probe& above, bool ghost)
    {
        if (!node.visible() || node.boundingBox().isEmpty() ||
            !(above.enter(node.boundingBox()) < std::min(m_limit, BoxTree::kNever)))
            return;
        const Probe probe = above.transformed(node.transform().inverse());
        ghost = node.ghost().value_or(ghost);
        m_path.push_back(&node);
        if (const auto* group = cast<Rendra::Graphics::GroupNode>(&node))
            searchChildren(*group, probe, ghost);
        else if (const auto* body = cast<Rendra::Graphics::BodyNode>(&node); body && body->mesh() && !ghost)
            m_visit(*body, probe, std::as_const(m_path));
        m_path.pop_back();
    }

    void searchChildren(const Rendra::Graphics::GroupNode& group, const Probe& probe, bool ghost)
    {
        const auto& children = group.children();
        if (const auto tree = childTree(group)) {
            tree->search(
                m_limit, [&](const BoxTree::Box& box) { return probe.enter(box); },
                [&](uint32_t child) { search(*children[child], probe, ghost); });
            return;
        }
        for (const auto& child : children)
            search(*child, probe, ghost);
    }

    const double& m_limit;
    Visit m_visit;
    Path m_path;
};

} // namespace Vs::Scene
