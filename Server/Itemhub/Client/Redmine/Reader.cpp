#include "Server/Itemhub/Client/Redmine/Reader.h"

namespace Vs::Itemhub::Redmine {

Reader::Reader(Tracker& tracker) : m_tracker(tracker) {}

void Reader::forget()
{
    const std::lock_guard lock(m_mutex);
    m_me.reset();
}

Reader::User Reader::me(const Watch& watch)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_me)
            return *m_me;
    }
    const JsonReader answer =
        m_tracker.get("users/current.json", {{"include", "memberships"}}, "Signing in", watch);
    const JsonReader json(answer.object("user"), answer.action());
    User user;
    user.id = json.id("id");
    user.name = json.text("login");
    user.isAdmin = json.has("admin") && json.flag("admin");
    for (const auto& each : json.list("memberships")) {
        const JsonReader membership(each.toObject(), json.action());
        const std::int64_t project = JsonReader(membership.object("project"), json.action()).id("id");
        for (const auto& role : membership.list("roles"))
            user.roles[project].insert(JsonReader(role.toObject(), json.action()).id("id"));
    }
    const std::lock_guard lock(m_mutex);
    m_me = user;
    return user;
}

// Others have the names that the tracker shows; the user has the login name, which is unique.
NameOf Reader::names(const Watch& watch)
{
    return [me = me(watch)](const JsonReader& person) {
        return person.has("id") && person.id("id") == me.id ? me.name : person.text("name");
    };
}

std::string Reader::roleIn(const JsonReader& project, const User& me, const Watch& watch)
{
    constexpr std::int64_t kActive = 1;
    if (project.number("status", 0) != kActive)
        return "reader";
    if (me.isAdmin)
        return "admin";
    std::set<std::string> may;
    const auto roles = me.roles.find(project.id("id"));
    if (roles == me.roles.end())
        return "reader";
    for (const std::int64_t role : roles->second) {
        const JsonReader answer = m_tracker.get("roles/" + std::to_string(role) + ".json", {},
                                                "Reading the role " + std::to_string(role), watch);
        for (const auto& permission : answer.object("role")["permissions"].toArray())
            may.insert(permission.toString().toStdString());
    }
    // Anyone who may write notes may attach files.
    if (!may.contains("add_issues") || (!may.contains("edit_issues") && !may.contains("add_issue_notes")))
        return "reader";
    return may.contains("manage_members") ? "admin" : "writer";
}

Issue Reader::issue(std::int64_t id, const std::string& doing, const Watch& watch)
{
    const JsonReader answer = m_tracker.get("issues/" + std::to_string(id) + ".json",
                                            {{"include", "attachments,journals"}}, doing, watch);
    return issueOf({answer.object("issue"), answer.action()}, names(watch));
}

} // namespace Vs::Itemhub::Redmine
