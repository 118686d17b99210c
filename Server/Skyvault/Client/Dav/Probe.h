#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

namespace Vs::Cloud {

/// Finds out what a server does, in a folder of its own at the drive's root, which goes again however this
/// ends. Where the user may not write there, nothing is known and nothing is taken for granted.
DriveResult probe(Session& session, DriveTraits& traits, const DriveWatch& watch);

/// Whether what was found out earlier still counts.
bool isFresh(const DriveTraits& traits);

} // namespace Vs::Cloud
