#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

namespace Vs::Cloud {

/// Finds out what isn't known about a server, in a temporary folder within the given one, which is removed
/// whatever happens. A connection failure is an error; any other disturbance of a trial leaves its trait
/// unknown, as does a user without write permission there.
DriveResult probe(Session& session, const std::string& within, const DriveWatch& watch);

/// Whether earlier findings are still valid.
bool isFresh(const DriveTraits& traits);

} // namespace Vs::Cloud
