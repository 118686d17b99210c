#pragma once

#include "Server/Skyvault/Drive.h"

#include <string>

namespace Vs::Cloud {

/// Credentials in the desktop's keyring. A person who has to unlock it gets two minutes for that. CacheFailed
/// where none runs, or where it refuses.
DriveResult keepInKeyring(const std::string& key, const DriveCredentials& credentials);
/// NotFound if it has none of this key.
DriveResult keptInKeyring(const std::string& key, DriveCredentials& credentials);
/// Fine, too, if there was none.
DriveResult forgetInKeyring(const std::string& key);

} // namespace Vs::Cloud
