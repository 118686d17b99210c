#pragma once

#include "Services/Itemhub/Store/Database.h"

namespace Itemhub::Store {

/// Copies everything into another database, which may be of another kind, and is brought up to this program's
/// version but has nothing in it yet. All of it or nothing gets there.
/// @throws StoreError, of kind Conflict if something is there
void copyAll(Connection& from, Connection& to);

} // namespace Itemhub::Store
