#pragma once

#include "Services/Itemhub/Store/Dialect.h"

namespace Itemhub::Store {

/// What is particular about PostgreSQL.
[[nodiscard]] std::unique_ptr<Dialect> postgresqlDialect(const DatabaseOptions& options);

} // namespace Itemhub::Store
