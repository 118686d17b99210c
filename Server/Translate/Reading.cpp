#include "Server/Translate/Reading.h"

#include <filesystem>

namespace Vs::Translate {

std::string stemOf(const std::string& path)
{
    return std::filesystem::path(path).stem().string();
}

void checkLimits(size_t levels, uint64_t parts)
{
    constexpr uint64_t kMostParts = 10'000'000;
    if (levels > kMostLevels)
        throw Unreadable("holds assemblies within assemblies on more than " + std::to_string(kMostLevels) +
                         " levels");
    if (parts > kMostParts)
        throw Unreadable("uses its parts so often that there are more than the " +
                         std::to_string(kMostParts) + " that can be shown");
}

} // namespace Vs::Translate
