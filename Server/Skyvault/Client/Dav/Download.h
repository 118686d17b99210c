#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Downloads a file of the drive to a temporary file, which replaces the target once all of it is on disk.
DriveResult download(Session& session, const std::string& path, const std::string& target, DriveEntry& entry,
                     const DriveWatch& watch);

} // namespace Vs::Cloud
