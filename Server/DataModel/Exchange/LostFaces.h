#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace Vs::Exchange {

/// How many of the faces of a part are left out, since what the file says of them is damaged. A worker tells
/// it as a warning.
struct LostFaces
{
    size_t lost = 0, all = 0;
    std::string part; ///< Its name; empty if it has none.

    /// "3 of 29 faces of "bracket"".
    [[nodiscard]] std::string text() const;
    /// Of a warning that is "lacks " and the text; nothing for any other.
    [[nodiscard]] static std::optional<LostFaces> ofWarning(const std::string& warning);
};

} // namespace Vs::Exchange
