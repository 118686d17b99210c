#pragma once

#include "Services/Itemhub/Store/Dialect.h"

namespace Itemhub::Store {

/// PostgreSQL's dialect.
[[nodiscard]] std::unique_ptr<Dialect> postgresqlDialect(const DatabaseOptions& options);

/// The servers in libpq's form, which tries one after the other: "host=one,two" and "port=1,2".
[[nodiscard]] QStringList postgresqlServers(const DatabaseOptions& options);

} // namespace Itemhub::Store
