#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Preserves somebody else's content before it is overwritten: as a version if the server has versions,
/// otherwise as a copy beside it, "name (user date)".
DriveResult keepOther(Session& session, const DriveEntry& other);

/// " (anna, 2026-11-26 08:29:50 UTC)", as far as known.
std::string whoAndWhen(const DriveEntry& entry);
/// The name of the copy: "/parts/wheel (anna 2026-11-26 08.29.50).vlra", with a number appended unless it is
/// the first.
std::string nameOfCopy(const DriveEntry& other, int number);
/// The first of these that isn't taken; empty if all are.
std::string nameOfNewCopy(Session& session, const DriveEntry& other);

} // namespace Vs::Cloud
