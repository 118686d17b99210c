#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

namespace Vs::Cloud {

/// Finds out what isn't known of a server, in a folder of its own within the given one, which goes again
/// however this ends. A connection that fails is an error; what else disturbs a trial leaves its trait
/// unknown, as does a user who may not write there.
DriveResult probe(Session& session, const std::string& within, const DriveWatch& watch);

/// Whether what was found out earlier still counts.
bool isFresh(const DriveTraits& traits);

} // namespace Vs::Cloud
