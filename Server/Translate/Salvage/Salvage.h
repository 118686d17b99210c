#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate::Salvage {

/// What is sound of a damaged STEP file.
struct Salvaged
{
    std::string text; ///< A STEP file; empty where nothing that can be shown is left.
    /// "3 of 29 faces of "bracket" and 2 placements"; empty if no shape lost anything.
    std::string losses;
    /// The same, each by itself, and what else is to be said, as clauses that go after the file's name.
    std::vector<std::string> warnings;
    bool wasDamaged = false; ///< Whether anything is set aside, or the file's beginning or end is missing.
};

/// Sets aside what contradicts itself or the standard, and what can't do without that. A shell does with the
/// faces that are left, and a solid becomes a surface then; faces without a shell, shells without a solid and
/// shapes without a product get one. A number that was changed into another sensible one isn't noticed.
[[nodiscard]] Salvaged salvage(std::string_view file);

} // namespace Vs::Translate::Salvage
