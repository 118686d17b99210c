#include "Services/Itemhub/Store/Subjects.h"

#include "Services/Itemhub/Store/Memo.h"

#include <string>
#include <utility>

namespace Itemhub::Store {

namespace {

std::string select(const char* columns, const char* from, const char* where)
{
    return std::string("SELECT ") + columns + ", (SELECT coalesce(max(m.role), 0) FROM held_role m WHERE " +
           "m.account_id = ? AND m.workspace_id IN (0, w.id)) FROM " + from + " WHERE " + where +
           " AND w.tenant_id = ?";
}

const std::string kWorkspace = select("w.id, 0, 0", "workspace w", "w.id = ?");
const std::string kAttachment =
    select("w.id, i.id, t.id",
           "attachment t JOIN item i ON i.id = t.item_id JOIN workspace w ON w.id = i.workspace_id",
           "t.id = ? AND t.deleted_at IS NULL AND i.deleted_at IS NULL");
const std::string kComment = select(
    "w.id, i.id, 0", "comment c JOIN item i ON i.id = c.item_id JOIN workspace w ON w.id = i.workspace_id",
    "c.id = ? AND i.deleted_at IS NULL");

std::optional<Subject> find(Connection& connection, const std::string& statement, qint64 tenant,
                            qint64 account, qint64 id)
{
    Rows rows = connection.run(statement, {account, id, tenant});
    if (!rows.next())
        return std::nullopt;
    return Subject{.workspace = rows.number(0),
                   .item = rows.number(1),
                   .attachment = rows.number(2),
                   .role = static_cast<Role>(rows.number(3))};
}

} // namespace

std::optional<Subject> aboutWorkspace(Connection& connection, qint64 tenant, qint64 account, qint64 id)
{
    return find(connection, kWorkspace, tenant, account, id);
}

namespace {

std::optional<Subject> readItem(Connection& connection, qint64 tenant, qint64 account, qint64 id)
{
    auto found = findItemAndRole(connection, tenant, account, id);
    if (!found)
        return std::nullopt;
    Subject subject{.workspace = found->item.workspace, .item = id, .role = found->role};
    subject.read = std::move(found->item);
    return subject;
}

} // namespace

std::optional<Subject> aboutItem(Connection& connection, qint64 tenant, qint64 account, qint64 id)
{
    thread_local Memo<std::pair<qint64, qint64>, Subject> known(1024);
    return known.get(connection, {account, id}, [&] { return readItem(connection, tenant, account, id); });
}

std::optional<Subject> aboutAttachment(Connection& connection, qint64 tenant, qint64 account, qint64 id)
{
    return find(connection, kAttachment, tenant, account, id);
}

std::optional<Subject> aboutComment(Connection& connection, qint64 tenant, qint64 account, qint64 id)
{
    return find(connection, kComment, tenant, account, id);
}

Role highestRole(Connection& connection, qint64 account)
{
    Rows rows =
        connection.run("SELECT coalesce(max(role), 0) FROM held_role WHERE account_id = ?", {account});
    return rows.next() ? static_cast<Role>(rows.number(0)) : Role::None;
}

} // namespace Itemhub::Store
