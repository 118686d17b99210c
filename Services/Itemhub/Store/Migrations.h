#pragma once

namespace Itemhub::Store {

class Connection;

/// Runs the numbered files that haven't been applied to the database yet, all in one transaction.
/// @throws StoreError, of kind Newer if one was applied that this program doesn't know
void migrate(Connection& connection);

} // namespace Itemhub::Store
