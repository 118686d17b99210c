#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

namespace Vs::Cloud {

/// Asks who the user is to the server. Where the server is one that has accounts and capabilities of its own
/// beside WebDAV (Nextcloud and its relatives), it is asked for these, too, and the drive's address becomes
/// that of the user's files.
DriveResult recognize(Session& session);

/// Fills in what the server itself says that it can do: chunked upload, versions, checksums.
void addCapabilities(const Session& session, DriveTraits& traits);

} // namespace Vs::Cloud
