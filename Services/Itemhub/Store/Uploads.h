#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <optional>
#include <vector>

namespace Itemhub::Store {

/// An upload that was announced. How far it is, its file says.
struct Upload
{
    QString id;
    qint64 account = 0;
    qint64 length = 0; ///< In bytes, of the whole.
    QString wanted;    ///< The SHA-256 that the client announced, or empty.
    QString sha256;    ///< What came, once all of it is kept; before, empty.
    qint64 expiresAt = 0;
};

void addUpload(Connection& connection, const Upload& upload);
[[nodiscard]] std::optional<Upload> findUpload(Connection& connection, const QString& id);
void finishUpload(Connection& connection, const QString& id, const QString& sha256);
void removeUpload(Connection& connection, const QString& id);
[[nodiscard]] std::vector<QString> expiredUploads(Connection& connection);
/// Bytes that the account has announced in uploads that aren't over.
[[nodiscard]] qint64 announcedBytes(Connection& connection, qint64 account);

/// An answer that was given to a request, to be given again when it's repeated.
struct KeptAnswer
{
    QString request; ///< What was asked, as a hash.
    int status = 0;
    QString headers, body;
};

/// Claims a key for a request, within a transaction. @returns the answer that was given if it was claimed
/// before
[[nodiscard]] std::optional<KeptAnswer> claimKey(Connection& connection, qint64 account, const QString& key,
                                                 const QString& request);
void keepAnswer(Connection& connection, qint64 account, const QString& key, const KeptAnswer& answer);

} // namespace Itemhub::Store
