#include "Services/Itemhub/Access/Provider.h"

#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Http/Client.h"
#include "Services/Itemhub/Store/Database.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QUrlQuery>

#include <stdexcept>

namespace Itemhub::Access {

namespace {

constexpr std::chrono::minutes kKept{10};
constexpr auto kWeb = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

[[noreturn]] void refuse(const QString& why)
{
    throw std::runtime_error("The provider of sign-ins: " + why.toStdString());
}

QJsonObject jsonOf(const std::string& text, const char* what)
{
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    if (!document.isObject())
        refuse(QString("%1 cannot be read").arg(what));
    return document.object();
}

/// TLS or this machine only: what the provider says is trusted.
QString safe(const QString& address)
{
    const QUrl url(address, QUrl::StrictMode);
    if (url.isValid() && (url.scheme() == "https" || (url.scheme() == "http" && url.host() == "127.0.0.1")))
        return address;
    refuse('"' + address + "\" is not an https address");
}

/// The claims of an ID token. Its signature needs no check: it came directly from the provider over TLS, not
/// through the browser.
QJsonObject claimsOf(const QString& token)
{
    const QStringList parts = token.split('.');
    if (parts.size() != 3)
        refuse("its ID token has not three parts");
    return jsonOf(QByteArray::fromBase64(parts[1].toLatin1(), QByteArray::Base64UrlEncoding).toStdString(),
                  "its ID token");
}

void requireMeant(const QJsonObject& claims, const ProviderConfig& config, const QString& nonce)
{
    constexpr qint64 kClockMs = 60'000;
    const QJsonValue audience = claims["aud"];
    const bool isOurs = audience.isArray() ? audience.toArray().contains(config.clientId) &&
                                                 (audience.toArray().size() == 1 ||
                                                  claims["azp"].toString() == config.clientId)
                                           : audience.toString() == config.clientId;
    if (claims["iss"].toString() != config.issuer)
        refuse("its ID token is of another issuer");
    if (!isOurs)
        refuse("its ID token is for somebody else");
    if (claims["exp"].toInteger() * 1000 + kClockMs < Store::now())
        refuse("its ID token has expired");
    if (claims["nonce"].toString() != nonce)
        refuse("its ID token is of another sign-in");
}

} // namespace

Provider::Places Provider::places()
{
    const std::lock_guard lock(m_mutex);
    const auto now = std::chrono::steady_clock::now();
    if (m_places && now - m_places->asked < kKept)
        return *m_places;
    const Http::Reply reply =
        Http::get((safe(m_config.issuer) + "/.well-known/openid-configuration").toStdString());
    if (reply.status != 200)
        refuse("its description was answered with " + QString::number(reply.status));
    const QJsonObject told = jsonOf(reply.body, "its description");
    if (told["issuer"].toString() != m_config.issuer)
        refuse("it calls itself \"" + told["issuer"].toString() + '"');
    m_places =
        Places{safe(told["authorization_endpoint"].toString()), safe(told["token_endpoint"].toString()), now};
    return *m_places;
}

QString Provider::title() const
{
    return m_config.title.isEmpty() ? QUrl(m_config.issuer).host() : m_config.title;
}

QString Provider::place(const Visit& visit)
{
    Blobs::Digest digest;
    digest.add(visit.verifier.toStdString());
    QUrl url(places().authorization);
    QUrlQuery query(url);
    for (const auto& [name, value] :
         {std::pair("response_type", QString("code")),
          {"client_id", m_config.clientId},
          {"redirect_uri", visit.redirect},
          {"scope", QString("openid")},
          {"state", visit.state},
          {"nonce", visit.nonce},
          {"code_challenge_method", QString("S256")},
          {"code_challenge", QByteArray::fromStdString(digest.result()).toBase64(kWeb)}})
        query.addQueryItem(name, QString::fromLatin1(QUrl::toPercentEncoding(value)));
    url.setQuery(query);
    return url.toString(QUrl::FullyEncoded);
}

QString Provider::subjectOf(const Visit& visit, const QString& code)
{
    const Http::Reply reply =
        Http::post(places().token.toStdString(),
                   {{"grant_type", "authorization_code"},
                    {"code", code.toStdString()},
                    {"redirect_uri", visit.redirect.toStdString()},
                    {"client_id", m_config.clientId.toStdString()},
                    {"code_verifier", visit.verifier.toStdString()}},
                   m_config.clientId.toStdString(), m_config.clientSecret.toStdString());
    if (reply.status != 200)
        refuse("it gives nothing for its code (" + QString::number(reply.status) + ')');
    const QJsonObject claims = claimsOf(jsonOf(reply.body, "its answer")["id_token"].toString());
    requireMeant(claims, m_config, visit.nonce);
    constexpr qsizetype kLongest = 255;
    QString subject = claims["sub"].toString();
    if (subject.isEmpty() || subject.size() > kLongest)
        refuse("its ID token names nobody");
    return subject;
}

} // namespace Itemhub::Access
