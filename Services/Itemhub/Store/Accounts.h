#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <optional>
#include <vector>

namespace Itemhub::Store {

/// What somebody may do in a workspace, or the most that a token may do; each includes the ones before it.
enum class Role : int { None = 0, Reader = 1, Writer = 2, Admin = 3 };

[[nodiscard]] QString nameOf(Role role);
[[nodiscard]] std::optional<Role> roleOf(const QString& name);

/// The workspace of a membership in all of the tenant's workspaces.
constexpr qint64 kAllWorkspaces = 0;

struct Account
{
    qint64 id = 0, tenant = 0;
    QString name, passwordHash;
    bool disabled = false;
};

/// An account with what it may do everywhere.
struct Person
{
    qint64 id = 0;
    QString name;
    Role everywhere = Role::None;
    bool disabled = false;
    qint64 createdAt = 0;
};

struct Member
{
    qint64 account = 0;
    QString name;
    Role role = Role::None;
    bool everywhere = false; ///< By a membership in all workspaces.
    QString team;            ///< The team that gives the account this role; empty for a role of its own.
};

/// @throws StoreError, of kind Conflict if the name is taken, like everything that adds something here
qint64 addTenant(Connection& connection, const QString& name);
[[nodiscard]] std::optional<qint64> findTenant(Connection& connection, const QString& name);

/// 0 for an account that doesn't exist.
[[nodiscard]] qint64 tenantOf(Connection& connection, qint64 account);

qint64 addAccount(Connection& connection, qint64 tenant, const QString& name, const QString& passwordHash);
[[nodiscard]] std::optional<Account> findAccount(Connection& connection, qint64 tenant, const QString& name);
void setPassword(Connection& connection, qint64 account, const QString& passwordHash);
void setDisabled(Connection& connection, qint64 account, bool disabled);

/// Those of a customer after an id, at most that many.
[[nodiscard]] std::vector<Person> peopleOf(Connection& connection, qint64 tenant, qint64 after, qint64 limit);

/// Role::None ends a membership.
void setMembership(Connection& connection, qint64 account, qint64 workspace, Role role);
/// The account's highest role in that workspace or in all, its own or its teams'.
[[nodiscard]] Role roleIn(Connection& connection, qint64 account, qint64 workspace);
/// An account appears once for each of its roles.
[[nodiscard]] std::vector<Member> membersOf(Connection& connection, qint64 tenant, qint64 workspace);

} // namespace Itemhub::Store
