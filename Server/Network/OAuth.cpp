#include "Server/Network/OAuth.h"

#include "Server/Network/Failure.h"
#include "Server/Network/Json.h"
#include "Server/Network/Origin.h"
#include "Server/Network/RedirectListener.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

namespace Vs::Network {

namespace {

constexpr std::chrono::minutes kPatience{20};
constexpr std::chrono::milliseconds kTick{100};
// If a program can't register itself, the server's administrator registers it by this name.
const auto kClient = QStringLiteral("quillet");

QString pathOf(const QUrl& url)
{
    QString path = url.path();
    while (path.endsWith('/'))
        path.chop(1);
    return path;
}

/// A metadata location: the well-known part between host and path, as specified by RFC 8414.
QUrl wellKnown(const QUrl& of, const char* name)
{
    QUrl url = of;
    url.setPath("/.well-known/" + QString::fromLatin1(name) + pathOf(of));
    url.setQuery(QString());
    return url;
}

QUrl protectedUrl(const QJsonValue& value)
{
    const QUrl url(value.toString());
    return isProtected(url) ? url : QUrl();
}

std::optional<TokenServer> serverOf(Http& http, const QUrl& issuer)
{
    QUrl openId = issuer;
    openId.setPath(pathOf(issuer) + "/.well-known/openid-configuration");
    for (const QUrl& place : {wellKnown(issuer, "oauth-authorization-server"), openId}) {
        const QJsonObject found = getJson(http, place);
        const TokenServer server{found["issuer"].toString(),
                                 protectedUrl(found["authorization_endpoint"]),
                                 protectedUrl(found["token_endpoint"]),
                                 protectedUrl(found["registration_endpoint"]),
                                 {}};
        // One origin can host several issuers that don't trust each other.
        const QUrl named(server.issuer);
        if (isSameOrigin(named, issuer) && pathOf(named) == pathOf(issuer) &&
            !server.authorization.isEmpty() && !server.token.isEmpty())
            return server;
    }
    return std::nullopt;
}

/// The identifier under which the server has registered this program and the address to redirect to.
QString clientOf(const TokenServer& server, const QUrl& redirect)
{
    if (server.registration.isEmpty())
        return kClient;
    Http http({});
    const QJsonObject wish{{"client_name", "Quillet"},
                           {"redirect_uris", QJsonArray{redirect.toString()}},
                           {"grant_types", QJsonArray{"authorization_code", "refresh_token"}},
                           {"response_types", QJsonArray{"code"}},
                           {"application_type", "native"},
                           {"token_endpoint_auth_method", "none"},
                           // Not part of any standard, but without it Glewlwyd demands a secret that it
                           // doesn't issue.
                           {"client_confidential", false}};
    const Answer answer = http.ask({.method = "POST",
                                    .url = server.registration,
                                    .headers = {{"Content-Type", "application/json"}},
                                    .body = QJsonDocument(wish).toJson()});
    const QString given = objectOf(answer)["client_id"].toString();
    return given.isEmpty() ? kClient : given;
}

Result takeTokens(const Answer& answer, const std::string& action, Credentials& credentials)
{
    const QJsonObject found = QJsonDocument::fromJson(answer.content).object();
    if (!answer.isOk()) {
        const QString error = found["error"].toString().left(60);
        Result result = resultOf(answer, action);
        if (answer.status == 400 || answer.status == 401)
            result.state = CloudErrorState::Unauthorized;
        if (!error.isEmpty())
            result.detail += " (" + error.toStdString() + ")";
        return result;
    }
    const std::string token = found["access_token"].toString().toStdString();
    if (token.empty() ||
        found["token_type"].toString().compare(QLatin1String("bearer"), Qt::CaseInsensitive) != 0)
        return failed(CloudErrorState::BadAnswer, action, "the answer has no token that could be used");
    credentials.kind = Credentials::Kind::Bearer;
    credentials.secret = token;
    // A server that issues no new one continues with the old one.
    if (const QString refresh = found["refresh_token"].toString(); !refresh.isEmpty())
        credentials.refreshToken = refresh.toStdString();
    return {};
}

QUrl loginPage(const TokenServer& server, const QString& client, const QUrl& redirect,
               const QByteArray& state, const QByteArray& verifier)
{
    const QByteArray challenge =
        QCryptographicHash::hash(verifier, QCryptographicHash::Sha256)
            .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    QUrl url = server.authorization;
    QUrlQuery query(url);
    const auto add = [&](const char* name, const QString& value) {
        query.addQueryItem(QString::fromLatin1(name), QString::fromLatin1(QUrl::toPercentEncoding(value)));
    };
    add("response_type", QStringLiteral("code"));
    add("client_id", client);
    add("redirect_uri", redirect.toString());
    add("state", QString::fromLatin1(state));
    add("code_challenge", QString::fromLatin1(challenge));
    add("code_challenge_method", QStringLiteral("S256"));
    if (!server.scopes.isEmpty())
        add("scope", server.scopes);
    url.setQuery(query);
    return url;
}

} // namespace

std::optional<TokenServer> findTokenServer(Http& http, const QUrl& drive, const QByteArray& challenge)
{
    static const QRegularExpression named(QStringLiteral("resource_metadata=\"([^\"]+)\""));
    const QUrl referred(named.match(QString::fromUtf8(challenge)).captured(1));
    QUrl origin = drive;
    origin.setPath(QString());
    for (const QUrl& place : {referred, wellKnown(drive, "oauth-protected-resource"),
                              wellKnown(origin, "oauth-protected-resource")}) {
        if (!isProtected(place))
            continue;
        const QJsonObject found = getJson(http, place);
        QStringList scopes;
        for (const auto& scope : found["scopes_supported"].toArray())
            scopes.append(scope.toString());
        for (const auto& issuer : found["authorization_servers"].toArray()) {
            auto server = serverOf(http, protectedUrl(issuer));
            if (!server)
                continue;
            server->scopes = scopes.join(' ');
            return server;
        }
    }
    return serverOf(http, origin);
}

Result signInByOAuth(const TokenServer& server, const std::function<bool(const std::string&)>& open,
                     Credentials& credentials, const Watch& watch)
{
    const std::string action = "Signing in at " + hostOf(server.authorization);
    RedirectListener listener;
    const QUrl redirect = listener.address();
    if (redirect.isEmpty())
        return failed(CloudErrorState::LoginFailed, action,
                      "no port of this machine is free for the browser");
    const QByteArray state = randomName(), verifier = randomName();
    const QString client = clientOf(server, redirect);
    if (!open(
            loginPage(server, client, redirect, state, verifier).toString(QUrl::FullyEncoded).toStdString()))
        return failed(CloudErrorState::LoginFailed, action, "no browser could be opened");
    std::optional<QUrlQuery> came;
    for (const auto end = std::chrono::steady_clock::now() + kPatience; !came;) {
        if (watch.progress && !watch.progress(0, 0))
            return {CloudErrorState::Cancelled, {}};
        if (std::chrono::steady_clock::now() > end)
            return failed(CloudErrorState::LoginFailed, action, "nobody signed in within 20 minutes");
        came = listener.wait(kTick, state);
    }
    const auto value = [&](const char* name) {
        return came->queryItemValue(QString::fromLatin1(name), QUrl::FullyDecoded);
    };
    if (const QString error = value("error"); !error.isEmpty())
        return failed(CloudErrorState::LoginFailed, action,
                      "the server said " + error.left(60).toStdString());
    if (const QString issuer = value("iss"); !issuer.isEmpty() && issuer != server.issuer)
        return failed(CloudErrorState::LoginFailed, action, "the answer came from another server");
    QUrlQuery form;
    form.addQueryItem("grant_type", "authorization_code");
    form.addQueryItem("code", QString::fromLatin1(QUrl::toPercentEncoding(value("code"))));
    form.addQueryItem("redirect_uri", QString::fromLatin1(QUrl::toPercentEncoding(redirect.toString())));
    form.addQueryItem("client_id", QString::fromLatin1(QUrl::toPercentEncoding(client)));
    form.addQueryItem("code_verifier", QString::fromLatin1(verifier));
    Http http({});
    Credentials given;
    Result result = takeTokens(postForm(http, server.token, form, watch), action, given);
    if (!result.isOk())
        return result;
    given.tokenAddress = server.token.toString().toStdString();
    given.client = client.toStdString();
    credentials = std::move(given);
    return {};
}

bool renewToken(Credentials& credentials)
{
    const QUrl url(QString::fromStdString(credentials.tokenAddress));
    if (credentials.refreshToken.empty() || !isProtected(url))
        return false;
    const auto encoded = [](const std::string& text) {
        return QString::fromLatin1(QUrl::toPercentEncoding(QString::fromStdString(text)));
    };
    QUrlQuery form;
    form.addQueryItem("grant_type", "refresh_token");
    form.addQueryItem("refresh_token", encoded(credentials.refreshToken));
    form.addQueryItem("client_id", encoded(credentials.client));
    Http http({});
    return takeTokens(postForm(http, url, form), "Renewing the access token", credentials).isOk();
}

} // namespace Vs::Network
