#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace Vs::Exchange {

/// How many faces of a part are left out because their data in the file are damaged, or can't be shown. A
/// worker reports it as a warning.
struct LostFaces
{
    size_t lost = 0, all = 0;
    std::string part;      ///< Its name; empty if it has none.
    bool areThere = false; ///< They belong to the part, but nothing can be shown of them.

    /// "3 of 29 faces of "bracket"".
    [[nodiscard]] std::string text() const;
    /// "lacks 3 of 29 faces of "bracket"", "has 3 of 29 faces of "bracket" that can't be shown".
    [[nodiscard]] std::string warning() const;
    /// From such a warning, behind which a cause may stand; nothing for any other.
    [[nodiscard]] static std::optional<LostFaces> ofWarning(const std::string& warning);
};

} // namespace Vs::Exchange
