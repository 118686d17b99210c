#pragma once

#include "Services/Itemhub/Access/Secrets.h"
#include "Services/Itemhub/Store/Tokens.h"

namespace Itemhub::Access {

/// A token as its owner is told it, once: the database only has hashes.
struct Granted
{
    qint64 id = 0;
    QString token;
    QString tokenSecret, sessionHandle; ///< Of tokens for signed requests; else empty.
    qint64 expiresAt = 0;
};

struct GrantWishes
{
    qint64 account = 0;
    Store::Role scope = Store::Role::Reader;
    QString label;
    qint64 lifetimeMs = 0;
};

[[nodiscard]] Granted grantBearer(Store::Connection& connection, const GrantWishes& wishes);
[[nodiscard]] Granted grantSigned(Store::Connection& connection, const MasterKey& key,
                                  const GrantWishes& wishes, qint64 consumer);
/// A new token in the place of an old one, with the same rights.
[[nodiscard]] Granted renewSigned(Store::Connection& connection, const MasterKey& key, qint64 token,
                                  qint64 lifetimeMs);

[[nodiscard]] QString consumerSecretOf(const MasterKey& key, const QString& consumerKey);
[[nodiscard]] QString tokenSecretOf(const MasterKey& key, const QString& token);

/// What stands in the database for a secret of many random bytes; such need no slow hash.
[[nodiscard]] QString hashOf(const QString& secret);

} // namespace Itemhub::Access
