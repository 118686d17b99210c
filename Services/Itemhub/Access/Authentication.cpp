#include "Services/Itemhub/Access/Authentication.h"

#include "Services/Itemhub/Access/OAuth.h"
#include "Services/Itemhub/Access/PageSession.h"
#include "Services/Itemhub/Store/Memo.h"

#include <QDateTime>
#include <QLocale>

#include <cstdlib>
#include <optional>

namespace Itemhub::Access {

namespace {

using Store::TokenRecord;

constexpr qint64 kClockSeconds = 300; ///< How far a client's clock may be off.

Http::Problem unauthorized(const char* code, const std::string& detail)
{
    return Http::Problem(401, code, detail)
        .with("WWW-Authenticate", std::string("Bearer realm=\"itemhub\", error=\"") + code + '"');
}

std::string httpTime(qint64 seconds)
{
    return QLocale::c()
               .toString(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC), "ddd, dd MMM yyyy HH:mm:ss")
               .toStdString() +
           " GMT";
}

void requireGood(const TokenRecord& token)
{
    if (token.disabled)
        throw unauthorized("account_disabled", "The account is disabled.");
    if (token.expiresAt <= Store::now())
        throw unauthorized("token_expired", "The token has expired.");
}

/// Like findToken. Most of a thread's requests use a few tokens, which are cached as long as nothing in the
/// database has changed.
std::optional<TokenRecord> knownToken(Store::Connection& connection, const QString& selector)
{
    thread_local Store::Memo<QString, TokenRecord> known(64);
    return known.get(connection, selector, [&] { return Store::findToken(connection, selector); });
}

TokenRecord byBearer(Store::Connection& connection, const QString& text)
{
    const auto token = knownToken(connection, text.section('.', 0, 0));
    // Don't reveal whether such a token ever existed.
    if (!token || token->consumer ||
        !equalSecrets(hashOf(text.section('.', 1)).toLatin1(), token->hash.toLatin1()))
        throw unauthorized("token_unknown", "The token is not one of this service.");
    requireGood(*token);
    return *token;
}

/// By the dashboard's session cookie.
TokenRecord byPage(Store::Connection& connection, const MasterKey& key, const Http::Request& request,
                   const QString& text)
{
    // Identify the caller first: what is refused to a known account is noted for the administrator.
    TokenRecord token = byBearer(connection, text);
    requireOwnPage(request);
    const bool reads = request.method() == "GET" || request.method() == "HEAD";
    const QByteArray proof = QByteArray::fromStdString(request.header("X-CSRF-Token"));
    if (!reads && !equalSecrets(proof, pageProof(key, token.selector).toLatin1()))
        throw Http::Problem(403, "not_the_page", "The request was not made by the dashboard's own page.");
    return token;
}

/// Checks everything but the token's age.
TokenRecord bySignature(Store::Connection& connection, const MasterKey& key, const Http::Request& request,
                        const QMap<QString, QString>& parameters, const QString& base)
{
    const qint64 seconds = Store::now() / 1000, stamp = parameters.value("oauth_timestamp").toLongLong();
    // Told the time here, a client whose clock is wrong can sign again.
    if (std::abs(seconds - stamp) > kClockSeconds)
        throw unauthorized("clock", "The request's time is " + std::to_string(std::abs(seconds - stamp)) +
                                        " seconds from the service's; set the clock.")
            .with("Date", httpTime(seconds));
    const QString consumerKey = parameters.value("oauth_consumer_key"),
                  name = parameters.value("oauth_token");
    const auto token = Store::findToken(connection, name);
    const QByteArray right =
        signatureOf(signatureBase(request, parameters, base), parameters.value("oauth_signature_method"),
                    consumerSecretOf(key, consumerKey), tokenSecretOf(key, name));
    if (!token || !token->consumer || token->consumerKey != consumerKey ||
        !equalSecrets(parameters.value("oauth_signature").toLatin1(), right))
        throw unauthorized("signature", "The request's signature is not right.");
    const QString nonce = parameters.value("oauth_nonce");
    constexpr qsizetype kLongestNonce = 64;
    if (nonce.isEmpty() || nonce.size() > kLongestNonce ||
        !Store::useNonce(connection, consumerKey + name, stamp, nonce, seconds - 2 * kClockSeconds))
        throw unauthorized("repeated", "The request came before.");
    if (token->disabled)
        throw unauthorized("account_disabled", "The account is disabled.");
    return *token;
}

} // namespace

TokenRecord authenticate(Store::Connection& connection, const MasterKey& key, const Http::Request& request,
                         const QString& base)
{
    const std::string header = request.header("Authorization");
    const QString text = QString::fromStdString(header), scheme = "Bearer ";
    TokenRecord token;
    if (text.startsWith(scheme, Qt::CaseInsensitive)) {
        token = byBearer(connection, text.mid(scheme.size()).trimmed());
    } else if (const auto parameters = signedParameters(header); !parameters.isEmpty()) {
        token = bySignature(connection, key, request, parameters, base);
        requireGood(token);
    } else if (const auto page = header.empty() ? pageToken(request) : std::nullopt) {
        token = byPage(connection, key, request, *page);
    } else {
        throw unauthorized("token_missing", "The request needs a token.");
    }
    const auto customer = request.parameter("customer");
    if (customer && QString::fromStdString(*customer) != token.tenantName)
        throw Http::Problem(403, "wrong_customer", "The token belongs to another customer.");
    return token;
}

Granted exchange(Store::Connection& connection, const MasterKey& key, const Http::Request& request,
                 const QString& base, qint64 lifetimeMs)
{
    const auto parameters = signedParameters(request.header("Authorization"));
    const TokenRecord token = bySignature(connection, key, request, parameters, base);
    if (!equalSecrets(hashOf(parameters.value("oauth_session_handle")).toLatin1(),
                      token.sessionHash.toLatin1()))
        throw unauthorized("session", "The session handle is not the token's.");
    return renewSigned(connection, key, token.id, lifetimeMs);
}

} // namespace Itemhub::Access
