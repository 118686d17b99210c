#include "Server/Network/Http.h"

#include "Server/Network/Origin.h"

#include <QDateTime>

#include <algorithm>
#include <thread>

namespace Vs::Network {

namespace {

constexpr int kMostRedirections = 5;
constexpr std::chrono::milliseconds kMostWaiting{30000};
constexpr std::chrono::milliseconds kTick{100};
constexpr std::chrono::milliseconds kHurry{5000};

/// Given in seconds or as a date; none if the server doesn't say.
std::optional<std::chrono::milliseconds> retryAfter(const Answer& answer)
{
    const QByteArray text = answer.header("Retry-After").trimmed();
    if (text.isEmpty())
        return std::nullopt;
    bool isNumber = false;
    const qint64 seconds = text.toLongLong(&isNumber);
    if (isNumber)
        return std::chrono::seconds(std::clamp<qint64>(seconds, 0, 86400));
    // The date is relative to the server's own clock.
    const QLocale c = QLocale::c();
    const QString format = "ddd, dd MMM yyyy hh:mm:ss 'GMT'";
    const QDateTime until = c.toDateTime(QString::fromLatin1(text), format);
    const QDateTime now = c.toDateTime(QString::fromLatin1(answer.header("Date")), format);
    if (!until.isValid() || !now.isValid())
        return std::nullopt;
    return std::chrono::milliseconds(std::max<qint64>(now.msecsTo(until), 0));
}

bool isRedirection(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

Http::Http(Credentials credentials) : m_credentials(std::move(credentials)) {}

Answer Http::ask(Request request, const Watch& watch)
{
    std::chrono::milliseconds left = kMostWaiting;
    for (int redirections = 0;;) {
        Answer answer = askAs(request, watch);
        if (isRedirection(answer.status)) {
            const QUrl next = redirection(answer, request);
            if (next.isEmpty())
                return answer;
            if (++redirections > kMostRedirections)
                return {.failure = {CloudErrorState::Redirected, "the server redirects without end"}};
            request.url = next;
        } else if (!waits(answer, left, watch)) {
            return answer;
        }
    }
}

Answer Http::askAs(const Request& request, const Watch& watch)
{
    Answer answer = askOnce(request, watch);
    if (answer.status == 401 && learnsLogin(answer, request))
        answer = askOnce(request, watch);
    // A stale connection that the server had closed looks the same as a failed one: nothing was received.
    if (answer.status == 0 && answer.wasReset && answer.received == 0 && request.isHarmless())
        answer = askOnce(request, watch);
    return answer;
}

Answer Http::askOnce(const Request& request, const Watch& watch)
{
    if (!isProtected(request.url))
        return {.failure = {CloudErrorState::Redirected,
                            "\"" + hostOf(request.url) + "\" is not reached by https"}};
    Request own = request;
    DigestLogin digest;
    if (m_signature) {
        own.headers.push_back({"Authorization", m_signature(request)});
    } else if (m_credentials.kind == Credentials::Kind::Bearer) {
        own.headers.push_back({"Authorization", "Bearer " + QByteArray::fromStdString(m_credentials.secret)});
    } else if (m_credentials.kind == Credentials::Kind::Password && m_digest) {
        digest = {QByteArray::fromStdString(m_credentials.user),
                  QByteArray::fromStdString(m_credentials.secret)};
    } else if (m_credentials.kind == Credentials::Kind::Password) {
        const auto pair = QByteArray::fromStdString(m_credentials.user + ':' + m_credentials.secret);
        own.headers.push_back({"Authorization", "Basic " + pair.toBase64()});
    }
    const std::chrono::milliseconds patience = m_patience;
    m_connection.patience(m_isInHurry ? std::min(patience, kHurry) : patience);
    return m_connection.run(own, digest, [&](std::uint64_t done, std::uint64_t total) {
        if (m_beside)
            m_beside();
        return !watch.progress || watch.progress(done, total);
    });
}

bool Http::learnsLogin(const Answer& answer, const Request& request)
{
    if (m_signature || m_credentials.kind == Credentials::Kind::Bearer)
        return m_renewal && m_renewal(m_credentials);
    if (m_credentials.kind != Credentials::Kind::Password || m_digest)
        return false;
    bool basic = false, digest = false;
    for (const Header& header : answer.headers) {
        if (header.first.compare("WWW-Authenticate", Qt::CaseInsensitive) != 0)
            continue;
        const QByteArray value = header.second.toLower();
        basic = basic || value.contains("basic ");
        digest = digest || value.contains("digest ");
    }
    // If Basic is offered as well, it has just been refused.
    m_digest = digest && !basic;
    return m_digest && !request.url.isEmpty();
}

QUrl Http::redirection(Answer& answer, const Request& request) const
{
    QUrl next = request.url.resolved(QUrl::fromEncoded(answer.header("Location")));
    const auto refuse = [&](const std::string& why) {
        answer = {.failure = {CloudErrorState::Redirected, why}};
        return QUrl();
    };
    if (answer.header("Location").isEmpty() || !next.isValid())
        return refuse("the server redirects without saying where to");
    QUrl upgraded = request.url;
    upgraded.setScheme("https");
    upgraded.setPort(next.port());
    if (!isSameOrigin(next, request.url) && !isSameOrigin(next, upgraded))
        return refuse("the server redirects to \"" + next.scheme().toStdString() + "://" + hostOf(next) +
                      "\"");
    if (answer.status == 303 && request.method != "GET" && request.method != "HEAD")
        return refuse("the server answers with another page");
    return next;
}

bool Http::waits(Answer& answer, std::chrono::milliseconds& left, const Watch& watch) const
{
    if (answer.status != 429 && answer.status != 503)
        return false;
    const auto asked = retryAfter(answer);
    if (!asked || *asked > left || left.count() <= 0)
        return false;
    left -= std::max(*asked, std::chrono::milliseconds(1000));
    const auto end = std::chrono::steady_clock::now() + *asked;
    while (std::chrono::steady_clock::now() < end) {
        if (m_beside)
            m_beside();
        if (watch.progress && !watch.progress(0, 0)) {
            answer = {.failure = {CloudErrorState::Cancelled, {}}};
            return false;
        }
        std::this_thread::sleep_for(kTick);
    }
    return true;
}

} // namespace Vs::Network
