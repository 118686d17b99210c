#include "Services/Itemhub/Store/Dialect.h"

#include "Services/Itemhub/Store/Postgresql.h"
#include "Services/Itemhub/Store/Sqlite.h"

namespace Itemhub::Store {

std::unique_ptr<Dialect> Dialect::of(const DatabaseOptions& options)
{
    return options.driver == "postgresql" ? postgresqlDialect(options) : sqliteDialect(options);
}

QString Dialect::quoted(const QString& text)
{
    return '\'' + QString(text).replace('\'', "''") + '\'';
}

} // namespace Itemhub::Store
