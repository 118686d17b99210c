#pragma once

#include "Server/DataModel/Selection/Selection.h"

#include <vector>

namespace Vs {
class SelectionMgr;
}

namespace Vu::Commands {

/// Those of the selections that name an object of the model, in their order. Null gives none.
std::vector<Vs::StrongRef<Vs::LogicalSelection>> selectedObjects(Vs::SelectionMgr* manager);

/// Removes those of the selections whose paths were handled, and returns how many.
size_t takeOut(std::vector<Vs::StrongRef<Vs::LogicalSelection>>& selections,
               std::vector<Vs::ObjectPath> handled);

} // namespace Vu::Commands
