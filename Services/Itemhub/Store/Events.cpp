#include "Services/Itemhub/Store/Events.h"

#include <algorithm>
#include <limits>
#include <string>

namespace Itemhub::Store {

namespace {

QVariant idOrNull(qint64 id)
{
    return id ? QVariant(id) : QVariant();
}

/// In batches, so that nobody has to wait long. Rows are ordered by number, and thus by time, so only the
/// oldest are examined.
void removeBefore(Connection& connection, const char* table, const char* number, qint64 time)
{
    const QString statement = QString("DELETE FROM %1 WHERE %2 < (SELECT min(%2) FROM %1) + 1000 AND %2 < "
                                      "coalesce((SELECT %2 FROM %1 WHERE created_at >= ? ORDER BY %2 LIMIT "
                                      "1), (SELECT max(%2) FROM %1))")
                                  .arg(table, number);
    while (connection.runBuilt(statement, {time}).changed() > 0) {
    }
}

} // namespace

void addEvent(Connection& connection, qint64 tenant, qint64 account, const NewEvent& event)
{
    if (const QString first = connection.dialect().beforeEvent(); !first.isEmpty())
        connection.runBuilt(first);
    connection.run(
        "INSERT INTO event (tenant_id, workspace_id, account_id, audience_id, kind, item_id, attachment_id, "
        "version, created_at, request_id) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {tenant, event.workspace, account, idOrNull(event.forSelf ? account : event.forAccount),
         QString(event.kind), idOrNull(event.item), idOrNull(event.attachment), idOrNull(event.version),
         now(), idOrNull(event.request)});
    if (const QString last = connection.dialect().afterEvent(); !last.isEmpty())
        connection.runBuilt(last);
}

std::vector<Event> eventsAfter(Connection& connection, qint64 tenant, qint64 account, const Page& page)
{
    std::vector<Event> events;
    Rows rows = connection.run(
        "SELECT e.serial, e.kind, e.workspace_id, e.item_id, e.attachment_id, e.version, a.name, "
        "e.created_at, e.request_id FROM event e JOIN account a ON a.id = e.account_id WHERE e.tenant_id = ? "
        "AND "
        "e.serial > ? AND (e.audience_id = ? OR (e.audience_id IS NULL AND EXISTS (SELECT 1 FROM "
        "held_role m WHERE m.account_id = ? AND m.workspace_id IN (0, e.workspace_id)))) "
        "ORDER BY e.serial LIMIT ?",
        {tenant, page.after, account, account, page.limit});
    while (rows.next())
        events.push_back({rows.number(0), rows.text(1), rows.number(2), rows.number(3), rows.number(4),
                          rows.number(5), rows.text(6), rows.number(7), rows.number(8)});
    return events;
}

qint64 lastSerial(Connection& connection)
{
    Rows rows = connection.run("SELECT coalesce(max(serial), 0) FROM event");
    return rows.next() ? rows.number(0) : 0;
}

void removeEventsBefore(Connection& connection, qint64 time)
{
    removeBefore(connection, "event", "serial", time);
}

void addAudit(Connection& connection, qint64 tenant, qint64 account, const QString& action,
              const QString& subject, const QString& address)
{
    constexpr qsizetype kSubject = 255, kAddress = 64;
    connection.run(
        "INSERT INTO audit (tenant_id, account_id, action, subject, address, created_at) "
        "VALUES (?, ?, ?, ?, ?, ?)",
        {idOrNull(tenant), idOrNull(account), action, subject.left(kSubject), address.left(kAddress), now()});
}

namespace {

const std::string kAudit = "SELECT u.id, t.name, a.name, u.action, u.subject, u.address, u.created_at FROM "
                           "audit u LEFT JOIN tenant t ON t.id = u.tenant_id LEFT JOIN account a ON a.id = "
                           "u.account_id ";
const std::string kAuditTrail = kAudit + "ORDER BY u.id DESC LIMIT ?";
const std::string kAuditOf = kAudit + "WHERE u.tenant_id = ? AND u.id < ? ORDER BY u.id DESC LIMIT ?";

AuditRecord recordOf(const Rows& rows)
{
    return {rows.number(0), rows.text(1), rows.text(2),  rows.text(3),
            rows.text(4),   rows.text(5), rows.number(6)};
}

} // namespace

std::vector<AuditRecord> auditTrail(Connection& connection, qint64 limit)
{
    auto records = allOf(connection.run(kAuditTrail, {limit}), recordOf);
    std::reverse(records.begin(), records.end());
    return records;
}

std::vector<AuditRecord> auditOf(Connection& connection, qint64 tenant, const Page& page)
{
    const qint64 before = page.after ? page.after : std::numeric_limits<qint64>::max();
    return allOf(connection.run(kAuditOf, {tenant, before, page.limit}), recordOf);
}

void removeAuditBefore(Connection& connection, qint64 time)
{
    removeBefore(connection, "audit", "id", time);
}

} // namespace Itemhub::Store
