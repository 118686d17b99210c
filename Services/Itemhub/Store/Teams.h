#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// People of a customer who have roles together. Whoever is in it has its roles besides his own.
struct Team
{
    qint64 id = 0;
    QString name;
    Role everywhere = Role::None;
    Role here = Role::None; ///< In the workspace that was asked about, apart from `everywhere`.
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

/// What holds already is left as it is, in both.
void setInTeam(Connection& connection, qint64 team, qint64 account, bool isIn);
/// Role::None takes its role there, or its role everywhere with kAllWorkspaces.
void setTeamRole(Connection& connection, qint64 team, qint64 workspace, Role role);

} // namespace Itemhub::Store
