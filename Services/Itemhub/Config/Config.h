#pragma once

#include "Services/Itemhub/Blobs/ObjectBlobs.h"
#include "Services/Itemhub/Store/Dialect.h"

#include <QString>

namespace Itemhub {

/// An external sign-in provider (OpenID Connect).
struct ProviderConfig
{
    QString issuer; ///< Its address; empty for none.
    QString clientId, clientSecret;
    QString title; ///< The label of its button.
};

/// The configuration of a service.
struct Config
{
    Store::DatabaseOptions database;
    QString blobs;                                                              ///< The folder of contents.
    Blobs::ObjectPlace objects{.region = "us-east-1", .nearBytes = 4ULL << 30}; ///< Without an address: none.
    QString uploads; ///< The folder for uploads in progress; on the same file system as the contents.
    QString keyFile; ///< See Access::MasterKey.

    QString address = "127.0.0.1";
    int port = 8080;
    QString url;     ///< As clients see the service, without a trailing slash; empty for its own address.
    QString pageUrl; ///< The same as browsers see it; empty if it doesn't differ.
    bool behindProxy = false;
    double requestsPerSecond = 200; ///< Per client; 0 for no limit.
    int connections = 512;          ///< Concurrent ones.

    qint64 largestUpload = 8LL << 30;     ///< In bytes.
    qint64 announcedUploads = 64LL << 30; ///< In bytes; the total of uploads in progress per account.
    qint64 uploadHours = 48;              ///< Until an unfinished upload is discarded.

    ProviderConfig provider;

    qint64 eventDays = 90;  ///< How long events are kept; 0 for forever.
    qint64 auditDays = 730; ///< The same for the administrators' audit trail.
};

/// Reads a JSON configuration file. @throws std::runtime_error that names the file and what is wrong in it
[[nodiscard]] Config readConfig(const QString& file);
/// Everything in one folder, which is created; for a single user on this machine. @throws std::runtime_error
[[nodiscard]] Config localConfig(const QString& folder);

} // namespace Itemhub
