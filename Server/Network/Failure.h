#pragma once

#include "Server/Network/Request.h"

#include <string>

namespace Vs::Network {

/// What a response, or the lack of one, means, as text for the user: `action` says what was attempted and
/// where ("Reading "/a.vlra" on host"). Success for 2xx.
Result resultOf(const Answer& answer, const std::string& action);
/// A failure whose detail starts with what was attempted.
Result failed(CloudErrorState state, const std::string& action, const std::string& why);

} // namespace Vs::Network
