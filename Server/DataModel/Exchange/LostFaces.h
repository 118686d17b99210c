#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace Vs::Exchange {

/// How many faces of a part are left out because their data in the file are damaged. A worker reports it as a
/// warning.
struct LostFaces
{
    size_t lost = 0, all = 0;
    std::string part; ///< Its name; empty if it has none.

    /// "3 of 29 faces of "bracket"".
    [[nodiscard]] std::string text() const;
    /// From a warning of the form "lacks " and the text; nothing for any other.
    [[nodiscard]] static std::optional<LostFaces> ofWarning(const std::string& warning);
};

} // namespace Vs::Exchange
