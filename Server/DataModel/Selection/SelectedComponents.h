#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Selection/Selection.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace Vs {

/// Of which components there are selections, so that a change of few of an asset's components costs the same
/// however much of it is selected. Good as long as the selections are.
class SelectedComponents
{
public:
    explicit SelectedComponents(const std::vector<StrongRef<Selection>>& selections);
    void add(const Selection& selection);

    /// Whether the component of this id (Component::id), or a part of it, is selected.
    [[nodiscard]] bool has(const std::string& id) const { return m_ids.contains(id); }
    /// Whether something is selected that lies in the component.
    [[nodiscard]] bool hasBelow(const std::string& id) const { return m_above.contains(id); }
    /// Whether something is selected that the component lies in.
    [[nodiscard]] bool hasAbove(const std::string& id) const;
    /// Whether something that is selected isn't what it was, or not where, after the changes.
    [[nodiscard]] bool concernedBy(const ComponentsEvent::Changes& changes) const;

private:
    std::unordered_set<std::string_view> m_ids;
    std::unordered_set<std::string_view> m_above; ///< What those of m_ids lie in, but for the root.
};

} // namespace Vs
