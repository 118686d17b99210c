#pragma once

#include "Services/Itemhub/Store/Dialect.h"

namespace Itemhub::Store {

/// SQLite's dialect.
[[nodiscard]] std::unique_ptr<Dialect> sqliteDialect(const DatabaseOptions& options);

} // namespace Itemhub::Store
