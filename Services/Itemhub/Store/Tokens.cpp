#include "Services/Itemhub/Store/Tokens.h"

#include <algorithm>
#include <string>

namespace Itemhub::Store {

namespace {

TokenRecord recordOf(const Rows& rows)
{
    TokenRecord record;
    record.id = rows.number(0);
    record.account = rows.number(1);
    record.tenant = rows.number(2);
    record.selector = rows.text(3);
    record.hash = rows.text(4);
    record.sessionHash = rows.text(5);
    record.accountName = rows.text(6);
    record.tenantName = rows.text(7);
    record.label = rows.text(8);
    record.consumer = rows.number(9);
    record.consumerKey = rows.text(10);
    record.scope = static_cast<Role>(rows.number(11));
    record.disabled = rows.number(12) != 0;
    record.createdAt = rows.number(13);
    record.expiresAt = rows.number(14);
    return record;
}

const std::string kSelect =
    "SELECT t.id, t.account_id, a.tenant_id, t.selector, t.hash, t.session_hash, a.name, n.name, t.label, "
    "t.consumer_id, c.consumer_key, t.scope, a.disabled, t.created_at, t.expires_at FROM token t "
    "JOIN account a ON a.id = t.account_id JOIN tenant n ON n.id = a.tenant_id "
    "LEFT JOIN consumer c ON c.id = t.consumer_id ";
const std::string kBySelector = kSelect + "WHERE t.selector = ?";
const std::string kByAccount = kSelect + "WHERE t.account_id = ? ORDER BY t.id";

} // namespace

qint64 addToken(Connection& connection, const NewToken& token)
{
    Rows rows = connection.run(
        "INSERT INTO token (account_id, consumer_id, selector, hash, session_hash, scope, label, "
        "created_at, expires_at) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id",
        {token.account, token.consumer ? QVariant(token.consumer) : QVariant(), token.selector, token.hash,
         token.sessionHash, static_cast<int>(token.scope), token.label, now(), token.expiresAt});
    return rows.next() ? rows.number(0) : 0;
}

std::optional<TokenRecord> findToken(Connection& connection, const QString& selector)
{
    Rows rows = connection.run(kBySelector, {selector});
    return rows.next() ? std::optional(recordOf(rows)) : std::nullopt;
}

std::vector<TokenRecord> tokensOf(Connection& connection, qint64 account)
{
    std::vector<TokenRecord> tokens;
    Rows rows = connection.run(kByAccount, {account});
    while (rows.next())
        tokens.push_back(recordOf(rows));
    return tokens;
}

bool removeToken(Connection& connection, qint64 account, qint64 token)
{
    return connection.run("DELETE FROM token WHERE id = ? AND account_id = ?", {token, account}).changed() >
           0;
}

void renewToken(Connection& connection, qint64 token, const QString& selector, const QString& sessionHash,
                qint64 expiresAt)
{
    connection.run("UPDATE token SET selector = ?, session_hash = ?, expires_at = ? WHERE id = ?",
                   {selector, sessionHash, expiresAt, token});
}

void removeExpiredTokens(Connection& connection)
{
    // One with a session can be renewed for a while.
    constexpr qint64 kRenewable = 90LL * 24 * 3600 * 1000;
    connection.run("DELETE FROM token WHERE (session_hash = '' AND expires_at < ?) OR expires_at < ?",
                   {now(), now() - kRenewable});
}

qint64 addConsumer(Connection& connection, qint64 tenant, const QString& key, const QString& label)
{
    Rows rows = connection.run(
        "INSERT INTO consumer (tenant_id, consumer_key, label, created_at) VALUES (?, ?, ?, ?) "
        "RETURNING id",
        {tenant, key, label, now()});
    return rows.next() ? rows.number(0) : 0;
}

std::optional<Consumer> findConsumer(Connection& connection, const QString& key)
{
    Rows rows = connection.run("SELECT id, tenant_id FROM consumer WHERE consumer_key = ?", {key});
    return rows.next() ? std::optional(Consumer{rows.number(0), rows.number(1)}) : std::nullopt;
}

bool useNonce(Connection& connection, const QString& token, qint64 stamp, const QString& nonce, qint64 oldest)
{
    Transaction change(connection);
    connection.run("DELETE FROM nonce WHERE token_key = ? AND stamp < ?", {token, oldest});
    const bool isNew =
        connection
            .run("INSERT INTO nonce (token_key, stamp, nonce) VALUES (?, ?, ?) ON CONFLICT DO NOTHING",
                 {token, stamp, nonce})
            .changed() > 0;
    change.commit();
    return isNew;
}

qint64 waitOf(Connection& connection, const QString& subject)
{
    constexpr qint64 kFree = 5;
    constexpr qint64 kFirst = 1000, kLongest = 15LL * 60 * 1000;
    Rows rows = connection.run("SELECT failures, failed_at FROM throttle WHERE subject = ?", {subject});
    if (!rows.next() || rows.number(0) < kFree)
        return 0;
    const qint64 wait = std::min(kFirst << std::min<qint64>(rows.number(0) - kFree, 20), kLongest);
    return std::max<qint64>(0, rows.number(1) + wait - now());
}

void noteFailure(Connection& connection, const QString& subject)
{
    constexpr qint64 kForgotten = 3600LL * 1000;
    Transaction change(connection);
    connection.run("DELETE FROM throttle WHERE failed_at < ?", {now() - kForgotten});
    connection.run(
        "INSERT INTO throttle (subject, failures, failed_at) VALUES (?, 1, ?) ON CONFLICT (subject) "
        "DO UPDATE SET failures = throttle.failures + 1, failed_at = excluded.failed_at",
        {subject, now()});
    change.commit();
}

void forgetFailures(Connection& connection, const QString& subject)
{
    connection.run("DELETE FROM throttle WHERE subject = ?", {subject});
}

} // namespace Itemhub::Store
