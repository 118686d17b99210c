#include "Server/Skyvault/Client/SignIn/Discovery.h"

#include "Server/Network/OAuth.h"
#include "Server/Skyvault/Client/Dav/Address.h"
#include "Server/Skyvault/Client/Dav/MultiStatus.h"
#include "Server/Skyvault/Client/Networking.h"
#include "Server/Skyvault/Client/SignIn/LoginFlow.h"

namespace Vs::Cloud {

namespace {

const auto kEntry = QStringLiteral("/remote.php");
// The first version that supports the login flow implemented here.
constexpr int kFirstVersion = 16;

/// The base address of a server with accounts, if the address leads to one; otherwise empty.
QUrl serviceOf(Http& http, const QUrl& url, bool& hasLoginFlow)
{
    QUrl base = url;
    QString path = url.path();
    if (const qsizetype entry = path.indexOf(kEntry); entry >= 0)
        path.truncate(entry);
    while (path.endsWith('/'))
        path.chop(1);
    base.setPath(path + "/status.php");
    const QJsonObject status = getJson(http, base);
    if (!status["installed"].toBool() || status["maintenance"].toBool())
        return {};
    hasLoginFlow = status["version"].toString().section('.', 0, 0).toInt() >= kFirstVersion;
    base.setPath(path);
    return base;
}

Answer knock(Http& http, const QUrl& url)
{
    return http.ask({.method = "PROPFIND",
                     .url = Address(url).of("/", true),
                     .headers = {{"Depth", "0"}, {"Content-Type", "application/xml; charset=utf-8"}},
                     .body = propertiesWanted()});
}

bool isDrive(const Answer& answer)
{
    return answer.status == 207 || answer.status == 401;
}

} // namespace

QUrl addressTyped(const std::string& typed)
{
    const QString text = QString::fromStdString(typed).trimmed();
    if (text.isEmpty())
        return {};
    const bool hasProtocol = text.contains(QLatin1String("://"));
    QUrl url(hasProtocol ? text : "https://" + text, QUrl::TolerantMode);
    QUrl plain = url;
    plain.setScheme(QStringLiteral("http"));
    if (!hasProtocol && isProtected(plain))
        url = plain;
    return url.isValid() && !url.host().isEmpty() ? url : QUrl();
}

DriveResult discover(const std::string& typed, DriveOffer& offer)
{
    const std::string action = "Looking for a drive at \"" + typed + "\"";
    QUrl url = addressTyped(typed);
    if (url.isEmpty())
        return failed(CloudErrorState::BadName, action, "this is not an address");
    url.setUserInfo(QString());
    if (!isProtected(url))
        return failed(CloudErrorState::Redirected, action, "only an https address is protected");
    Http http({});
    bool hasLoginFlow = false;
    const QUrl service = serviceOf(http, url, hasLoginFlow);
    if (!service.isEmpty() && !url.path().contains(kEntry))
        url.setPath(service.path() + kEntry + "/webdav");
    const Answer answer = knock(http, url);
    if (!isDrive(answer)) {
        DriveResult result = resultOf(answer, action);
        if (result.isOk() || result.state == CloudErrorState::Forbidden)
            result = failed(CloudErrorState::NotFound, action, "what answers there is not a WebDAV server");
        return result;
    }
    const QByteArray challenge = answer.header("WWW-Authenticate");
    const QByteArray ways = challenge.toLower();
    offer = {.address = Address(url).root().toString(QUrl::FullyEncoded).toStdString(),
             .password = answer.status == 207 || ways.contains("basic") || ways.contains("digest"),
             .browserFlow = !service.isEmpty() && hasLoginFlow};
    offer.oauth2 = ways.contains("bearer") && findTokenServer(http, url, challenge).has_value();
    if (!offer.password && !offer.browserFlow && !offer.oauth2)
        return failed(CloudErrorState::Unsupported, action, "it offers no way to sign in that is known here");
    return {};
}

DriveResult signInByBrowser(const DriveOffer& offer, const std::function<bool(const std::string&)>& open,
                            DriveCredentials& credentials, const DriveWatch& watch)
{
    const QUrl url(QString::fromStdString(offer.address));
    const std::string action = "Signing in at " + hostOf(url);
    if (offer.browserFlow) {
        QUrl service = url;
        service.setPath(url.path().section(kEntry, 0, 0));
        return signInByLoginFlow(service, open, credentials, watch);
    }
    if (!offer.oauth2)
        return failed(CloudErrorState::Unsupported, action, "the server has no login page for programs");
    Http http({});
    const Answer answer = knock(http, url);
    if (answer.status == 0)
        return resultOf(answer, action);
    const auto server = findTokenServer(http, url, answer.header("WWW-Authenticate"));
    if (!server)
        return failed(CloudErrorState::BadAnswer, action, "the server no longer says who issues tokens");
    return signInByOAuth(*server, open, credentials, watch);
}

} // namespace Vs::Cloud
