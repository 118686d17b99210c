#pragma once

#include "Server/Network/Request.h"

#include <string>

namespace Vs::Network {

/// What an answer, or its absence, means, for a person: `action` says what was tried and where ("Reading
/// "/a.vlra" on host"). Success for the kind 2xx.
Result resultOf(const Answer& answer, const std::string& action);
/// The detail with what was tried before it.
Result failed(CloudErrorState state, const std::string& action, const std::string& why);

} // namespace Vs::Network
