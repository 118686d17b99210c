#pragma once

#include "Server/Skyvault/Client/Networking.h"
#include "Server/Skyvault/Drive.h"

#include <QUrl>

#include <string>

namespace Vs::Cloud {

/// The address as a user typed it, with a protocol: https if none is given, but http on this machine. Empty
/// if it isn't an address.
QUrl addressTyped(const std::string& typed);

/// Finds the drive at an address, and the ways to sign in to it.
DriveResult discover(const std::string& typed, DriveOffer& offer);

/// Signs in by the offered method: the server's own page is preferred to OAuth 2.
DriveResult signInByBrowser(const DriveOffer& offer, const std::function<bool(const std::string&)>& open,
                            DriveCredentials& credentials, const DriveWatch& watch);

} // namespace Vs::Cloud
