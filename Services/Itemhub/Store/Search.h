#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// Finds items by the beginnings of words, the best first, of those that the account may see. One or two
/// letters are answered with the newest.
[[nodiscard]] std::vector<Item> search(Connection& connection, qint64 tenant, qint64 account,
                                       const QString& text, qint64 limit);

} // namespace Itemhub::Store
