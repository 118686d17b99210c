#pragma once

#include "Server/Skyvault/Client/Networking.h"
#include "Server/Skyvault/Drive.h"

#include <QUrl>

#include <string>

namespace Vs::Cloud {

/// The address that a person typed, with its protocol: https where he names none, but http on this machine.
/// Empty if it is none.
QUrl addressTyped(const std::string& typed);

/// Finds the drive at an address, and the ways to sign in to it.
DriveResult discover(const std::string& typed, DriveOffer& offer);

/// Signs in by the way that the offer names: the server's own page before OAuth 2.
DriveResult signInByBrowser(const DriveOffer& offer, const std::function<bool(const std::string&)>& open,
                            DriveCredentials& credentials, const DriveWatch& watch);

} // namespace Vs::Cloud
