#pragma once

#include "Services/Itemhub/Blobs/ObjectBlobs.h"
#include "Services/Itemhub/Store/Dialect.h"

#include <QString>

namespace Itemhub {

/// An outside provider that people sign in by (OpenID Connect).
struct ProviderConfig
{
    QString issuer; ///< Its address; empty for none.
    QString clientId, clientSecret;
    QString title; ///< What its button says.
};

/// How a service runs.
struct Config
{
    Store::DatabaseOptions database;
    QString blobs;                                                              ///< The folder of contents.
    Blobs::ObjectPlace objects{.region = "us-east-1", .nearBytes = 4ULL << 30}; ///< No address: none.
    QString uploads; ///< The folder of what is being uploaded; on the same file system as the contents.
    QString keyFile; ///< See Access::MasterKey.

    QString address = "127.0.0.1";
    int port = 8080;
    QString url;     ///< As clients see the service, without a slash at the end; empty for its own address.
    QString pageUrl; ///< The same as browsers see it; empty if that is no other one.
    bool behindProxy = false;
    double requestsPerSecond = 200; ///< Of one client; 0 for no limit.
    int connections = 512;          ///< At the same time.

    qint64 largestUpload = 8LL << 30;     ///< Bytes.
    qint64 announcedUploads = 64LL << 30; ///< Bytes that one account may have under way.
    qint64 uploadHours = 48;              ///< Until an unfinished upload is forgotten.

    ProviderConfig provider;

    qint64 eventDays = 90;  ///< How long events are kept; 0 for ever.
    qint64 auditDays = 730; ///< The same of what administrators may want to know.
};

/// Reads a configuration file in JSON. @throws std::runtime_error that names the file and what is wrong there
[[nodiscard]] Config readConfig(const QString& file);
/// All in one folder, which is made; for one user on this machine. @throws std::runtime_error
[[nodiscard]] Config localConfig(const QString& folder);

} // namespace Itemhub
