#pragma once

#include "Server/Network/Watch.h"

#include <string>

namespace Vs::Itemhub {

/// See ItemTransport::sha256.
[[nodiscard]] std::string hashFile(const std::string& file, const Network::Watch& watch);

} // namespace Vs::Itemhub
