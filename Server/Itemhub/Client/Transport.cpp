#include "Server/Itemhub/Client/Transport.h"

#include "Server/Itemhub/Client/Answers.h"
#include "Server/Itemhub/Client/Credentials.h"
#include "Server/Itemhub/Client/HashFile.h"
#include "Server/Itemhub/Client/HttpStore.h"
#include "Server/Itemhub/Client/Redmine/RedmineStore.h"
#include "Server/Network/OAuth.h"
#include "Server/Network/Origin.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrlQuery>

namespace Vs::Itemhub {
namespace {

/// The label under which the service lists the token.
const auto kLabel = QStringLiteral("Quillet");

QUrl addressOf(const Access& where, const char* path)
{
    QUrl url(QString::fromStdString(where.address + path));
    if (!where.customer.empty())
        url.setQuery("customer=" +
                     QString::fromLatin1(QUrl::toPercentEncoding(QString::fromStdString(where.customer))));
    return url;
}

/// The service's identifier of the token, so that it can be revoked with the session; 0 if another server
/// issued it.
std::int64_t idOfToken(const QUrl& session, const Network::Credentials& given, const Watch& watch)
{
    Network::Http http(given);
    const Network::Answer answer = http.ask({.method = "GET", .url = session}, watch);
    return answer.isOk() ? QJsonDocument::fromJson(answer.content).object()["tokenId"].toInteger() : 0;
}

} // namespace

std::shared_ptr<ItemStore> Transport::store(const Access& access, std::function<void(const Access&)> keeper)
{
    if (Redmine::isAddress(access.address))
        return std::make_shared<Redmine::RedmineStore>(access);
    auto store = std::make_shared<HttpStore>(access);
    store->onRenewed(std::move(keeper));
    return store;
}

Access Transport::signInByPassword(const Access& where, const std::string& account,
                                   const std::string& password, const Watch& watch)
{
    Access access = where;
    access.kind = Access::Kind::Bearer;
    if (Redmine::isAddress(where.address)) {
        access.token = Redmine::Tracker::keyOf(where, account, password, watch);
        return access;
    }
    const QUrl url = addressOf(where, "tokens");
    const std::string action = "Signing in at " + Network::hostOf(url);
    const QJsonObject body{{"account", QString::fromStdString(account)},
                           {"password", QString::fromStdString(password)},
                           {"label", kLabel}};
    Network::Http http({});
    const Network::Answer answer = http.ask({.method = "POST",
                                             .url = url,
                                             .headers = {{"Content-Type", "application/json"}},
                                             .body = QJsonDocument(body).toJson(QJsonDocument::Compact)},
                                            watch);
    const JsonReader given(Answers::object(answer, action), action);
    access.token = given.text("token");
    access.grantedId = given.id("id");
    return access;
}

Access Transport::signInByBrowser(const Access& where, const std::function<bool(const std::string&)>& open,
                                  const Watch& watch)
{
    const QUrl url = addressOf(where, "session");
    const std::string action = "Signing in at " + Network::hostOf(url);
    if (Redmine::isAddress(where.address))
        throw Web::ItemhubException(Web::ItemhubException::Kind::NotFound,
                                    action + " failed: an issue tracker has no sign-in page for programs");
    Network::Http http({});
    const Network::Answer refused = http.ask({.method = "GET", .url = url}, watch);
    if (refused.status == 0)
        Answers::check(refused, action);
    auto server = Network::findTokenServer(http, QUrl(QString::fromStdString(where.address)),
                                           refused.header("WWW-Authenticate"));
    if (!server)
        throw Web::ItemhubException(Web::ItemhubException::Kind::NotFound,
                                    action + " failed: the service has no sign-in page for programs");
    if (!where.customer.empty()) {
        QUrlQuery query(server->authorization);
        query.addQueryItem(
            "customer", QString::fromLatin1(QUrl::toPercentEncoding(QString::fromStdString(where.customer))));
        server->authorization.setQuery(query);
    }
    Network::Credentials given;
    const Network::Result result = Network::signInByOAuth(*server, open, given, watch);
    if (result.state == CloudErrorState::Cancelled)
        throw ItemStore::Cancelled();
    if (!result.isOk())
        throw Web::ItemhubException(Web::ItemhubException::Kind::NotSignedIn, result.detail);
    Access access = where;
    access.kind = given.refreshToken.empty() ? Access::Kind::Bearer : Access::Kind::Renewed;
    access.token = given.secret;
    access.refreshToken = given.refreshToken;
    access.tokenAddress = given.tokenAddress;
    access.client = given.client;
    access.grantedId = idOfToken(url, given, watch);
    return access;
}

std::string Transport::sha256(const std::string& file, const Watch& watch)
{
    return hashFile(file, watch);
}

void Transport::keep(const std::string& key, const Access& access)
{
    keepInKeyring(key, access);
}

std::optional<Access> Transport::kept(const std::string& key)
{
    return keptInKeyring(key);
}

void Transport::forget(const std::string& key)
{
    forgetInKeyring(key);
}

} // namespace Vs::Itemhub

Vs::Itemhub::ItemTransport* quilletItemTransport()
{
    static Vs::Itemhub::Transport transport;
    return &transport;
}
