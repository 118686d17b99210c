#include "UI/Base/Program/UnitName.h"

#include "UI/Base/Command/Private/Localized.h"

#include <string_view>
#include <utility>

namespace Vu {

std::wstring unitName(const Vs::LengthUnit& unit)
{
    const std::pair<std::string_view, std::wstring> names[] = {
        {"mm", localized("UnitMillimetres", "millimetres")},
        {"cm", localized("UnitCentimetres", "centimetres")},
        {"m", localized("UnitMetres", "metres")},
        {"in", localized("UnitInches", "inches")},
        {"ft", localized("UnitFeet", "feet")},
    };
    for (const auto& [key, name] : names)
        if (key == unit.key)
            return name;
    return unit.name;
}

} // namespace Vu
