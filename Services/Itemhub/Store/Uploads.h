#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <optional>
#include <vector>

namespace Itemhub::Store {

/// An announced upload. Its progress is the size of its file.
struct Upload
{
    QString id;
    qint64 account = 0;
    qint64 length = 0; ///< In bytes; the total.
    QString wanted;    ///< The SHA-256 that the client announced, or empty.
    QString sha256;    ///< Of the content, once all of it is stored; empty before.
    qint64 expiresAt = 0;
};

void addUpload(Connection& connection, const Upload& upload);
[[nodiscard]] std::optional<Upload> findUpload(Connection& connection, const QString& id);
void finishUpload(Connection& connection, const QString& id, const QString& sha256);
void removeUpload(Connection& connection, const QString& id);
[[nodiscard]] std::vector<QString> expiredUploads(Connection& connection);
/// The total in bytes of the account's open uploads.
[[nodiscard]] qint64 announcedBytes(Connection& connection, qint64 account);

/// The response to a request, kept to be sent again when it is repeated.
struct KeptAnswer
{
    QString request; ///< A hash of the request.
    int status = 0;
    QString headers, body;
};

/// Claims a key for a request, within a transaction. @returns the response if it was claimed before
[[nodiscard]] std::optional<KeptAnswer> claimKey(Connection& connection, qint64 account, const QString& key,
                                                 const QString& request);
void keepAnswer(Connection& connection, qint64 account, const QString& key, const KeptAnswer& answer);

} // namespace Itemhub::Store
