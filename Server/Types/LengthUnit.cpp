#include "Server/Types/LengthUnit.h"

#include "Server/Base/Strings.h"
#include "Server/Types/UnitsOptionGroup.h"

namespace Vs {

const std::vector<LengthUnit>& LengthUnit::all()
{
    static const std::vector<LengthUnit> units = {
        {"mm", L"millimetres", 1}, {"cm", L"centimetres", 10}, {"m", L"metres", 1000},
        {"in", L"inches", 25.4},   {"ft", L"feet", 304.8},
    };
    return units;
}

const LengthUnit* LengthUnit::find(std::string_view key)
{
    for (const LengthUnit& unit : all())
        if (key == unit.key)
            return &unit;
    return nullptr;
}

const LengthUnit& LengthUnit::display()
{
    const LengthUnit* chosen = find(Strings::narrow(UnitsOptionGroup::get()->lengthUnit()));
    return chosen ? *chosen : all().front();
}

void LengthUnit::display(const LengthUnit& unit)
{
    UnitsOptionGroup::get()->lengthUnit(Strings::widen(unit.key));
}

} // namespace Vs
