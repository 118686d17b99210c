#include "Services/Itemhub/Access/Grants.h"

#include <sodium.h>

namespace Itemhub::Access {

namespace {

constexpr size_t kSelectorBytes = 12, kSecretBytes = 32;

} // namespace

QString hashOf(const QString& secret)
{
    const QByteArray text = secret.toUtf8();
    QByteArray hash(crypto_hash_sha256_BYTES, '\0');
    crypto_hash_sha256(reinterpret_cast<unsigned char*>(hash.data()),
                       reinterpret_cast<const unsigned char*>(text.constData()),
                       static_cast<unsigned long long>(text.size()));
    return QString::fromLatin1(hash.toHex());
}

QString consumerSecretOf(const MasterKey& key, const QString& consumerKey)
{
    return key.derived("consumer", consumerKey);
}

QString tokenSecretOf(const MasterKey& key, const QString& token)
{
    return key.derived("token", token);
}

Granted grantBearer(Store::Connection& connection, const GrantWishes& wishes)
{
    const QString selector = randomText(kSelectorBytes), secret = randomText(kSecretBytes);
    Granted granted;
    granted.token = selector + '.' + secret;
    granted.expiresAt = Store::now() + wishes.lifetimeMs;
    granted.id = Store::addToken(connection, {.account = wishes.account,
                                              .selector = selector,
                                              .hash = hashOf(secret),
                                              .label = wishes.label,
                                              .scope = wishes.scope,
                                              .expiresAt = granted.expiresAt});
    return granted;
}

Granted grantSigned(Store::Connection& connection, const MasterKey& key, const GrantWishes& wishes,
                    qint64 consumer)
{
    Granted granted;
    granted.token = randomText(kSelectorBytes);
    granted.tokenSecret = tokenSecretOf(key, granted.token);
    granted.sessionHandle = randomText(kSecretBytes);
    granted.expiresAt = Store::now() + wishes.lifetimeMs;
    granted.id = Store::addToken(connection, {.account = wishes.account,
                                              .consumer = consumer,
                                              .selector = granted.token,
                                              .hash = {},
                                              .sessionHash = hashOf(granted.sessionHandle),
                                              .label = wishes.label,
                                              .scope = wishes.scope,
                                              .expiresAt = granted.expiresAt});
    return granted;
}

Granted renewSigned(Store::Connection& connection, const MasterKey& key, qint64 token, qint64 lifetimeMs)
{
    Granted granted;
    granted.id = token;
    granted.token = randomText(kSelectorBytes);
    granted.tokenSecret = tokenSecretOf(key, granted.token);
    granted.sessionHandle = randomText(kSecretBytes);
    granted.expiresAt = Store::now() + lifetimeMs;
    Store::renewToken(connection, token, granted.token, hashOf(granted.sessionHandle), granted.expiresAt);
    return granted;
}

} // namespace Itemhub::Access
