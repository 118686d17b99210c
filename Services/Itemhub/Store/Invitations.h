#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// A link by which somebody can create his own account.
struct Invitation
{
    qint64 id = 0, tenant = 0, workspace = 0;
    Role role = Role::Reader; ///< The role that the account gets.
    QString label;            ///< Whom it is for, in the words of the inviter.
    qint64 invitedBy = 0;
    QString invitedByName;
    qint64 createdAt = 0, expiresAt = 0;
};

/// @param hash of the code in the link
qint64 addInvitation(Connection& connection, const Invitation& invitation, const QString& hash);
/// Those of a workspace that are still valid.
[[nodiscard]] std::vector<Invitation> invitationsOf(Connection& connection, qint64 tenant, qint64 workspace,
                                                    const Page& page);
/// Nothing if there is none, it has expired, or the inviter may no longer invite.
[[nodiscard]] std::optional<Invitation> findInvitation(Connection& connection, const QString& hash);
/// @returns false if the workspace has no such invitation
bool removeInvitation(Connection& connection, qint64 tenant, qint64 workspace, qint64 invitation);

} // namespace Itemhub::Store
