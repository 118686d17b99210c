#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs {

/// A unit of length in which a person thinks; the program itself always computes in millimetres.
struct LengthUnit
{
    const char* key;        ///< "mm", "cm", "m", "in", "ft".
    const wchar_t* name;    ///< In the plural: L"inches".
    double millimetres = 1; ///< One of it.

    static const std::vector<LengthUnit>& all();
    /// Null if there is no unit of that key.
    [[nodiscard]] static const LengthUnit* find(std::string_view key);

    /// The unit in which lengths are shown and, where that is asked for, exported; an option of the user,
    /// millimetres until another is chosen. Main thread.
    static const LengthUnit& display();
    static void display(const LengthUnit& unit);
};

} // namespace Vs
