#include "Services/Itemhub/Store/Uploads.h"

namespace Itemhub::Store {

void addUpload(Connection& connection, const Upload& upload)
{
    connection.run(
        "INSERT INTO upload (id, account_id, length, wanted_sha256, expires_at) VALUES (?, ?, ?, ?, ?)",
        {upload.id, upload.account, upload.length, upload.wanted, upload.expiresAt});
}

std::optional<Upload> findUpload(Connection& connection, const QString& id)
{
    Rows rows = connection.run(
        "SELECT id, account_id, length, wanted_sha256, sha256, expires_at FROM upload WHERE id = ?", {id});
    if (!rows.next())
        return std::nullopt;
    return Upload{rows.text(0), rows.number(1), rows.number(2), rows.text(3), rows.text(4), rows.number(5)};
}

void finishUpload(Connection& connection, const QString& id, const QString& sha256)
{
    connection.run("UPDATE upload SET sha256 = ? WHERE id = ?", {sha256, id});
}

void removeUpload(Connection& connection, const QString& id)
{
    connection.run("DELETE FROM upload WHERE id = ?", {id});
}

std::vector<QString> expiredUploads(Connection& connection)
{
    std::vector<QString> ids;
    Rows rows = connection.run("SELECT id FROM upload WHERE expires_at < ? LIMIT 100", {now()});
    while (rows.next())
        ids.push_back(rows.text(0));
    return ids;
}

qint64 announcedBytes(Connection& connection, qint64 account)
{
    Rows rows =
        connection.run("SELECT coalesce(sum(length), 0) FROM upload WHERE account_id = ? AND expires_at >= ?",
                       {account, now()});
    return rows.next() ? rows.number(0) : 0;
}

std::optional<KeptAnswer> claimKey(Connection& connection, qint64 account, const QString& key,
                                   const QString& request)
{
    constexpr qint64 kKept = 24LL * 3600 * 1000;
    connection.run("DELETE FROM idempotency WHERE account_id = ? AND created_at < ?",
                   {account, now() - kKept});
    // Of two concurrent requests, the second waits here for the first.
    if (connection
            .run("INSERT INTO idempotency (account_id, idempotency_key, request, status, headers, body, "
                 "created_at) "
                 "VALUES (?, ?, ?, 0, '', '', ?) ON CONFLICT DO NOTHING",
                 {account, key, request, now()})
            .changed() > 0)
        return std::nullopt;
    Rows rows =
        connection.run("SELECT request, status, headers, body FROM idempotency WHERE account_id = ? AND "
                       "idempotency_key = ?",
                       {account, key});
    if (!rows.next())
        return std::nullopt;
    return KeptAnswer{rows.text(0), static_cast<int>(rows.number(1)), rows.text(2), rows.text(3)};
}

void keepAnswer(Connection& connection, qint64 account, const QString& key, const KeptAnswer& answer)
{
    connection.run("UPDATE idempotency SET status = ?, headers = ?, body = ? WHERE account_id = ? AND "
                   "idempotency_key = ?",
                   {answer.status, answer.headers, answer.body, account, key});
}

} // namespace Itemhub::Store
