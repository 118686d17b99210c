#include "Services/Itemhub/Routes/TeamRoutes.h"

#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Store/Teams.h"

namespace Itemhub::Routes {

namespace {

Store::Team teamOf(Call& call)
{
    const auto team = Store::findTeam(call.store, call.tenant(), call.id("team"));
    if (!team)
        throw Http::Problem(404, "no_team", "The customer has no such team.");
    return *team;
}

/// So that there is always somebody who can undo it.
void requireOthers(Call& call, const Store::Team& team)
{
    if (Store::isInTeam(call.store, team.id, call.account()))
        throw Http::Problem(409, "own_team",
                            "Nobody takes a role from a team of his own; another administrator can.");
}

/// How a change of a team's roles ends.
Http::Response changed(Call& call, const char* action, const QString& subject, qint64 workspace = 0)
{
    call.note({.kind = "member.changed", .workspace = workspace});
    call.audit(action, subject);
    return nothing();
}

Http::Response setRoleHere(Call& call, Store::Role role)
{
    return changing(call, [&] {
        const Store::Team team = teamOf(call);
        Store::setTeamRole(call.store, team.id, call.subject.workspace, role);
        return changed(call, role == Store::Role::None ? "team removed" : "team set",
                       (team.name + ' ' + Store::nameOf(role)).trimmed(), call.subject.workspace);
    });
}

} // namespace

Http::Response listTeams(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::teamsOf(call.store, call.tenant(), Store::kAllWorkspaces, page), page, "teams",
        [&call](const Store::Team& team) {
            QJsonArray members;
            for (const QString& name : Store::namesOfTeam(call.store, team.id))
                members.append(name);
            return QJsonObject{{"id", team.id},
                               {"name", team.name},
                               {"everywhere", nameOrNull(team.everywhere)},
                               {"members", members}};
        },
        [](const Store::Team& team) { return team.id; });
}

Http::Response makeTeam(Call& call)
{
    Members members(call.body);
    const QString name = members.name("name");
    members.end();
    return changing(call, [&] {
        const qint64 id = Store::addTeam(call.store, call.tenant(), name);
        call.audit("team added", name);
        return created({{"id", id}, {"name", name}, {"everywhere", QJsonValue()}, {"members", QJsonArray()}},
                       "/teams/" + std::to_string(id));
    });
}

Http::Response changeTeam(Call& call)
{
    Members members(call.body);
    const bool takes = members.has("everywhere") && call.body.value("everywhere").isNull();
    const Store::Role role = takes ? Store::Role::None : members.role("everywhere", Store::Role::None);
    members.end();
    return changing(call, [&] {
        const Store::Team team = teamOf(call);
        requireOthers(call, team);
        Store::setTeamRole(call.store, team.id, Store::kAllWorkspaces, role);
        return changed(call, "team set",
                       team.name + " all " + (takes ? QString("none") : Store::nameOf(role)));
    });
}

Http::Response deleteTeam(Call& call)
{
    return changing(call, [&] {
        const Store::Team team = teamOf(call);
        requireOthers(call, team);
        Store::removeTeam(call.store, team.id);
        return changed(call, "team dissolved", team.name);
    });
}

Http::Response addToTeam(Call& call)
{
    return changing(call, [&] {
        const Store::Team team = teamOf(call);
        const Store::Account account = call.namedAccount();
        Store::setInTeam(call.store, team.id, account.id, true);
        call.noteRolesOf(account.id, Store::kAllWorkspaces);
        call.audit("team joined", team.name + ": " + account.name);
        return nothing();
    });
}

Http::Response takeFromTeam(Call& call)
{
    return changing(call, [&] {
        const Store::Team team = teamOf(call);
        const Store::Account account = call.namedAccount();
        if (account.id == call.account())
            requireOthers(call, team);
        Store::setInTeam(call.store, team.id, account.id, false);
        call.noteRolesOf(account.id, Store::kAllWorkspaces);
        call.audit("team left", team.name + ": " + account.name);
        return nothing();
    });
}

Http::Response listTeamsOfWorkspace(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::teamsOf(call.store, call.tenant(), call.subject.workspace, page), page, "teams",
        [](const Store::Team& team) {
            return QJsonObject{{"id", team.id},
                               {"name", team.name},
                               {"role", nameOrNull(team.here)},
                               {"everywhere", nameOrNull(team.everywhere)}};
        },
        [](const Store::Team& team) { return team.id; });
}

Http::Response setTeam(Call& call)
{
    Members members(call.body);
    const Store::Role role = members.role("role", Store::Role::None);
    members.end();
    return setRoleHere(call, role);
}

Http::Response removeTeam(Call& call)
{
    return setRoleHere(call, Store::Role::None);
}

} // namespace Itemhub::Routes
