#pragma once

#include "Server/Network/Watch.h"

#include <boost/filesystem/path.hpp>

#include <string>

namespace Vs::Itemhub {

/// The SHA-256 of a file, in hexadecimal digits. Throws Vs::Exception if it can't be read,
/// ItemStore::Cancelled if the watch ends it.
[[nodiscard]] std::string hashOf(const boost::filesystem::path& file, const Network::Watch& watch);

} // namespace Vs::Itemhub
