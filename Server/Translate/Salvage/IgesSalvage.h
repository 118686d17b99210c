#pragma once

#include "Server/Translate/Salvage/Salvage.h"

#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace Vs::Translate::Salvage {

/// The sound content of a damaged IGES file.
struct SalvagedIges : Salvaged
{
    size_t faces = 0, soundFaces = 0;
    /// Whether lines are where they belong: the kernel goes by their order and not by their numbers, so that
    /// one too many shifts all that follow.
    bool isInOrder = false;
};

/// As `salvage` does for STEP: what is sound of an IGES file. A group makes do with the members
/// that are left, and a solid whose shell lost a face becomes that shell; a face needs its surface and all
/// its boundaries. What the kernel makes nothing of is left out without a word.
[[nodiscard]] SalvagedIges salvageIges(std::string_view file,
                                       const std::unordered_set<uint32_t>& without = {});

/// The numbers of the sound faces, in the order of the file.
[[nodiscard]] std::vector<uint32_t> facesOfIges(std::string_view file);

} // namespace Vs::Translate::Salvage
