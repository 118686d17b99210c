#pragma once

#include "Services/Itemhub/Store/Dialect.h"

namespace Itemhub::Store {

/// What is particular about PostgreSQL.
[[nodiscard]] std::unique_ptr<Dialect> postgresqlDialect(const DatabaseOptions& options);

/// The servers as libpq wants them, which tries one after the other: "host=one,two" and "port=1,2".
[[nodiscard]] QStringList postgresqlServers(const DatabaseOptions& options);

} // namespace Itemhub::Store
