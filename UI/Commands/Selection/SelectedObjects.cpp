#include "UI/Commands/Selection/SelectedObjects.h"

#include "Server/DataModel/Selection/SelectionMgr.h"

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

} // namespace Vu::Commands
