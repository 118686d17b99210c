#pragma once

namespace Itemhub::Store {

class Connection;

/// Runs the numbered files that the database hasn't seen yet, all in one transaction.
/// @throws StoreError, of kind Newer if it has seen one that this program doesn't know
void migrate(Connection& connection);

} // namespace Itemhub::Store
