#include "Server/Itemhub/Client/Redmine/Tracker.h"

#include "Server/Itemhub/Client/Answers.h"
#include "Server/Network/Origin.h"
#include "Server/Network/Sha256.h"

#include <QJsonDocument>
#include <QLocale>

#include <cstring>

namespace Vs::Itemhub::Redmine {
namespace {

using Network::Answer;
using Network::Request;

constexpr const char* kPrefix = "redmine+";
constexpr qint64 kMostContent = qint64(16) << 20;
constexpr int kPage = 100; // The tracker's limit per page.
constexpr size_t kMostEntries = 20000;

QUrl addressOf(const std::string& named)
{
    return QUrl(QString::fromStdString(isAddress(named) ? named.substr(std::strlen(kPrefix)) : named));
}

/// The tracker accepts a user's key as a name that needs no password.
Access withKey(Access access)
{
    access.kind = Access::Kind::Key;
    return access;
}

std::string doing(const QUrl& address, const std::string& what)
{
    return what + " at " + Network::hostOf(address);
}

} // namespace

bool isAddress(const std::string& address)
{
    return address.starts_with(kPrefix);
}

Tracker::Tracker(const Access& access) : m_address(addressOf(access.address)), m_connections(withKey(access))
{
}

std::string Tracker::keyOf(const Access& where, const std::string& account, const std::string& password,
                           const Watch& watch)
{
    const QUrl address = addressOf(where.address);
    Network::Credentials credentials;
    credentials.kind = Network::Credentials::Kind::Password;
    credentials.user = account;
    credentials.secret = password;
    Network::Http http(credentials);
    const std::string action = doing(address, "Signing in");
    const Answer answer = http.ask(
        {.method = "GET", .url = address.resolved(QUrl(QStringLiteral("users/current.json")))}, watch);
    return JsonReader(JsonReader(Answers::object(answer, action), action).object("user"), action)
        .text("api_key");
}

QUrl Tracker::url(const std::string& path, const Query& query) const
{
    QByteArray text = m_address.toString(QUrl::FullyEncoded).toUtf8() + QByteArray::fromStdString(path);
    char separator = '?';
    for (const auto& [name, value] : query) {
        text += separator + QByteArray(name) + '=' + QUrl::toPercentEncoding(QString::fromStdString(value));
        separator = '&';
    }
    return QUrl::fromEncoded(text);
}

std::string Tracker::action(const std::string& what) const
{
    return doing(m_address, what);
}

std::pair<JsonReader, QDateTime> Tracker::getWithTime(const std::string& path, const Query& query,
                                                      const std::string& doing, const Watch& watch)
{
    const Answer answer = m_connections.ask({.method = "GET",
                                             .url = url(path, query),
                                             .headers = {{"Accept", "application/json"}},
                                             .mostContent = kMostContent},
                                            watch);
    QDateTime time = QLocale::c().toDateTime(QString::fromLatin1(answer.header("Date")),
                                             QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
    time.setTimeSpec(Qt::UTC);
    return {JsonReader(Answers::object(answer, action(doing)), action(doing)), time};
}

JsonReader Tracker::get(const std::string& path, const Query& query, const std::string& doing,
                        const Watch& watch)
{
    return getWithTime(path, query, doing, watch).first;
}

Answer Tracker::change(const char* method, const std::string& path, const QJsonObject& body,
                       const Watch& watch)
{
    return m_connections.ask(
        {.method = method,
         .url = url(path),
         .headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}},
         .body = QJsonDocument(body).toJson(QJsonDocument::Compact),
         .mostContent = kMostContent},
        watch);
}

void Tracker::changed(const char* method, const std::string& path, const QJsonObject& body,
                      const std::string& doing, const Watch& watch)
{
    Answers::check(change(method, path, body, watch), action(doing));
}

std::vector<JsonReader> Tracker::list(const std::string& path, const char* name, Query query,
                                      const std::string& doing, const Watch& watch)
{
    query.emplace_back("limit", std::to_string(kPage));
    query.emplace_back("offset", "0");
    std::vector<JsonReader> found;
    for (;;) {
        query.back().second = std::to_string(found.size());
        const JsonReader answer = get(path, query, doing, watch);
        const QJsonArray entries = answer.list(name);
        for (const auto& entry : entries)
            found.emplace_back(entry.toObject(), answer.action());
        if (entries.size() < kPage || found.size() >= kMostEntries)
            return found;
    }
}

std::string Tracker::upload(const std::string& file, std::uint64_t size, const Watch& watch)
{
    const std::string doing = action("Uploading");
    const Answer answer = m_connections.ask({.method = "POST",
                                             .url = url("uploads.json", {{"filename", "upload"}}),
                                             .headers = {{"Content-Type", "application/octet-stream"}},
                                             .file = Network::FilePart{file, 0, static_cast<qint64>(size)}},
                                            watch);
    return JsonReader(JsonReader(Answers::object(answer, doing), doing).object("upload"), doing)
        .text("token");
}

std::string Tracker::sha256(const QUrl& content, const std::string& doing, const Watch& watch)
{
    Network::Sha256 hash;
    const Answer answer = m_connections.ask({.method = "GET",
                                             .url = content,
                                             .sink = [&hash](const QByteArray& piece) -> Network::Result {
                                                 hash.add(piece);
                                                 return {};
                                             }},
                                            watch);
    Answers::check(answer, action(doing));
    return hash.digits();
}

QUrl Tracker::below(const std::string& uri, const std::string& doing) const
{
    const QUrl found(QString::fromStdString(uri));
    const QString root = m_address.path();
    if (!Network::isSameOrigin(found, m_address) || !found.path().startsWith(root))
        throw Web::ItemhubException(Web::ItemhubException::Kind::BadRequest,
                                    action(doing) + " failed: \"" +
                                        Answers::printable(QString::fromStdString(uri)) +
                                        "\" is not an address of this tracker");
    QUrl below;
    below.setPath(found.path().mid(root.size()));
    below.setQuery(found.query());
    return below;
}

} // namespace Vs::Itemhub::Redmine
