#pragma once

#include "Server/Skyvault/Drive.h"

#include <QUrl>

#include <functional>
#include <string>

namespace Vs::Cloud {

/// Signs in through the server's own login page (Nextcloud's login flow, version 2), which issues an app
/// password for this program. `server` is the service's base address, above "remote.php".
DriveResult signInByLoginFlow(const QUrl& server, const std::function<bool(const std::string&)>& open,
                              DriveCredentials& credentials, const DriveWatch& watch);

} // namespace Vs::Cloud
