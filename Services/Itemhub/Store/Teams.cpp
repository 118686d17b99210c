#include "Services/Itemhub/Store/Teams.h"

namespace Itemhub::Store {

namespace {

// The first value of each statement is the workspace in question.
const std::string kSelect =
    "SELECT t.id, t.name, e.role, h.role FROM team t LEFT JOIN team_role e ON e.team_id = t.id AND "
    "e.workspace_id = 0 LEFT JOIN team_role h ON h.team_id = t.id AND h.workspace_id <> 0 AND "
    "h.workspace_id = ? WHERE t.tenant_id = ? AND ";
const std::string kOne = kSelect + "t.id = ?";
const std::string kNamed = kSelect + "t.name = ?";
const std::string kAll = kSelect + "t.id > ? ORDER BY t.id LIMIT ?";

Team teamOf(const Rows& rows)
{
    return {rows.number(0), rows.text(1), static_cast<Role>(rows.number(2)),
            static_cast<Role>(rows.number(3))};
}

} // namespace

qint64 addTeam(Connection& connection, qint64 tenant, const QString& name)
{
    return newId(
        connection.run("INSERT INTO team (tenant_id, name, created_at) VALUES (?, ?, ?) RETURNING id",
                       {tenant, name, now()}));
}

void removeTeam(Connection& connection, qint64 team)
{
    Transaction change(connection);
    connection.run("DELETE FROM team_role WHERE team_id = ?", {team});
    connection.run("DELETE FROM team_member WHERE team_id = ?", {team});
    connection.run("DELETE FROM team WHERE id = ?", {team});
    change.commit();
}

std::optional<Team> findTeam(Connection& connection, qint64 tenant, qint64 team)
{
    return firstOf(connection.run(kOne, {kAllWorkspaces, tenant, team}), teamOf);
}

std::optional<Team> findTeam(Connection& connection, qint64 tenant, const QString& name)
{
    return firstOf(connection.run(kNamed, {kAllWorkspaces, tenant, name}), teamOf);
}

std::vector<Team> teamsOf(Connection& connection, qint64 tenant, qint64 workspace, const Page& page)
{
    return allOf(connection.run(kAll, {workspace, tenant, page.after, page.limit}), teamOf);
}

std::vector<QString> namesOfTeam(Connection& connection, qint64 team)
{
    return allOf(connection.run("SELECT a.name FROM team_member m JOIN account a ON a.id = m.account_id "
                                "WHERE m.team_id = ? ORDER BY a.name",
                                {team}),
                 [](const Rows& rows) { return rows.text(0); });
}

bool isInTeam(Connection& connection, qint64 team, qint64 account)
{
    return connection.run("SELECT 1 FROM team_member WHERE team_id = ? AND account_id = ?", {team, account})
        .next();
}

void setInTeam(Connection& connection, qint64 team, qint64 account, bool isIn)
{
    if (isIn)
        connection.run("INSERT INTO team_member (team_id, account_id) VALUES (?, ?) ON CONFLICT DO NOTHING",
                       {team, account});
    else
        connection.run("DELETE FROM team_member WHERE team_id = ? AND account_id = ?", {team, account});
}

void setTeamRole(Connection& connection, qint64 team, qint64 workspace, Role role)
{
    Transaction change(connection);
    connection.run("DELETE FROM team_role WHERE team_id = ? AND workspace_id = ?", {team, workspace});
    if (role != Role::None)
        connection.run("INSERT INTO team_role (team_id, workspace_id, role) VALUES (?, ?, ?)",
                       {team, workspace, static_cast<int>(role)});
    change.commit();
}

} // namespace Itemhub::Store
