#include "Server/Types/Units/UnitDisplaySettings.h"

#include "Server/Types/UnitsOptionGroup.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Vs::Units {

namespace {

/// What is less, in base units, is the rounding of a computation.
constexpr double kNoise = 1e-7;
/// Beyond these a number is easier to read with a power of ten.
constexpr double kLeastFixed = 1e-6;
constexpr double kGreatestFixed = 1e15;

// The widest number that is written fixed has 16 digits before the point and as many behind it.
constexpr size_t kLongest = 64;

std::wstring shortest(double number, std::chars_format format)
{
    char buffer[kLongest];
    return {buffer, std::to_chars(buffer, buffer + kLongest, number, format).ptr};
}

std::wstring exact(double number)
{
    const double size = std::abs(number);
    const bool fixed = size == 0 || (size >= kLeastFixed && size < kGreatestFixed);
    return shortest(number, fixed ? std::chars_format::fixed : std::chars_format::general);
}

std::wstring rounded(double number, short decimals)
{
    char buffer[kLongest];
    std::wstring text(
        buffer, std::to_chars(buffer, buffer + kLongest, number, std::chars_format::fixed, decimals).ptr);
    if (text.find(L'.') != std::wstring::npos) {
        text.erase(text.find_last_not_of(L'0') + 1);
        if (text.back() == L'.')
            text.pop_back();
    }
    return text == L"-0" ? L"0" : text;
}

/// With so many digits that count.
std::wstring significant(double number, int digits)
{
    char buffer[kLongest];
    const auto end = std::to_chars(buffer, buffer + kLongest, number, std::chars_format::scientific,
                                   std::max(digits, 1) - 1)
                         .ptr;
    double shown = number;
    std::from_chars(buffer, end, shown);
    return exact(shown);
}

std::wstring withSymbol(std::wstring number, const Unit& unit)
{
    // A degree sign stands at the number, other symbols stand apart from it.
    const bool apart = !unit.symbol().empty() && unit.symbol() != L"\u00b0";
    return std::move(number) + (apart ? L" " : L"") + unit.symbol();
}

} // namespace

UnitDisplaySettings UnitDisplaySettings::get()
{
    UnitDisplaySettings settings;
    settings.generalPrecision(
        static_cast<short>(std::clamp<int>(UnitsOptionGroup::get()->generalPrecision(), 0, kAllDecimals)));
    return settings;
}

UnitsOptionGroup& UnitDisplaySettings::userEditableSettings()
{
    return *UnitsOptionGroup::get();
}

void UnitDisplaySettings::generalPrecision(short decimals)
{
    m_generalPrecision = std::clamp<short>(decimals, 0, kAllDecimals);
}

std::wstring toText(double value, const Unit& unit, const UnitDisplaySettings& settings)
{
    const double number = unit.toThisUnit(value);
    const bool all = settings.generalPrecision() >= UnitDisplaySettings::kAllDecimals;
    const bool huge = !(std::abs(number) < kGreatestFixed);
    if (all || huge)
        return withSymbol(exact(number), unit);
    const std::wstring text = rounded(number, settings.generalPrecision());
    const bool isLost = text == L"0" && std::abs(value) >= kNoise;
    return withSymbol(isLost ? significant(number, settings.generalPrecision()) : text, unit);
}

std::wstring toExactText(double value, const Unit& unit)
{
    const double number = unit.toThisUnit(value);
    if (unit.fromThisUnit(number) == value)
        return withSymbol(exact(number), unit);
    return withSymbol(exact(value), Unit::base(unit.quantity()));
}

} // namespace Vs::Units
