#pragma once

#include "Server/Skyvault/Drive.h"

#include <QUrl>

#include <functional>
#include <string>

namespace Vs::Cloud {

/// Signs in by the server's own login page (Nextcloud's login flow, version 2), which gives a password for
/// this program alone. `server` is where the service begins, above "remote.php".
DriveResult signInByLoginFlow(const QUrl& server, const std::function<bool(const std::string&)>& open,
                              DriveCredentials& credentials, const DriveWatch& watch);

} // namespace Vs::Cloud
