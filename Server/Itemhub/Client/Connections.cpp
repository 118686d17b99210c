#include "Server/Itemhub/Client/Connections.h"

#include "Server/Itemhub/Client/Signature.h"
#include "Server/Network/OAuth.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QUrlQuery>

namespace Vs::Itemhub {
namespace {

/// The number of idle connections to keep.
constexpr size_t kMostIdle = 4;

Network::Credentials credentialsOf(const Access& access)
{
    Network::Credentials credentials;
    credentials.kind = Network::Credentials::Kind::Bearer;
    if (access.kind == Access::Kind::Key) {
        credentials.kind = Network::Credentials::Kind::Password;
        credentials.user = access.token;
    }
    credentials.secret = access.token;
    credentials.refreshToken = access.refreshToken;
    credentials.tokenAddress = access.tokenAddress;
    credentials.client = access.client;
    return credentials;
}

} // namespace

Connections::Connections(Access access) : m_access(std::move(access)) {}

Access Connections::access() const
{
    const std::lock_guard lock(m_mutex);
    return m_access;
}

void Connections::onRenewed(std::function<void(const Access&)> keeper)
{
    const std::lock_guard lock(m_mutex);
    m_keeper = std::move(keeper);
}

std::unique_ptr<Network::Http> Connections::make() const
{
    const Access access = this->access();
    auto http = std::make_unique<Network::Http>(credentialsOf(access));
    if (access.kind == Access::Kind::Signed)
        http->signature(
            [this](const Network::Request& request) { return signatureOf(request, this->access(), now()); });
    return http;
}

std::unique_ptr<Network::Http> Connections::take()
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_idle.empty()) {
            auto http = std::move(m_idle.back());
            m_idle.pop_back();
            return http;
        }
    }
    return make();
}

Network::Answer Connections::ask(const Network::Request& request, const Network::Watch& watch)
{
    auto http = take();
    const std::string token = access().token;
    Network::Answer answer = http->ask(request, watch);
    if (answer.status == 401 && tellsTime(answer))
        answer = http->ask(request, watch);
    if (answer.status == 401 && renew(token)) {
        http = make();
        answer = http->ask(request, watch);
    }
    const std::lock_guard lock(m_mutex);
    // Connections with an outdated token are dropped.
    if (m_idle.size() < kMostIdle &&
        (m_access.kind == Access::Kind::Signed || http->credentials().secret == m_access.token))
        m_idle.push_back(std::move(http));
    return answer;
}

std::int64_t Connections::now() const
{
    return QDateTime::currentSecsSinceEpoch() + m_ahead;
}

bool Connections::tellsTime(const Network::Answer& refusal)
{
    const QJsonObject problem = QJsonDocument::fromJson(refusal.content).object();
    if (access().kind != Access::Kind::Signed || problem["code"] != QLatin1String("clock"))
        return false;
    QDateTime time = QLocale::c().toDateTime(QString::fromLatin1(refusal.header("Date")),
                                             QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
    time.setTimeSpec(Qt::UTC);
    if (!time.isValid())
        return false;
    m_ahead = time.toSecsSinceEpoch() - QDateTime::currentSecsSinceEpoch();
    return true;
}

bool Connections::renew(const std::string& refused)
{
    const std::lock_guard renewing(m_renewing);
    Access renewed = access();
    if (renewed.token != refused)
        return true;
    if (renewed.kind == Access::Kind::Renewed) {
        Network::Credentials credentials = credentialsOf(renewed);
        if (!Network::renewToken(credentials))
            return false;
        renewed.token = credentials.secret;
        renewed.refreshToken = credentials.refreshToken;
    } else if (renewed.kind != Access::Kind::Signed || renewed.sessionHandle.empty() ||
               !renewSigned(renewed)) {
        return false;
    }
    std::function<void(const Access&)> keeper;
    {
        const std::lock_guard lock(m_mutex);
        m_access = renewed;
        m_idle.clear();
        keeper = m_keeper;
    }
    if (keeper)
        keeper(renewed);
    return true;
}

bool Connections::renewSigned(Access& access) const
{
    Network::Http http({});
    http.signature([this, &access](const Network::Request& request) {
        return signatureOf(request, access, now(), access.sessionHandle);
    });
    const QUrl url(QString::fromStdString(access.address) + "oauth/access_token");
    const Network::Answer answer = http.ask({.method = "POST", .url = url});
    if (!answer.isOk())
        return false;
    const QUrlQuery given(QString::fromUtf8(answer.content));
    const auto value = [&](const char* name) {
        return given.queryItemValue(QString::fromLatin1(name), QUrl::FullyDecoded).toStdString();
    };
    if (value("oauth_token").empty() || value("oauth_token_secret").empty())
        return false;
    access.token = value("oauth_token");
    access.tokenSecret = value("oauth_token_secret");
    if (const std::string handle = value("oauth_session_handle"); !handle.empty())
        access.sessionHandle = handle;
    return true;
}

} // namespace Vs::Itemhub
