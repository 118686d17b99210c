#pragma once

#include "Server/Skyvault/SkyvaultNodeData.h"

#include <boost/filesystem/path.hpp>

#include <cstdint>
#include <vector>

/// The local copies of the signed-in user's drive. Main thread only.
namespace Vu::Commands::CloudCacheFiles {

struct Usage
{
    std::uint64_t bytes = 0;
    /// Of files identical to those on the drive, and open in no document.
    std::uint64_t removableBytes = 0;
    std::vector<boost::filesystem::path> removable;
};

/// Nothing while nobody is signed in.
[[nodiscard]] Usage usage();
/// Removes what is removable now, and returns how many bytes that were.
std::uint64_t removeWhatTheDriveHas();
/// Those of the nodes that can be opened without the drive, and the folders.
[[nodiscard]] std::vector<Vs::SkyvaultNodeData> openable(std::vector<Vs::SkyvaultNodeData> nodes);

} // namespace Vu::Commands::CloudCacheFiles
