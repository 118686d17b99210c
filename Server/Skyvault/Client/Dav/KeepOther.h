#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Keeps what another wrote before it is written over: as a version where the server has versions, else as a
/// copy beside it, "name (user date)".
DriveResult keepOther(Session& session, const DriveEntry& other);

/// " (anna, 2026-11-26 08:29:50 UTC)", as far as it is known.
std::string whoAndWhen(const DriveEntry& entry);
/// Of the copy: "/parts/wheel (anna 2026-11-26 08.29.50).vlra", with a number behind if it is not the first.
std::string nameOfCopy(const DriveEntry& other, int number);
/// The first of these that nothing has; empty if all have been used.
std::string nameOfNewCopy(Session& session, const DriveEntry& other);

} // namespace Vs::Cloud
