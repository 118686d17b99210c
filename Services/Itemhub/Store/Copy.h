#pragma once

#include "Services/Itemhub/Store/Database.h"

namespace Itemhub::Store {

/// Copies everything to another database, possibly of another kind, which has this program's schema version
/// but is still empty. All or nothing.
/// @throws StoreError, of kind Conflict if it isn't empty
void copyAll(Connection& from, Connection& to);

} // namespace Itemhub::Store
