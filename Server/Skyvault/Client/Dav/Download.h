#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Reads a file of the drive into a new one beside the target, which takes the target's place when all of it
/// is on the disk.
DriveResult download(Session& session, const std::string& path, const std::string& target, DriveEntry& entry,
                     const DriveWatch& watch);

} // namespace Vs::Cloud
