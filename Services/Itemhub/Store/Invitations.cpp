#include "Services/Itemhub/Store/Invitations.h"

namespace Itemhub::Store {

namespace {

const std::string kSelect =
    "SELECT n.id, n.tenant_id, n.workspace_id, n.role, n.label, n.invited_by, a.name, n.created_at, "
    "n.expires_at FROM invitation n JOIN account a ON a.id = n.invited_by WHERE n.expires_at > ? AND ";
const std::string kOfWorkspace =
    kSelect + "n.tenant_id = ? AND n.workspace_id = ? AND n.id > ? ORDER BY n.id LIMIT ?";
const std::string kByHash = kSelect + "n.hash = ? AND a.disabled = 0";

Invitation invitationOf(const Rows& rows)
{
    return {rows.number(0), rows.number(1), rows.number(2), static_cast<Role>(rows.number(3)),
            rows.text(4),   rows.number(5), rows.text(6),   rows.number(7),
            rows.number(8)};
}

} // namespace

qint64 addInvitation(Connection& connection, const Invitation& invitation, const QString& hash)
{
    connection.run("DELETE FROM invitation WHERE expires_at < ?", {now()});
    return newId(connection.run(
        "INSERT INTO invitation (hash, tenant_id, workspace_id, role, label, invited_by, created_at, "
        "expires_at) VALUES (?, ?, ?, ?, ?, ?, ?, ?) RETURNING id",
        {hash, invitation.tenant, invitation.workspace, static_cast<int>(invitation.role), invitation.label,
         invitation.invitedBy, now(), invitation.expiresAt}));
}

std::vector<Invitation> invitationsOf(Connection& connection, qint64 tenant, qint64 workspace,
                                      const Page& page)
{
    return allOf(connection.run(kOfWorkspace, {now(), tenant, workspace, page.after, page.limit}),
                 invitationOf);
}

std::optional<Invitation> findInvitation(Connection& connection, const QString& hash)
{
    const auto found = firstOf(connection.run(kByHash, {now(), hash}), invitationOf);
    return found && roleIn(connection, found->invitedBy, found->workspace) == Role::Admin ? found
                                                                                          : std::nullopt;
}

bool removeInvitation(Connection& connection, qint64 tenant, qint64 workspace, qint64 invitation)
{
    return connection
               .run("DELETE FROM invitation WHERE tenant_id = ? AND workspace_id = ? AND id = ?",
                    {tenant, workspace, invitation})
               .changed() > 0;
}

} // namespace Itemhub::Store
