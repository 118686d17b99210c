#pragma once

#include "Server/Itemhub/Client/Redmine/Issue.h"
#include "Server/Itemhub/Client/Redmine/Tracker.h"

#include <map>
#include <mutex>
#include <optional>
#include <set>

namespace Vs::Itemhub::Redmine {

/// Reads from a tracker that serve more than one purpose. Any thread.
class Reader
{
public:
    struct User
    {
        std::int64_t id = 0;
        std::string name;
        bool isAdmin = false;
        std::map<std::int64_t, std::set<std::int64_t>> roles; ///< By project.
    };

    explicit Reader(Tracker& tracker);

    /// Who is signed in; asked once.
    [[nodiscard]] User me(const Watch& watch);
    /// The next call asks again who is signed in.
    void forget();
    [[nodiscard]] NameOf names(const Watch& watch);
    [[nodiscard]] Issue issue(std::int64_t id, const std::string& doing, const Watch& watch);
    /// What the user may do in a project, in the terms of Workspace::role.
    [[nodiscard]] std::string roleIn(const JsonReader& project, const User& me, const Watch& watch);

private:
    Tracker& m_tracker;
    std::mutex m_mutex;
    std::optional<User> m_me;
};

} // namespace Vs::Itemhub::Redmine
