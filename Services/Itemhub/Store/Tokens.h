#pragma once

#include "Services/Itemhub/Store/Accounts.h"

namespace Itemhub::Store {

/// A token and its account, found by a single query.
struct TokenRecord
{
    qint64 id = 0, account = 0, tenant = 0;
    QString selector, hash, sessionHash;
    QString accountName, tenantName, label;
    QString consumerKey; ///< Empty for bearer tokens.
    qint64 consumer = 0; ///< 0 for bearer tokens.
    Role scope = Role::None;
    bool disabled = false; ///< Whether the account is.
    qint64 createdAt = 0, expiresAt = 0;
};

struct NewToken
{
    qint64 account = 0, consumer = 0; ///< With a consumer of 0, it is a bearer token.
    QString selector, hash, sessionHash, label;
    Role scope = Role::Reader;
    qint64 expiresAt = 0;
};

qint64 addToken(Connection& connection, const NewToken& token);
[[nodiscard]] std::optional<TokenRecord> findToken(Connection& connection, const QString& selector);
[[nodiscard]] std::vector<TokenRecord> tokensOf(Connection& connection, qint64 account);
/// @returns false if the account has no such token
bool removeToken(Connection& connection, qint64 account, qint64 token);
/// Gives a token a new selector, session and expiry.
void renewToken(Connection& connection, qint64 token, const QString& selector, const QString& sessionHash,
                qint64 expiresAt);
void removeExpiredTokens(Connection& connection);

struct Consumer
{
    qint64 id = 0, tenant = 0;
};

qint64 addConsumer(Connection& connection, qint64 tenant, const QString& key, const QString& label);
[[nodiscard]] std::optional<Consumer> findConsumer(Connection& connection, const QString& key);

/// Records a signed request.
/// @returns false for a replay
/// @param stamp of the request, in seconds since 1970; anything older than the oldest is forgotten
[[nodiscard]] bool useNonce(Connection& connection, const QString& token, qint64 stamp, const QString& nonce,
                            qint64 oldest);

/// How long somebody who failed to sign in has to wait, in milliseconds; 0 for not at all.
[[nodiscard]] qint64 waitOf(Connection& connection, const QString& subject);
void noteFailure(Connection& connection, const QString& subject);
void forgetFailures(Connection& connection, const QString& subject);

} // namespace Itemhub::Store
