#include "Server/Itemhub/Client/HttpStore.h"

#include "Server/Itemhub/Client/Answers.h"
#include "Server/Itemhub/Client/Fetch.h"
#include "Server/Itemhub/Client/Values.h"
#include "Server/Network/Origin.h"

#include <QFileInfo>
#include <QJsonDocument>

#include <charconv>

namespace Vs::Itemhub {
namespace {

using Network::Answer;
using Network::Request;

constexpr qint64 kMostContent = qint64(16) << 20;
constexpr const char* kPage = "200";
/// In a list; beyond that, users have to search.
constexpr size_t kMostEntries = 20000;
constexpr const char* kMostFavourites = "100";
const Network::Header kTus{"Tus-Resumable", "1.0.0"};

std::string numbered(const char* what, std::int64_t id)
{
    return std::string(what) + ' ' + std::to_string(id);
}

std::string path(const char* folder, std::int64_t id, const char* rest = "")
{
    return std::string(folder) + '/' + std::to_string(id) + rest;
}

Request jsonRequest(const char* method, const QUrl& url, const QJsonObject& body)
{
    return {.method = method,
            .url = url,
            .headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}},
            .body = QJsonDocument(body).toJson(QJsonDocument::Compact),
            .mostContent = kMostContent};
}

} // namespace

HttpStore::HttpStore(const Access& access)
    : m_address(QString::fromStdString(access.address)),
      m_customer(access.customer),
      m_isOwn(access.isOwn),
      m_connections(access),
      m_granted(access.grantedId)
{
}

void HttpStore::onRenewed(std::function<void(const Access&)> keeper)
{
    m_connections.onRenewed(std::move(keeper));
}

QUrl HttpStore::url(const std::string& path, const Query& query) const
{
    QByteArray text = m_address.toString(QUrl::FullyEncoded).toUtf8() + QByteArray::fromStdString(path);
    char separator = '?';
    const auto add = [&](const char* name, const std::string& value) {
        text += separator;
        text += QByteArray(name) + '=' + QUrl::toPercentEncoding(QString::fromStdString(value));
        separator = '&';
    };
    for (const auto& [name, value] : query)
        add(name, value);
    if (!m_customer.empty())
        add("customer", m_customer);
    return QUrl::fromEncoded(text);
}

std::string HttpStore::action(const std::string& doing) const
{
    return doing + " at " + (m_isOwn ? "the program's own service" : Network::hostOf(m_address));
}

JsonReader HttpStore::get(const std::string& path, const Query& query, const std::string& doing,
                          const Watch& watch)
{
    const Answer answer = m_connections.ask({.method = "GET",
                                             .url = url(path, query),
                                             .headers = {{"Accept", "application/json"}},
                                             .mostContent = kMostContent},
                                            watch);
    return {Answers::object(answer, action(doing)), action(doing)};
}

JsonReader HttpStore::post(const std::string& path, const QJsonObject& body, const std::string& key,
                           const std::string& doing, const Watch& watch)
{
    Request request = jsonRequest("POST", url(path), body);
    request.headers.push_back({"Idempotency-Key", QByteArray::fromStdString(key)});
    Answer answer = m_connections.ask(request, watch);
    // The key makes a retry harmless.
    if (answer.isLost())
        answer = m_connections.ask(request, watch);
    return {Answers::object(answer, action(doing)), action(doing)};
}

JsonReader HttpStore::once(const char* method, const std::string& path, const QJsonObject& body,
                           const std::string& doing, const Watch& watch)
{
    const Answer answer = m_connections.ask(jsonRequest(method, url(path), body), watch);
    Answers::check(answer, action(doing));
    return {answer.content.isEmpty() ? QJsonObject() : Answers::object(answer, action(doing)), action(doing)};
}

template <class Value>
std::vector<Value> HttpStore::list(const std::string& path, const char* name,
                                   Value (*read)(const JsonReader&), const std::string& doing,
                                   const Watch& watch)
{
    std::vector<Value> values;
    for (std::int64_t after = 0;;) {
        const JsonReader answer =
            get(path, {{"after", std::to_string(after)}, {"limit", kPage}}, doing, watch);
        for (const auto& entry : answer.list(name))
            values.push_back(read({entry.toObject(), answer.action()}));
        const std::int64_t next = answer.next();
        if (next <= after || values.size() >= kMostEntries)
            return values;
        after = next;
    }
}

Account HttpStore::account(const Watch& watch)
{
    const JsonReader json = get("session", {}, "Signing in", watch);
    return {json.text("account"), json.text("customer"), json.text("expiresAt")};
}

void HttpStore::signOut()
{
    const std::int64_t token = m_granted.exchange(0);
    if (token != 0)
        std::ignore = m_connections.ask({.method = "DELETE", .url = url(path("tokens", token))}, {});
}

std::vector<Web::Workspace> HttpStore::workspaces(const Watch& watch)
{
    return list("workspaces", "workspaces", Values::workspace, "Listing the workspaces", watch);
}

Web::Workspace HttpStore::workspace(std::int64_t id, const Watch& watch)
{
    return Values::workspace(get(path("workspaces", id), {}, numbered("Reading the workspace", id), watch));
}

std::vector<Web::Item> HttpStore::items(const Web::Workspace& workspace, const Watch& watch)
{
    return list(path("workspaces", workspace.id(), "/items"), "items", Values::item,
                "Listing the items of \"" + workspace.name() + '"', watch);
}

Web::Item HttpStore::item(std::int64_t id, const Watch& watch)
{
    return Values::item(get(path("items", id), {}, numbered("Reading the item", id), watch));
}

Web::Item HttpStore::addItem(const NewItem& item, const std::string& key, const Watch& watch)
{
    QJsonObject body{{"caption", QString::fromStdString(item.caption)},
                     {"description", QString::fromStdString(item.description)}};
    if (item.linkedItemId != 0)
        body["linkedItemId"] = qint64(item.linkedItemId);
    return Values::item(post(path("workspaces", item.workspaceId, "/items"), body, key,
                             "Making the item \"" + item.caption + '"', watch));
}

std::vector<Web::Attachment> HttpStore::attachments(std::int64_t item, const Watch& watch)
{
    return list(path("items", item, "/attachments"), "attachments", Values::attachment,
                numbered("Listing the attachments of the item", item), watch);
}

std::vector<Web::Version> HttpStore::versions(std::int64_t attachment, const Watch& watch)
{
    return list(path("attachments", attachment, "/versions"), "versions", Values::version,
                numbered("Listing the versions of the attachment", attachment), watch);
}

std::string HttpStore::pathOf(const std::string& uri, const std::string& doing) const
{
    const QUrl found(QString::fromStdString(uri));
    QUrl compared = found;
    if (m_isOwn && Network::isProtected(found) && found.scheme() == m_address.scheme())
        compared.setPort(m_address.port());
    const QString root = m_address.path(), path = found.path();
    if (!Network::isSameOrigin(compared, m_address) || !path.startsWith(root))
        throw Web::ItemhubException(Web::ItemhubException::Kind::BadRequest,
                                    action(doing) + " failed: \"" +
                                        Answers::printable(QString::fromStdString(uri)) +
                                        "\" is not an address of this service");
    return path.mid(root.size()).toStdString();
}

Content HttpStore::content(const std::string& uri, const Watch& watch)
{
    const std::string doing = "Looking for an attachment";
    std::string path = pathOf(uri, doing);
    if (path.ends_with(".xml"))
        path.resize(path.size() - 4);
    constexpr std::string_view kFolder = "attachments/";
    std::int64_t id = 0;
    const char* const end = path.data() + path.size();
    if (!path.starts_with(kFolder) || std::from_chars(path.data() + kFolder.size(), end, id).ptr != end ||
        id < 1)
        throw Web::ItemhubException(Web::ItemhubException::Kind::BadRequest,
                                    action(doing) + " failed: \"" +
                                        Answers::printable(QString::fromStdString(uri)) +
                                        "\" is not the address of an attachment");
    const Answer answer =
        m_connections.ask({.method = "GET", .url = url(Itemhub::path("attachments", id, ".xml"))}, watch);
    Answers::check(answer, action(doing));
    Content found = Values::content(answer.content, action(doing));
    std::ignore = pathOf(found.address, doing);
    return found;
}

Content HttpStore::content(std::int64_t attachment, std::int64_t version, const Watch& watch)
{
    const std::string doing = numbered("Reading the attachment", attachment);
    const Web::Attachment found = Values::attachment(get(path("attachments", attachment), {}, doing, watch));
    const std::string place = path("attachments", attachment, "/versions/") + std::to_string(version);
    const Web::Version wanted = Values::version(get(place, {}, doing, watch));
    return {.attachmentId = attachment,
            .itemId = found.itemId(),
            .workspaceId = found.workspaceId(),
            .version = version,
            .file = Values::fileName(found.name()),
            .docType = found.docType(),
            .sha256 = wanted.sha256,
            .size = wanted.size,
            .address = url(place + "/content").toString(QUrl::FullyEncoded).toStdString()};
}

void HttpStore::download(const Content& content, const std::string& file, const Watch& watch)
{
    const std::string doing = "Downloading \"" + content.file + '"';
    const QUrl from = url(pathOf(content.address, doing));
    Fetch(m_connections, from, content, action(doing)).into(file, watch);
}

std::vector<Web::Item> HttpStore::favourites(const Watch& watch)
{
    const JsonReader answer =
        get("favourites", {{"limit", kMostFavourites}}, "Listing the favourites", watch);
    std::vector<Web::Item> items;
    for (const auto& entry : answer.list("items"))
        items.push_back(Values::item({entry.toObject(), answer.action()}));
    return items;
}

void HttpStore::favourite(std::int64_t item, bool isFavourite, const Watch& watch)
{
    const Answer answer = m_connections.ask(
        {.method = isFavourite ? "PUT" : "DELETE", .url = url(path("favourites", item))}, watch);
    Answers::check(answer, action(numbered("Changing the favourite", item)));
}

std::vector<Web::Item> HttpStore::search(const std::string& text, int most, const Watch& watch)
{
    constexpr int kLongest = 200;
    const std::string asked = QString::fromStdString(text).left(kLongest).toStdString();
    const JsonReader answer =
        get("search", {{"q", asked}, {"limit", std::to_string(most)}}, "Searching", watch);
    std::vector<Web::Item> items;
    for (const auto& entry : answer.list("items"))
        items.push_back(Values::item({entry.toObject(), answer.action()}));
    return items;
}

std::vector<Web::Comment> HttpStore::comments(std::int64_t item, const Watch& watch)
{
    return list(path("items", item, "/comments"), "comments", Values::comment,
                numbered("Reading the comments of the item", item), watch);
}

Web::Comment HttpStore::addComment(std::int64_t item, const std::string& body, const std::string& key,
                                   const Watch& watch)
{
    return Values::comment(post(path("items", item, "/comments"), {{"body", QString::fromStdString(body)}},
                                key, numbered("Commenting on the item", item), watch));
}

ItemEvents HttpStore::events(std::int64_t after, int seconds, const Watch& watch)
{
    const JsonReader answer =
        get("events", {{"after", std::to_string(after)}, {"wait", std::to_string(seconds)}},
            "Listening to events", watch);
    ItemEvents events;
    for (const auto& entry : answer.list("events"))
        events.events.push_back(Values::event({entry.toObject(), answer.action()}));
    events.next = answer.number("next", 0);
    return events;
}

std::string HttpStore::beginUpload(std::uint64_t size, const std::string& sha256, const Watch& watch)
{
    const std::string doing = action("Announcing an upload");
    const QByteArray metadata = "sha256 " + QByteArray::fromStdString(sha256).toBase64();
    const Answer answer = m_connections.ask(
        {.method = "POST",
         .url = url("uploads"),
         .headers = {kTus, {"Upload-Length", QByteArray::number(size)}, {"Upload-Metadata", metadata}}},
        watch);
    Answers::check(answer, doing);
    const QByteArray location = answer.header("Location");
    std::string id = location.mid(location.lastIndexOf('/') + 1).toStdString();
    if (id.empty() || QUrl::toPercentEncoding(QString::fromStdString(id)).toStdString() != id)
        throw Web::PayloadException(doing + " failed: the answer names no upload");
    return id;
}

std::uint64_t HttpStore::arrived(const std::string& upload, const Watch& watch)
{
    const std::string doing = action("Asking how far an upload is");
    const Answer answer =
        m_connections.ask({.method = "HEAD", .url = url("uploads/" + upload), .headers = {kTus}}, watch);
    Answers::check(answer, doing);
    bool isNumber = false;
    const qulonglong offset = answer.header("Upload-Offset").toULongLong(&isNumber);
    if (!isNumber)
        throw Web::PayloadException(doing + " failed: the answer doesn't say");
    return offset;
}

void HttpStore::upload(const std::string& upload, const std::string& file, std::uint64_t from,
                       const Watch& watch)
{
    const std::string doing = action("Uploading");
    const qint64 size = QFileInfo(QString::fromStdString(file)).size(), offset = static_cast<qint64>(from);
    if (offset > size)
        throw Web::PayloadException(doing + " failed: more has arrived than there is");
    const Answer answer = m_connections.ask({.method = "PATCH",
                                             .url = url("uploads/" + upload),
                                             .headers = {kTus,
                                                         {"Upload-Offset", QByteArray::number(offset)},
                                                         {"Content-Type", "application/offset+octet-stream"}},
                                             .file = Network::FilePart{file, offset, size - offset}},
                                            watch);
    Answers::check(answer, doing);
    if (answer.header("Upload-Offset").toLongLong() != size)
        throw Web::PayloadException(doing + " failed: the service says that something else arrived");
}

MadeVersion HttpStore::addVersion(const NewVersion& version, const Watch& watch)
{
    QJsonObject body{{"upload", QString::fromStdString(version.upload)}};
    if (!version.label.empty())
        body["label"] = QString::fromStdString(version.label);
    if (version.attachmentId != 0) {
        body["madeFrom"] = qint64(version.madeFrom);
        const std::string doing = "Making a version of \"" + version.name + '"';
        return {version.attachmentId,
                Values::version(post(path("attachments", version.attachmentId, "/versions"), body,
                                     version.key, doing, watch))};
    }
    body["name"] = QString::fromStdString(version.name);
    body["docType"] = QString::fromStdString(version.docType);
    const std::string doing = "Attaching \"" + version.name + '"';
    const Web::Attachment made = Values::attachment(
        post(path("items", version.itemId, "/attachments"), body, version.key, doing, watch));
    return {made.id(), Values::version(get(path("attachments", made.id(), "/versions/1"), {}, doing, watch))};
}

std::string HttpStore::dashboard(const Watch& watch)
{
    return once("POST", "dashboard/links", {}, "Opening the dashboard", watch).text("url");
}

DashboardRequest HttpStore::takeRequest(std::int64_t id, const Watch& watch)
{
    return Values::request(
        once("POST", path("program/requests", id, "/take"), {}, numbered("Taking the request", id), watch));
}

DashboardRequest HttpStore::redeemTicket(const std::string& ticket, const Watch& watch)
{
    return Values::request(once("POST", "program/tickets", {{"ticket", QString::fromStdString(ticket)}},
                                "Redeeming a link", watch));
}

void HttpStore::answerRequest(std::int64_t id, DashboardAnswer answer, const std::string& detail,
                              const Watch& watch)
{
    const char* const state = answer == DashboardAnswer::Done      ? "done"
                              : answer == DashboardAnswer::Refused ? "refused"
                                                                   : "failed";
    QJsonObject body{{"state", state}, {"detail", QString::fromStdString(detail)}};
    std::ignore =
        once("PUT", path("program/requests", id), body, numbered("Answering the request", id), watch);
}

} // namespace Vs::Itemhub
