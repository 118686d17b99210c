#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs {

/// How the user wants to see numbers that have a unit.
class UnitsOptionGroup : public Implements<UnitsOptionGroup, OptionGroup>
{
public:
    static UnitsOptionGroup* get()
    {
        static auto* const group = new UnitsOptionGroup;
        return group;
    }

    Option<std::wstring> lengthUnit{*this, "lengthUnit", L"mm"}; ///< The key of a LengthUnit.
    /// How many decimals are shown at most; see Units::UnitDisplaySettings.
    Option<int> generalPrecision{*this, "generalPrecision", 3};

private:
    UnitsOptionGroup() : Implements("Units") {}
};

} // namespace Vs
