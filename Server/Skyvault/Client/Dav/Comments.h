#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Adds a remark to the server's comments on a file, else to those that the file itself keeps as a property.
DriveResult comment(Session& session, const std::string& path, const std::string& text, std::string& id);

/// Replaces the remarks that the file keeps as a property, and reads them back. Unsupported if the server
/// doesn't keep them.
DriveResult setRemark(Session& session, const std::string& path, const std::string& text);

} // namespace Vs::Cloud
