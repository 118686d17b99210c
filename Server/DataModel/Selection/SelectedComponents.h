#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Selection/Selection.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace Vs {

/// Which components have selections, so that a change of a few of an asset's components costs the same
/// however much of it is selected. Valid as long as the selections are.
class SelectedComponents
{
public:
    explicit SelectedComponents(const std::vector<StrongRef<Selection>>& selections);
    void add(const Selection& selection);

    /// Whether the component of this id (Component::id), or a part of it, is selected.
    [[nodiscard]] bool has(const std::string& id) const { return m_ids.contains(id); }
    /// Whether something inside the component is selected.
    [[nodiscard]] bool hasBelow(const std::string& id) const { return m_above.contains(id); }
    /// Whether something is selected that contains the component.
    [[nodiscard]] bool hasAbove(const std::string& id) const;
    /// Whether the changes make something selected another object, or move it.
    [[nodiscard]] bool concernedBy(const ComponentsEvent::Changes& changes) const;

private:
    std::unordered_set<std::string_view> m_ids;
    std::unordered_set<std::string_view> m_above; ///< The ancestors of those of m_ids, except the root.
};

} // namespace Vs
