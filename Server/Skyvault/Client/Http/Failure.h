#pragma once

#include "Server/Skyvault/Client/Http/Request.h"

#include <string>

namespace Vs::Cloud {

/// What an answer, or its absence, means, for a person: `action` says what was tried and where ("Reading
/// "/a.vlra" on host"). Success for the kind 2xx.
DriveResult resultOf(const Answer& answer, const std::string& action);
/// The detail with what was tried before it.
DriveResult failed(CloudErrorState state, const std::string& action, const std::string& why);

} // namespace Vs::Cloud
