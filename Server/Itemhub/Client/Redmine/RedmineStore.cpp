#include "Server/Itemhub/Client/Redmine/RedmineStore.h"

#include "Server/Itemhub/Client/Answers.h"
#include "Server/Itemhub/Client/Fetch.h"

#include <algorithm>

namespace Vs::Itemhub::Redmine {
namespace {

using Kind = Web::ItemhubException::Kind;
using Network::Answer;

constexpr const char* kAnyStatus = "*";
constexpr const char* kMostFavourites = "100";

std::string numbered(const char* what, std::int64_t id)
{
    return std::string(what) + ' ' + std::to_string(id);
}

std::string issuePath(std::int64_t id, const char* rest = ".json")
{
    return "issues/" + std::to_string(id) + rest;
}

/// The tracker stores line ends the way browsers send them.
std::string plain(const std::string& text)
{
    QString plain = QString::fromStdString(text);
    return plain.remove('\r').trimmed().toStdString();
}

} // namespace

RedmineStore::RedmineStore(const Access& access)
    : m_tracker(access), m_reader(m_tracker), m_versions(m_tracker, m_reader), m_changes(m_tracker, m_reader)
{
}

Account RedmineStore::account(const Watch& watch)
{
    m_reader.forget();
    return {m_reader.me(watch).name, {}, {}};
}

void RedmineStore::signOut()
{
    // The key is the user's own and shared by all of his programs, so it isn't revoked.
}

std::vector<Web::Workspace> RedmineStore::workspaces(const Watch& watch)
{
    const Reader::User user = m_reader.me(watch);
    std::vector<Web::Workspace> found;
    for (const JsonReader& project :
         m_tracker.list("projects.json", "projects", {}, "Listing the projects", watch))
        found.emplace_back(project.id("id"), project.text("name"), m_reader.roleIn(project, user, watch));
    return found;
}

Web::Workspace RedmineStore::workspace(std::int64_t id, const Watch& watch)
{
    const JsonReader answer = m_tracker.get("projects/" + std::to_string(id) + ".json", {},
                                            numbered("Reading the project", id), watch);
    const JsonReader project(answer.object("project"), answer.action());
    return {project.id("id"), project.text("name"), m_reader.roleIn(project, m_reader.me(watch), watch)};
}

std::set<std::int64_t> RedmineStore::watched(const Watch& watch)
{
    std::set<std::int64_t> ids;
    for (const JsonReader& issue : m_tracker.list(
             "issues.json", "issues", {{"watcher_id", "me"}, {"status_id", kAnyStatus}, {"sort", "id"}},
             "Listing the favourites", watch))
        ids.insert(issue.id("id"));
    return ids;
}

std::vector<Web::Item> RedmineStore::itemsOf(const std::vector<JsonReader>& issues, const Watch& watch)
{
    if (issues.empty())
        return {};
    const std::set<std::int64_t> favourites = watched(watch);
    const NameOf nameOf = m_reader.names(watch);
    std::vector<Web::Item> found;
    for (const JsonReader& issue : issues) {
        Web::ItemValues values = itemOf(issue, nameOf);
        values.isFavourite = favourites.contains(values.id);
        found.emplace_back(std::move(values));
    }
    return found;
}

std::vector<Web::Item> RedmineStore::items(const Web::Workspace& workspace, const Watch& watch)
{
    return itemsOf(m_tracker.list("issues.json", "issues",
                                  {{"project_id", std::to_string(workspace.id())},
                                   {"subproject_id", "!*"},
                                   {"status_id", kAnyStatus},
                                   {"sort", "id"}},
                                  "Listing the issues of \"" + workspace.name() + '"', watch),
                   watch);
}

Web::Item RedmineStore::item(std::int64_t id, const Watch& watch)
{
    Web::ItemValues values = m_reader.issue(id, numbered("Reading the issue", id), watch).values;
    values.isFavourite = watched(watch).contains(id);
    return Web::Item(std::move(values));
}

std::vector<Web::Item> RedmineStore::ownNewest(std::int64_t project, const std::string& doing,
                                               const Watch& watch)
{
    const JsonReader answer = m_tracker.get("issues.json",
                                            {{"project_id", std::to_string(project)},
                                             {"author_id", "me"},
                                             {"status_id", kAnyStatus},
                                             {"sort", "id:desc"},
                                             {"limit", "10"}},
                                            doing, watch);
    std::vector<Web::Item> items;
    for (const auto& each : answer.list("issues"))
        items.emplace_back(itemOf({each.toObject(), answer.action()}, m_reader.names(watch)));
    return items;
}

// The tracker has no idempotency keys: whether a lost request was carried out shows in what exists
// afterwards.
Web::Item RedmineStore::addItem(const NewItem& item, const std::string&, const Watch& watch)
{
    const std::string doing = "Making the issue \"" + item.caption + '"';
    const std::vector<Web::Item> before = ownNewest(item.workspaceId, doing, watch);
    const std::int64_t last = before.empty() ? 0 : before.front().id();
    const auto isMade = [&](const Web::Item& each) {
        return each.id() > last && plain(each.caption()) == plain(item.caption) &&
               plain(each.description()) == plain(item.description);
    };
    const QJsonObject body{{"issue", QJsonObject{{"project_id", qint64(item.workspaceId)},
                                                 {"subject", QString::fromStdString(item.caption)},
                                                 {"description", QString::fromStdString(item.description)}}}};
    std::optional<Web::Item> made;
    Answer answer = m_tracker.change("POST", "issues.json", body, watch);
    if (answer.isLost()) {
        const std::vector<Web::Item> after = ownNewest(item.workspaceId, doing, watch);
        if (const auto found = std::find_if(after.begin(), after.end(), isMade); found != after.end())
            made = *found;
        else
            answer = m_tracker.change("POST", "issues.json", body, watch);
    }
    if (!made) {
        const std::string action = m_tracker.action(doing);
        const JsonReader given(Answers::object(answer, action), action);
        made.emplace(itemOf({given.object("issue"), action}, m_reader.names(watch)));
    }
    if (item.linkedItemId != 0)
        m_tracker.changed("POST", issuePath(made->id(), "/relations.json"),
                          {{"relation", QJsonObject{{"issue_to_id", qint64(item.linkedItemId)},
                                                    {"relation_type", "relates"}}}},
                          numbered("Linking the issue", made->id()), watch);
    return *made;
}

std::vector<Web::Item> RedmineStore::favourites(const Watch& watch)
{
    const JsonReader answer = m_tracker.get("issues.json",
                                            {{"watcher_id", "me"},
                                             {"status_id", kAnyStatus},
                                             {"sort", "updated_on:desc"},
                                             {"limit", kMostFavourites}},
                                            "Listing the favourites", watch);
    std::vector<Web::Item> items;
    for (const auto& each : answer.list("issues")) {
        Web::ItemValues values = itemOf({each.toObject(), answer.action()}, m_reader.names(watch));
        values.isFavourite = true;
        items.emplace_back(std::move(values));
    }
    return items;
}

void RedmineStore::favourite(std::int64_t item, bool isFavourite, const Watch& watch)
{
    const std::int64_t user = m_reader.me(watch).id;
    const std::string doing = numbered("Changing the favourite", item);
    if (isFavourite)
        m_tracker.changed("POST", issuePath(item, "/watchers.json"), {{"user_id", qint64(user)}}, doing,
                          watch);
    else
        m_tracker.changed("DELETE", issuePath(item, "/watchers/") + std::to_string(user) + ".json", {}, doing,
                          watch);
}

std::vector<Web::Item> RedmineStore::search(const std::string& text, int most, const Watch& watch)
{
    const JsonReader answer = m_tracker.get(
        "search.json", {{"q", text}, {"issues", "1"}, {"all_words", "1"}, {"limit", std::to_string(most)}},
        "Searching", watch);
    std::vector<std::int64_t> order;
    std::string ids;
    for (const auto& each : answer.list("results")) {
        order.push_back(JsonReader(each.toObject(), answer.action()).id("id"));
        ids += (ids.empty() ? "" : ",") + std::to_string(order.back());
    }
    if (order.empty())
        return {};
    std::vector<Web::Item> found =
        itemsOf(m_tracker.list("issues.json", "issues", {{"issue_id", ids}, {"status_id", kAnyStatus}},
                               "Searching", watch),
                watch);
    const auto place = [&](const Web::Item& item) {
        return std::find(order.begin(), order.end(), item.id());
    };
    std::sort(found.begin(), found.end(),
              [&](const Web::Item& one, const Web::Item& other) { return place(one) < place(other); });
    return found;
}

std::vector<Web::Comment> RedmineStore::comments(std::int64_t item, const Watch& watch)
{
    return m_reader.issue(item, numbered("Reading the notes of the issue", item), watch).comments;
}

Web::Comment RedmineStore::addComment(std::int64_t item, const std::string& body, const std::string&,
                                      const Watch& watch)
{
    const std::string doing = numbered("Commenting on the issue", item);
    const std::string own = m_reader.me(watch).name;
    const std::vector<Web::Comment> before = comments(item, watch);
    const std::int64_t last = before.empty() ? 0 : before.back().id;
    const QJsonObject note{{"issue", QJsonObject{{"notes", QString::fromStdString(body)}}}};
    const auto made = [&]() -> std::optional<Web::Comment> {
        for (const Web::Comment& each : comments(item, watch))
            if (each.id > last && each.author == own && plain(each.body) == plain(body))
                return each;
        return std::nullopt;
    };
    const Answer answer = m_tracker.change("PUT", issuePath(item), note, watch);
    if (!answer.isLost())
        Answers::check(answer, m_tracker.action(doing));
    std::optional<Web::Comment> found = made();
    if (!found && answer.isLost()) {
        m_tracker.changed("PUT", issuePath(item), note, doing, watch);
        found = made();
    }
    if (!found)
        throw Web::ItemhubException(Kind::Forbidden, m_tracker.action(doing) +
                                                         " failed: the tracker left the note out, as it does "
                                                         "where the account may not write notes");
    return *found;
}

std::vector<Web::Attachment> RedmineStore::attachments(std::int64_t item, const Watch& watch)
{
    return m_versions.attachments(item, watch);
}

std::vector<Web::Version> RedmineStore::versions(std::int64_t attachment, const Watch& watch)
{
    return m_versions.versions(attachment, watch);
}

Content RedmineStore::content(const std::string& uri, const Watch& watch)
{
    return m_versions.content(uri, watch);
}

Content RedmineStore::content(std::int64_t attachment, std::int64_t version, const Watch& watch)
{
    return m_versions.content(attachment, version, watch);
}

void RedmineStore::download(const Content& content, const std::string& file, const Watch& watch)
{
    const std::string doing = m_tracker.action("Downloading \"" + content.file + '"');
    Fetch fetch(m_tracker.connections(), QUrl::fromEncoded(QByteArray::fromStdString(content.address)),
                content, doing);
    fetch.fromTheStart();
    fetch.into(file, watch);
}

std::string RedmineStore::beginUpload(std::uint64_t size, const std::string& sha256, const Watch&)
{
    return m_versions.beginUpload(size, sha256);
}

std::uint64_t RedmineStore::arrived(const std::string& upload, const Watch&)
{
    return m_versions.arrived(upload);
}

// The tracker accepts a file only as a whole.
void RedmineStore::upload(const std::string& upload, const std::string& file, std::uint64_t,
                          const Watch& watch)
{
    m_versions.upload(upload, file, watch);
}

MadeVersion RedmineStore::addVersion(const NewVersion& version, const Watch& watch)
{
    return m_versions.add(version, watch);
}

ItemEvents RedmineStore::events(std::int64_t after, int seconds, const Watch& watch)
{
    return m_changes.events(after, seconds, watch);
}

std::string RedmineStore::dashboard(const Watch&)
{
    return m_tracker.url("").toString(QUrl::FullyEncoded).toStdString();
}

} // namespace Vs::Itemhub::Redmine
