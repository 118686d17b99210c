#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// A customer's people who share roles. A member has the team's roles in addition to his own.
struct Team
{
    qint64 id = 0;
    QString name;
    Role everywhere = Role::None;
    Role here = Role::None; ///< In the workspace in question, apart from `everywhere`.
};

/// @throws StoreError of kind Conflict if the customer has a team of that name
qint64 addTeam(Connection& connection, qint64 tenant, const QString& name);
void removeTeam(Connection& connection, qint64 team);
[[nodiscard]] std::optional<Team> findTeam(Connection& connection, qint64 tenant, qint64 team);
[[nodiscard]] std::optional<Team> findTeam(Connection& connection, qint64 tenant, const QString& name);

/// Those of a customer, with their roles in a workspace.
[[nodiscard]] std::vector<Team> teamsOf(Connection& connection, qint64 tenant, qint64 workspace,
                                        const Page& page);
[[nodiscard]] std::vector<QString> namesOfTeam(Connection& connection, qint64 team);
[[nodiscard]] bool isInTeam(Connection& connection, qint64 team, qint64 account);

/// Both leave alone what already holds.
void setInTeam(Connection& connection, qint64 team, qint64 account, bool isIn);
/// Role::None removes the team's role there; with kAllWorkspaces, its role everywhere.
void setTeamRole(Connection& connection, qint64 team, qint64 workspace, Role role);

} // namespace Itemhub::Store
