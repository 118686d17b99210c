#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// Finds items visible to the account by word prefixes, best match first. One or two letters yield the
/// newest.
[[nodiscard]] std::vector<Item> search(Connection& connection, qint64 tenant, qint64 account,
                                       const QString& text, qint64 limit);

} // namespace Itemhub::Store
