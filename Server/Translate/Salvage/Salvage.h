#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace Vs::Translate::Salvage {

/// The sound content of a damaged STEP file.
struct Salvaged
{
    std::string text; ///< A STEP file; empty if nothing that can be shown is left.
    /// "3 of 29 faces of "bracket" and 2 placements"; empty if no shape lost anything.
    std::string losses;
    /// The same, separately, and further remarks, as clauses that follow the file's name.
    std::vector<std::string> warnings;
    bool wasDamaged = false; ///< Whether anything is set aside, or the file's beginning or end is missing.
};

/// Sets aside what contradicts itself or the standard, and what can't do without that. A shell makes do with
/// the faces that are left, and a solid then becomes a surface; faces without a shell, shells without a solid
/// and shapes without a product get one. A number that was changed into another plausible one isn't noticed.
///
/// @param without numbers of entities to set aside in any case
[[nodiscard]] Salvaged salvage(std::string_view file, const std::unordered_set<uint32_t>& without = {});

/// The numbers of the file's sound faces, in the order of the file.
[[nodiscard]] std::vector<uint32_t> facesOf(std::string_view file);

} // namespace Vs::Translate::Salvage
