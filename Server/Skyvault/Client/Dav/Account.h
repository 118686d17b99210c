#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

namespace Vs::Cloud {

/// Asks the server who the user is. A server that has accounts and capabilities beyond WebDAV (Nextcloud and
/// its relatives) is asked for these, too, and the drive's address becomes that of the user's files.
DriveResult recognize(Session& session);

/// Adds the capabilities that the server itself reports: chunked upload, versions, checksums.
void addCapabilities(const Session& session, DriveTraits& traits);

} // namespace Vs::Cloud
