#include "Services/Itemhub/Store/Migrations.h"

#include "Services/Itemhub/Store/Database.h"

#include <QDir>
#include <QFile>

#include <map>

namespace Itemhub::Store {

namespace {

/// By number.
std::map<qint64, QString> files()
{
    std::map<qint64, QString> found;
    const QDir folder(":/migrations");
    for (const QString& name : folder.entryList({"*.sql"}))
        found.emplace(name.section('_', 0, 0).toLongLong(), folder.filePath(name));
    return found;
}

QStringList statementsOf(const QString& path, const Dialect& dialect)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw StoreError(StoreError::Kind::Other, "A migration is missing: " + path.toStdString());
    QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    lines.removeIf([](const QString& line) { return line.startsWith("--"); });
    QStringList statements = dialect.expanded(lines.join('\n')).split(";\n");
    statements.removeIf([](const QString& statement) { return statement.trimmed().isEmpty(); });
    return statements;
}

qint64 versionOf(Connection& connection)
{
    Rows rows = connection.run("SELECT coalesce(max(number), 0) FROM schema_version");
    return rows.next() ? rows.number(0) : 0;
}

} // namespace

namespace {

void bringUp(Connection& connection)
{
    const std::map<qint64, QString> known = files();
    // Outside of a transaction, so that a start with nothing to do writes nothing.
    connection.runPlain("CREATE TABLE IF NOT EXISTS schema_version (number BIGINT NOT NULL PRIMARY KEY, "
                        "applied_at BIGINT NOT NULL)");
    if (versionOf(connection) < known.rbegin()->first) {
        // All under one lock: if two programs start at once, the second finds nothing to do.
        Transaction change(connection);
        const qint64 version = versionOf(connection);
        for (const auto& [number, path] : known) {
            if (number <= version)
                continue;
            for (const QString& statement : statementsOf(path, connection.dialect()))
                connection.runPlain(statement);
            connection.run("INSERT INTO schema_version (number, applied_at) VALUES (?, ?)", {number, now()});
        }
        change.commit();
    }
    if (const qint64 version = versionOf(connection); version > known.rbegin()->first)
        throw StoreError(StoreError::Kind::Newer, "The database has version " + std::to_string(version) +
                                                      ", and this program knows up to " +
                                                      std::to_string(known.rbegin()->first) +
                                                      ": use the newer program, or a backup.");
}

} // namespace

void migrate(Connection& connection)
{
    // On failure the program ends, and the lock with its connection.
    for (const QString& statement : connection.dialect().beforeMigrations())
        connection.runPlain(statement);
    bringUp(connection);
    for (const QString& statement : connection.dialect().afterMigrations())
        connection.runPlain(statement);
}

} // namespace Itemhub::Store
