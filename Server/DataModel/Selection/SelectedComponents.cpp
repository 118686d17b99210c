#include "Server/DataModel/Selection/SelectedComponents.h"

#include "Server/Component/Component.h"
#include "Server/Component/ComponentIds.h"

#include <algorithm>

namespace Vs {

SelectedComponents::SelectedComponents(const std::vector<StrongRef<Selection>>& selections)
{
    m_ids.reserve(selections.size());
    for (const auto& selection : selections)
        add(*selection);
}

void SelectedComponents::add(const Selection& selection)
{
    const auto* logical = cast<LogicalSelection>(&selection);
    if (!logical || !m_ids.insert(logical->componentId()).second)
        return;
    std::string_view above = logical->componentId();
    for (size_t slash = above.rfind('/'); slash != above.npos; slash = above.rfind('/')) {
        above = above.substr(0, slash);
        if (!m_above.insert(above).second)
            break;
    }
}

bool SelectedComponents::hasAbove(const std::string& id) const
{
    for (std::string above = id; !above.empty();) {
        above = parentId(above);
        if (m_ids.contains(above))
            return true;
    }
    return false;
}

bool SelectedComponents::concernedBy(const ComponentsEvent::Changes& changes) const
{
    const auto concerns = [this](const std::string& id) { return has(id) || hasBelow(id) || hasAbove(id); };
    return changes.all || std::ranges::any_of(changes.removed, concerns) ||
           std::ranges::any_of(changes.changed, concerns, &Component::id) ||
           std::ranges::any_of(
               changes.added, [this](const std::string& id) { return hasAbove(id); }, &Component::id);
}

} // namespace Vs
