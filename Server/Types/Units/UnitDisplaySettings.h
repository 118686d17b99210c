#pragma once

#include "Server/Types/Units/Unit.h"

namespace Vs {
class UnitsOptionGroup;
}

namespace Vs::Units {

/// How numbers with units are shown. A small value.
class UnitDisplaySettings
{
public:
    /// As many decimals as it takes to tell the number from every other.
    static constexpr short kAllDecimals = 16;

    /// The user's settings as they are now.
    static UnitDisplaySettings get();
    /// The same as options, to be changed: `userEditableSettings().generalPrecision(4)`.
    static UnitsOptionGroup& userEditableSettings();

    /// How many decimals are shown at most; from 0 to kAllDecimals, what lies outside counts as the nearest.
    short generalPrecision() const { return m_generalPrecision; }
    void generalPrecision(short decimals);

    bool operator==(const UnitDisplaySettings&) const = default;

private:
    short m_generalPrecision = 3;
};

/// A value, which is in the base unit, as a person sees it: "12.5 mm", "45°". Zeros at the end of the
/// decimals are left out. A value that these decimals would round to 0 is shown with as many digits that
/// count, and one at least: "0.0000012 m²"; but what is below 1e-7 base units is 0, as it comes of rounding.
[[nodiscard]] std::wstring toText(double value, const Unit& unit, const UnitDisplaySettings& settings);

/// A value as text that is read back (`evaluate`) as exactly the same value: in `unit` if that can be, else
/// in the base unit.
[[nodiscard]] std::wstring toExactText(double value, const Unit& unit);

} // namespace Vs::Units
