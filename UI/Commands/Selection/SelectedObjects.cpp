#include "UI/Commands/Selection/SelectedObjects.h"

#include "Server/DataModel/Selection/SelectionMgr.h"

#include <algorithm>
#include <tuple>

namespace Vu::Commands {

std::vector<Vs::StrongRef<Vs::LogicalSelection>> selectedObjects(Vs::SelectionMgr* manager)
{
    std::vector<Vs::StrongRef<Vs::LogicalSelection>> objects;
    if (manager)
        for (const auto& selection : manager->selectionSet().selections())
            if (auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get()))
                objects.emplace_back(logical);
    return objects;
}

// All of a hundred thousand may be handled at once.
size_t takeOut(std::vector<Vs::StrongRef<Vs::LogicalSelection>>& selections,
               std::vector<Vs::ObjectPath> handled)
{
    const auto before = [](const Vs::ObjectPath& a, const Vs::ObjectPath& b) {
        return std::tie(a.component, a.leaf, a.index) < std::tie(b.component, b.leaf, b.index);
    };
    std::ranges::sort(handled, before);
    return std::erase_if(selections, [&](const auto& selection) {
        return std::ranges::binary_search(handled, selection->path(), before);
    });
}

} // namespace Vu::Commands
