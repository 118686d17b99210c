#include "Server/DataModel/Exchange/WantedParts.h"

#include "Server/Body/Body.h"

#include <algorithm>

namespace Vs::Exchange {
namespace {

bool hasHidden(const Component& component)
{
    return !component.visible ||
           std::ranges::any_of(component.children, [](const auto& child) { return hasHidden(*child); });
}

void collectHidden(const std::vector<PartTree::Node>& nodes, std::vector<std::string>& hidden)
{
    for (const PartTree::Node& node : nodes)
        if (node.visible)
            collectHidden(node.children, hidden);
        else
            hidden.push_back(node.id);
}

} // namespace

WantedParts::WantedParts(const Component& root, TranslatorSaveOptions& options)
    : m_visibleOnly(options.visibleOnly()), m_listed(options.components()), m_root(&root)
{
    if (m_listed.empty() && !(m_visibleOnly && hasHidden(root)))
        return;
    m_copy = wanted(root, m_listed.empty() || isListed(root));
    m_root = m_copy.get();
}

bool WantedParts::isListed(const Component& component) const
{
    return std::ranges::find(m_listed, component.id) != m_listed.end();
}

std::unique_ptr<Component> WantedParts::wanted(const Component& component, bool isIn)
{
    if (m_visibleOnly && !component.visible)
        return nullptr;
    auto copy = std::make_unique<Component>();
    copy->id = component.id;
    copy->name = component.name;
    copy->placement = component.placement;
    copy->colour = component.colour;
    if (isIn)
        copy->body = component.body;
    for (const auto& child : component.children) {
        const bool isChildIn = isIn || isListed(*child);
        auto kept = wanted(*child, isChildIn);
        if (!kept)
            continue;
        if (isChildIn && (!isIn || &component == m_root))
            m_tops.push_back(child->id);
        copy->children.push_back(std::move(kept));
    }
    return copy->body || !copy->children.empty() ? std::move(copy) : nullptr;
}

std::vector<std::string> WantedParts::unwanted(const PartTree& copies) const
{
    std::vector<std::string> hidden;
    if (m_visibleOnly)
        collectHidden(copies.roots, hidden);
    return hidden;
}

} // namespace Vs::Exchange
