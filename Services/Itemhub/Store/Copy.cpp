#include "Services/Itemhub/Store/Copy.h"

#include "Services/Itemhub/Store/Items.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>

#include <array>
#include <string>

namespace Itemhub::Store {

namespace {

struct Table
{
    const char* name;
    const char* number; ///< The column of generated numbers; null if there is none.
};

/// Referenced rows come before those that refer to them.
constexpr std::array<Table, 28> kTables{{{"tenant", "id"},
                                         {"account", "id"},
                                         {"workspace", "id"},
                                         {"membership", nullptr},
                                         {"consumer", "id"},
                                         {"token", "id"},
                                         {"nonce", nullptr},
                                         {"throttle", nullptr},
                                         {"item", "id"},
                                         {"item_link", nullptr},
                                         {"comment", "id"},
                                         {"favourite", nullptr},
                                         {"blob", nullptr},
                                         {"attachment", "id"},
                                         {"version", nullptr},
                                         {"upload", nullptr},
                                         {"idempotency", nullptr},
                                         {"event", "serial"},
                                         {"audit", "id"},
                                         {"sign_in_code", nullptr},
                                         {"page_link", nullptr},
                                         {"program_request", "id"},
                                         {"invitation", "id"},
                                         {"identity", nullptr},
                                         {"provider_visit", nullptr},
                                         {"team", "id"},
                                         {"team_member", nullptr},
                                         {"team_role", nullptr}}};

void require(bool good, const QSqlQuery& query, const char* table)
{
    if (!good)
        throw StoreError(StoreError::Kind::Other, std::string("The table ") + table + " cannot be copied: " +
                                                      query.lastError().text().toStdString());
}

QString insertion(const char* table, const QSqlRecord& columns)
{
    QStringList names, places;
    for (int i = 0; i < columns.count(); ++i) {
        names << columns.fieldName(i);
        places << "?";
    }
    return QString("INSERT INTO %1 (%2) VALUES (%3)").arg(table, names.join(", "), places.join(", "));
}

void copy(const Table& table, Connection& from, Connection& to)
{
    QSqlQuery read(from.link());
    read.setForwardOnly(true);
    require(read.exec(QString("SELECT * FROM %1").arg(table.name)), read, table.name);
    QSqlQuery write(to.link());
    const int columns = read.record().count();
    require(write.prepare(insertion(table.name, read.record())), write, table.name);
    while (read.next()) {
        for (int i = 0; i < columns; ++i)
            write.bindValue(i, read.value(i));
        require(write.exec(), write, table.name);
    }
    if (table.number)
        if (const QString next = to.dialect().afterNumbers(table.name, table.number); !next.isEmpty())
            to.runPlain(next);
}

void indexAll(Connection& to)
{
    const auto numbers = [&to](const char* statement) {
        return allOf(to.run(statement), [](const Rows& rows) { return rows.number(0); });
    };
    for (const qint64 tenant : numbers("SELECT id FROM tenant"))
        for (const QString& statement : to.dialect().makeSearch(tenant))
            to.runPlain(statement);
    const auto items = allOf(to.run("SELECT tenant_id, id FROM item WHERE deleted_at IS NULL"),
                             [](const Rows& rows) { return std::pair(rows.number(0), rows.number(1)); });
    for (const auto& [tenant, item] : items)
        indexItem(to, tenant, item);
}

} // namespace

void copyAll(Connection& from, Connection& to)
{
    // A consistent snapshot, even if others change the source meanwhile.
    Transaction still(from), change(to);
    if (to.run("SELECT 1 FROM tenant").next())
        throw StoreError(StoreError::Kind::Conflict, "The other database has customers already.");
    for (const Table& table : kTables)
        copy(table, from, to);
    indexAll(to);
    change.commit();
}

} // namespace Itemhub::Store
