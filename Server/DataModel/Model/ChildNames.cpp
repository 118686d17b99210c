#include "Server/DataModel/Model/ChildNames.h"

#include "Server/Base/NumberText.h"
#include "Server/Component/ComponentIds.h"

#include <algorithm>

namespace Vs {

namespace {

/// Where a child stands, or would stand, among those of its name.
auto rowOf(auto& children, const Component& child)
{
    return std::partition_point(
        children.begin(), children.end(),
        [own = lastNumber(child.id)](const Component* other) { return lastNumber(other->id) < own; });
}

} // namespace

ChildNames::ChildNames(const Component& parent)
{
    for (const auto& child : parent.children)
        m_children[child->name.text()].push_back(child.get());
}

std::span<const Component* const> ChildNames::named(std::wstring_view name) const
{
    const auto found = m_children.find(name);
    return found == m_children.end() ? std::span<const Component* const>() : found->second;
}

size_t ChildNames::place(const Component& child) const
{
    const auto& children = m_children.find(child.name.text())->second;
    return static_cast<size_t>(rowOf(children, child) - children.begin());
}

std::wstring ChildNames::free(const std::wstring& beginning)
{
    unsigned& number = m_taken.try_emplace(beginning, 1).first->second;
    while (m_children.contains(beginning + std::to_wstring(number)))
        ++number;
    return beginning + std::to_wstring(number);
}

void ChildNames::add(const Component& child)
{
    auto& children = m_children[child.name.text()];
    children.insert(rowOf(children, child), &child);
}

void ChildNames::remove(const Component& child)
{
    const auto found = m_children.find(child.name.text());
    found->second.erase(rowOf(found->second, child));
    if (!found->second.empty())
        return;
    m_children.erase(found);
    for (auto& [beginning, taken] : m_taken)
        if (child.name.text().starts_with(beginning))
            if (const auto number =
                    readNumber<unsigned>(std::wstring_view(child.name.text()).substr(beginning.size())))
                taken = std::clamp(*number, 1u, taken);
}

} // namespace Vs
