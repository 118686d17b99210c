#pragma once

#include "Services/Itemhub/Access/Secrets.h"
#include "Services/Itemhub/Store/Tokens.h"

namespace Itemhub::Access {

/// A token as its owner gets to see it, once: the database contains only hashes.
struct Granted
{
    qint64 id = 0;
    QString token;
    QString tokenSecret, sessionHandle; ///< For signed requests; otherwise empty.
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
/// Replaces a token by a new one with the same rights.
[[nodiscard]] Granted renewSigned(Store::Connection& connection, const MasterKey& key, qint64 token,
                                  qint64 lifetimeMs);

[[nodiscard]] QString consumerSecretOf(const MasterKey& key, const QString& consumerKey);
[[nodiscard]] QString tokenSecretOf(const MasterKey& key, const QString& token);

/// The stored form of a secret of many random bytes, which needs no slow hash.
[[nodiscard]] QString hashOf(const QString& secret);

} // namespace Itemhub::Access
