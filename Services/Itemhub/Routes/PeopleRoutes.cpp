#include "Services/Itemhub/Routes/PeopleRoutes.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Access/Secrets.h"
#include "Services/Itemhub/Routes/DashboardRoutes.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Store/Invitations.h"

namespace Itemhub::Routes {

namespace {

constexpr qint64 kDayMs = 24LL * 3600 * 1000;

QJsonObject toJson(const Store::Person& person)
{
    return {{"id", person.id},
            {"account", person.name},
            {"everywhere", nameOrNull(person.everywhere)},
            {"disabled", person.disabled},
            {"createdAt", timeText(person.createdAt)}};
}

QJsonObject toJson(const Store::Invitation& invitation)
{
    return {{"id", invitation.id},
            {"label", invitation.label},
            {"role", Store::nameOf(invitation.role)},
            {"invitedBy", invitation.invitedByName},
            {"createdAt", timeText(invitation.createdAt)},
            {"expiresAt", timeText(invitation.expiresAt)}};
}

QJsonObject toJson(const Store::AuditRecord& record)
{
    return {{"id", record.id},           {"account", record.account}, {"action", record.action},
            {"subject", record.subject}, {"address", record.address}, {"at", timeText(record.at)}};
}

} // namespace

Http::Response listAccounts(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::peopleOf(call.reads(), call.tenant(), page.after, page.limit), page, "accounts",
        [](const Store::Person& person) { return toJson(person); },
        [](const Store::Person& person) { return person.id; });
}

Http::Response changeAccount(Call& call)
{
    Members members(call.body);
    const auto disabled = members.flag("disabled");
    const bool changesRole = members.has("everywhere");
    const bool takesRole = changesRole && call.body.value("everywhere").isNull();
    const Store::Role role =
        changesRole && !takesRole ? members.role("everywhere", Store::Role::None) : Store::Role::None;
    members.end();
    const Store::Account account = call.namedAccount();
    // So that there is always somebody who can undo it.
    if (account.id == call.account())
        throw Http::Problem(409, "own_account", "Nobody changes his own account; another administrator can.");
    return changing(call, [&] {
        if (disabled) {
            Store::setDisabled(call.store, account.id, *disabled);
            call.audit(*disabled ? "account disabled" : "account enabled", account.name);
        }
        if (changesRole) {
            Store::setMembership(call.store, account.id, Store::kAllWorkspaces, role);
            call.audit("member set", account.name + " all " +
                                         (role == Store::Role::None ? QString("none") : Store::nameOf(role)));
        }
        call.noteRolesOf(account.id, Store::kAllWorkspaces);
        return nothing();
    });
}

Http::Response listAudit(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::auditOf(call.reads(), call.tenant(), page), page, "records",
        [](const Store::AuditRecord& record) { return toJson(record); },
        [](const Store::AuditRecord& record) { return record.id; });
}

Http::Response listInvitations(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::invitationsOf(call.store, call.tenant(), call.subject.workspace, page), page, "invitations",
        [](const Store::Invitation& invitation) { return toJson(invitation); },
        [](const Store::Invitation& invitation) { return invitation.id; });
}

Http::Response makeInvitation(Call& call)
{
    constexpr size_t kCodeBytes = 32;
    constexpr qint64 kUsualDays = 7, kMostDays = 30;
    Members members(call.body);
    Store::Invitation invitation{.tenant = call.tenant(), .workspace = call.subject.workspace};
    invitation.label = members.name("label");
    invitation.role = members.role("role", Store::Role::Reader);
    invitation.invitedBy = call.account();
    invitation.invitedByName = call.caller.accountName;
    invitation.createdAt = Store::now();
    invitation.expiresAt =
        invitation.createdAt + members.number("days", 1, kMostDays).value_or(kUsualDays) * kDayMs;
    members.end();
    QString code = Access::randomText(kCodeBytes);
    return changing(call, [&] {
        invitation.id = Store::addInvitation(call.store, invitation, Access::hashOf(code));
        call.audit("invitation made", invitation.label + ' ' + Store::nameOf(invitation.role));
        QJsonObject made = toJson(invitation);
        made.insert("url", QString::fromStdString(pageBase(call)) + "/dashboard/join?code=" + code);
        return created(made, "/workspaces/" + std::to_string(invitation.workspace) + "/invitations");
    });
}

Http::Response deleteInvitation(Call& call)
{
    return changing(call, [&] {
        if (!Store::removeInvitation(call.store, call.tenant(), call.subject.workspace,
                                     call.id("invitation")))
            throw Http::Problem(404, "not_found", "The workspace has no such invitation.");
        call.audit("invitation removed", call.text("invitation"));
        return nothing();
    });
}

} // namespace Itemhub::Routes
