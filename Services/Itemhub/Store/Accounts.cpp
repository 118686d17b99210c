#include "Services/Itemhub/Store/Accounts.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Itemhub::Store {

namespace {

constexpr std::array<std::pair<Role, const char*>, 3> kRoles{
    {{Role::Reader, "reader"}, {Role::Writer, "writer"}, {Role::Admin, "admin"}}};

} // namespace

QString nameOf(Role role)
{
    for (const auto& [each, name] : kRoles)
        if (each == role)
            return name;
    return {};
}

std::optional<Role> roleOf(const QString& name)
{
    for (const auto& [role, each] : kRoles)
        if (name == QLatin1String(each))
            return role;
    return std::nullopt;
}

qint64 addTenant(Connection& connection, const QString& name)
{
    Transaction change(connection);
    qint64 tenant = 0;
    {
        Rows rows =
            connection.run("INSERT INTO tenant (name, created_at) VALUES (?, ?) RETURNING id", {name, now()});
        tenant = rows.next() ? rows.number(0) : 0;
    }
    for (const QString& statement : connection.dialect().makeSearch(tenant))
        connection.runPlain(statement);
    change.commit();
    return tenant;
}

std::optional<qint64> findTenant(Connection& connection, const QString& name)
{
    Rows rows = connection.run("SELECT id FROM tenant WHERE name = ?", {name});
    return rows.next() ? std::optional(rows.number(0)) : std::nullopt;
}

qint64 tenantOf(Connection& connection, qint64 account)
{
    Rows rows = connection.run("SELECT tenant_id FROM account WHERE id = ?", {account});
    return rows.next() ? rows.number(0) : 0;
}

qint64 addAccount(Connection& connection, qint64 tenant, const QString& name, const QString& passwordHash)
{
    Rows rows =
        connection.run("INSERT INTO account (tenant_id, name, password_hash, created_at) VALUES (?, ?, ?, ?) "
                       "RETURNING id",
                       {tenant, name, passwordHash, now()});
    return rows.next() ? rows.number(0) : 0;
}

std::optional<Account> findAccount(Connection& connection, qint64 tenant, const QString& name)
{
    Rows rows = connection.run("SELECT id, tenant_id, name, password_hash, disabled FROM account "
                               "WHERE tenant_id = ? AND name = ?",
                               {tenant, name});
    if (!rows.next())
        return std::nullopt;
    return Account{rows.number(0), rows.number(1), rows.text(2), rows.text(3), rows.number(4) != 0};
}

void setPassword(Connection& connection, qint64 account, const QString& passwordHash)
{
    connection.run("UPDATE account SET password_hash = ? WHERE id = ?", {passwordHash, account});
}

void setDisabled(Connection& connection, qint64 account, bool disabled)
{
    connection.run("UPDATE account SET disabled = ? WHERE id = ?", {disabled ? 1 : 0, account});
}

std::vector<Person> peopleOf(Connection& connection, qint64 tenant, qint64 after, qint64 limit)
{
    return allOf(connection.run("SELECT a.id, a.name, m.role, a.disabled, a.created_at FROM account a LEFT "
                                "JOIN membership m ON m.account_id = a.id AND m.workspace_id = 0 WHERE "
                                "a.tenant_id = ? AND a.id > ? ORDER BY a.id LIMIT ?",
                                {tenant, after, limit}),
                 [](const Rows& rows) {
                     return Person{rows.number(0), rows.text(1), static_cast<Role>(rows.number(2)),
                                   rows.number(3) != 0, rows.number(4)};
                 });
}

void setMembership(Connection& connection, qint64 account, qint64 workspace, Role role)
{
    Transaction change(connection);
    connection.run("DELETE FROM membership WHERE account_id = ? AND workspace_id = ?", {account, workspace});
    if (role != Role::None)
        connection.run("INSERT INTO membership (account_id, workspace_id, role) VALUES (?, ?, ?)",
                       {account, workspace, static_cast<int>(role)});
    change.commit();
}

Role roleIn(Connection& connection, qint64 account, qint64 workspace)
{
    Rows rows = connection.run("SELECT coalesce(max(role), 0) FROM held_role WHERE account_id = ? AND "
                               "workspace_id IN (0, ?)",
                               {account, workspace});
    return rows.next() ? static_cast<Role>(rows.number(0)) : Role::None;
}

std::vector<Member> membersOf(Connection& connection, qint64 tenant, qint64 workspace)
{
    return allOf(connection.run(
                     "SELECT a.id, a.name, m.role, m.workspace_id, t.name FROM held_role m JOIN account a ON "
                     "a.id = m.account_id LEFT JOIN team t ON t.id = m.team_id WHERE a.tenant_id = ? AND "
                     "m.workspace_id IN (0, ?) ORDER BY a.name, m.workspace_id, t.id",
                     {tenant, workspace}),
                 [](const Rows& rows) {
                     return Member{rows.number(0), rows.text(1), static_cast<Role>(rows.number(2)),
                                   rows.number(3) == kAllWorkspaces, rows.text(4)};
                 });
}

} // namespace Itemhub::Store
