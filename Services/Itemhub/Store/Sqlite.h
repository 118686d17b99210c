#pragma once

#include "Services/Itemhub/Store/Dialect.h"

namespace Itemhub::Store {

/// What is particular about SQLite.
[[nodiscard]] std::unique_ptr<Dialect> sqliteDialect(const DatabaseOptions& options);

} // namespace Itemhub::Store
