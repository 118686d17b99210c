#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Adds a remark to the server's comments on a file, or if it has none to those in a property of the file.
DriveResult comment(Session& session, const std::string& path, const std::string& text, std::string& id);

/// Replaces the remarks in a property of the file, and reads them back. Unsupported if the server doesn't
/// store them.
DriveResult setRemark(Session& session, const std::string& path, const std::string& text);

} // namespace Vs::Cloud
