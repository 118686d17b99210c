#pragma once

#include "Services/Itemhub/Store/Items.h"

namespace Itemhub::Store {

/// A link by which somebody makes an account for himself.
struct Invitation
{
    qint64 id = 0, tenant = 0, workspace = 0;
    Role role = Role::Reader; ///< What the account gets there.
    QString label;            ///< Whom it is for, as the one says who invites.
    qint64 invitedBy = 0;
    QString invitedByName;
    qint64 createdAt = 0, expiresAt = 0;
};

/// @param hash of the code that stands in the link
qint64 addInvitation(Connection& connection, const Invitation& invitation, const QString& hash);
/// Those of a workspace that are still good.
[[nodiscard]] std::vector<Invitation> invitationsOf(Connection& connection, qint64 tenant, qint64 workspace,
                                                    const Page& page);
/// Nothing if there is none, it has expired, or who invited may no longer do so.
[[nodiscard]] std::optional<Invitation> findInvitation(Connection& connection, const QString& hash);
/// @returns false if the workspace has no such invitation
bool removeInvitation(Connection& connection, qint64 tenant, qint64 workspace, qint64 invitation);

} // namespace Itemhub::Store
