#pragma once

#include "Server/Skyvault/Drive.h"

#include <string>

namespace Vs::Cloud {

/// Credentials in the desktop's keyring. A user who has to unlock it gets two minutes for that. CacheFailed
/// if no keyring is running or if it refuses.
DriveResult keepInKeyring(const std::string& key, const DriveCredentials& credentials);
/// NotFound if it has none of this key.
DriveResult keptInKeyring(const std::string& key, DriveCredentials& credentials);
/// Also succeeds if there was none.
DriveResult forgetInKeyring(const std::string& key);

} // namespace Vs::Cloud
