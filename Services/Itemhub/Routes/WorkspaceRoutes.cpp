#include "Services/Itemhub/Routes/WorkspaceRoutes.h"

#include "Services/Itemhub/Routes/Json.h"

namespace Itemhub::Routes {

namespace {

Store::Workspace workspaceOf(Call& call, qint64 id)
{
    const auto workspace = Store::findWorkspace(call.store, call.tenant(), call.account(), id);
    if (!workspace)
        throw Http::Problem(404, "not_found", "There is no such workspace.");
    return *workspace;
}

} // namespace

Http::Response listWorkspaces(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::workspacesOf(call.reads(), call.tenant(), call.account(), page), page, "workspaces",
        [](const Store::Workspace& workspace) { return toJson(workspace); },
        [](const Store::Workspace& workspace) { return workspace.id; });
}

Http::Response makeWorkspace(Call& call)
{
    Members members(call.body);
    const QString name = members.name("name");
    members.end();
    return changing(call, [&] {
        const qint64 id = Store::addWorkspace(call.store, call.tenant(), name);
        call.note({.kind = "workspace.added", .workspace = id});
        call.audit("workspace added", name);
        return created(toJson(workspaceOf(call, id)), "/workspaces/" + std::to_string(id));
    });
}

Http::Response readWorkspace(Call& call)
{
    return answer(toJson(workspaceOf(call, call.subject.workspace)));
}

Http::Response listMembers(Call& call)
{
    QJsonArray members;
    for (const Store::Member& member : Store::membersOf(call.store, call.tenant(), call.subject.workspace)) {
        QJsonObject told{{"account", member.name},
                         {"role", Store::nameOf(member.role)},
                         {"everywhere", member.everywhere}};
        if (!member.team.isEmpty())
            told.insert("team", member.team);
        members.append(told);
    }
    return answer({{"members", members}});
}

Http::Response setMember(Call& call)
{
    Members members(call.body);
    const Store::Role role = members.role("role", Store::Role::None);
    members.end();
    return changing(call, [&] {
        const Store::Account account = call.namedAccount();
        Store::setMembership(call.store, account.id, call.subject.workspace, role);
        call.noteRolesOf(account.id, call.subject.workspace);
        call.audit("member set", account.name + ' ' + Store::nameOf(role));
        return nothing();
    });
}

Http::Response removeMember(Call& call)
{
    return changing(call, [&] {
        const Store::Account account = call.namedAccount();
        Store::setMembership(call.store, account.id, call.subject.workspace, Store::Role::None);
        call.noteRolesOf(account.id, call.subject.workspace);
        call.audit("member removed", account.name);
        return nothing();
    });
}

} // namespace Itemhub::Routes
