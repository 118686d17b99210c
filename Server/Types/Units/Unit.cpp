#include "Server/Types/Units/Unit.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Types/LengthUnit.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace Vs::Units {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

Unit power(const Unit& length, Quantity quantity)
{
    const bool area = quantity == Quantity::Area;
    return {quantity, length.symbol() + (area ? L"\u00b2" : L"\u00b3"),
            std::pow(length.size(), area ? 2 : 3)};
}

Unit ofLength(Quantity quantity, const Unit& length)
{
    return quantity == Quantity::Length ? length : power(length, quantity);
}

/// Units that are read but not offered for display come after those of LengthUnit.
std::vector<Unit> makeTypedUnits()
{
    std::vector<Unit> units;
    for (const LengthUnit& unit : LengthUnit::all())
        units.push_back(Unit::length(unit));
    constexpr double kInch = 25.4;
    const std::pair<const wchar_t*, double> lengths[] = {
        {L"\"", kInch},         {L"'", 12 * kInch},      {L"yd", 36 * kInch},
        {L"mil", kInch / 1000}, {L"thou", kInch / 1000}, {L"\u00b5m", 1e-3},
        {L"\u03bcm", 1e-3},     {L"um", 1e-3},           {L"dm", 100},
        {L"km", 1e6},
    };
    for (const auto& [symbol, size] : lengths)
        units.emplace_back(Quantity::Length, symbol, size);
    const std::pair<const wchar_t*, double> angles[] = {
        {L"deg", kDegree}, {L"\u00b0", kDegree}, {L"rad", 1}, {L"gon", std::numbers::pi / 200}};
    for (const auto& [symbol, size] : angles)
        units.emplace_back(Quantity::Angle, symbol, size);
    return units;
}

} // namespace

Unit::Unit(Quantity quantity, std::wstring symbol, double size)
    : m_quantity(quantity), m_symbol(std::move(symbol)), m_size(size)
{
    require(std::isfinite(size) && size > 0, "a unit has a size");
}

Unit Unit::base(Quantity quantity)
{
    if (quantity == Quantity::Plain)
        return {};
    if (quantity == Quantity::Angle)
        return {quantity, L"rad", 1};
    return ofLength(quantity, {Quantity::Length, L"mm", 1});
}

Unit Unit::display(Quantity quantity)
{
    if (quantity == Quantity::Plain)
        return {};
    if (quantity == Quantity::Angle)
        return {quantity, L"\u00b0", kDegree};
    return ofLength(quantity, length(LengthUnit::display()));
}

Unit Unit::length(const LengthUnit& unit)
{
    return {Quantity::Length, Strings::widen(unit.key), unit.millimetres};
}

const Unit* Unit::find(std::wstring_view symbol)
{
    static const std::vector<Unit> units = makeTypedUnits();
    for (const Unit& unit : units)
        if (unit.symbol() == symbol)
            return &unit;
    return nullptr;
}

} // namespace Vs::Units
