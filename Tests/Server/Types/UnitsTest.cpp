#include "Server/Base/Strings.h"
#include "Server/Types/LengthUnit.h"
#include "Server/Types/Units/Expression.h"
#include "Server/Types/Units/UnitDisplaySettings.h"
#include "Server/Types/UnitsOptionGroup.h"
#include "Tests/Support/Seed.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>

using namespace Vs;
using namespace Vs::Units;

namespace {

constexpr double kDegree = std::numbers::pi / 180;
const Unit kInches = Unit::length(*LengthUnit::find("in"));
const Unit kLength = Unit::base(Quantity::Length);
const Unit kAngle = Unit::display(Quantity::Angle);

/// Not a number if the text is refused.
double read(const std::wstring& text, const Unit& unit)
{
    std::wstring why;
    return evaluate(text, unit, why).value_or(std::numeric_limits<double>::quiet_NaN());
}

/// Why the text is refused; empty if it isn't.
std::string refusal(const std::wstring& text, const Unit& unit)
{
    std::wstring why;
    return evaluate(text, unit, why) ? std::string() : Strings::narrow(why);
}

std::wstring shown(double value, const Unit& unit, short decimals)
{
    UnitDisplaySettings settings;
    settings.generalPrecision(decimals);
    return toText(value, unit, settings);
}

} // namespace

TEST(Expressions, LengthsAreReadInEveryUnitAndReckonedWith)
{
    const std::pair<const wchar_t*, double> cases[] = {
        {L"12.5 mm", 12.5},
        {L" 12.5mm ", 12.5},
        {L"1/2 in", 12.7},
        {L"3 1/2 in", 88.9},
        {L"3*(2 in + 4 mm)", 164.4},
        {L"5'", 1524},
        {L"2\"", 50.8},
        {L"10 mm / 4", 2.5},
        {L"100 / 4 mm / 5", 5},
        {L"1 m - 2 cm - 3 mm", 977},
        {L"-.5e1 cm", -50},
        {L"--2 mm", 2},
        {L"2^3 mm", 8},
        {L"sqrt(9 mm^2)", 3},
        {L"8 mm\u00b2 / 2 mm", 4},
        {L"2 cm * sin(30)", 10},
        {L"2 cm * sin(30 deg)", 10},
        {L"pi * 1 mm", std::numbers::pi},
        {L"abs(-3 mm)", 3},
        {L"7\u00d72 mm \u2212 4\u00a0mm", 10},
        {L"500 \u00b5m", 0.5},
    };
    for (const auto& [text, value] : cases)
        EXPECT_NEAR(read(text, kLength), value, 1e-12 * std::abs(value)) << Strings::narrow(text);
}

TEST(Expressions, NumbersWithoutAUnitAreInThatOfTheField)
{
    EXPECT_EQ(read(L"2", kInches), 2 * 25.4);
    EXPECT_EQ(read(L"2 + 1 mm", kInches), 2 * 25.4 + 1);
    EXPECT_NEAR(read(L"3 in - 1", kInches), 2 * 25.4, 1e-12);
    EXPECT_NEAR(read(L"(6 mm / 2 mm) + 1 mm", kInches), 3 * 25.4 + 1, 1e-12);
    EXPECT_NEAR(read(L"45", kAngle), 45 * kDegree, 1e-15);
    EXPECT_NEAR(read(L"2*asin(1/2)", kAngle), 60 * kDegree, 1e-15);
    EXPECT_EQ(read(L"1 rad", kAngle), 1);
    EXPECT_EQ(read(L"6 mm / 2 mm", Unit()), 3);
    const Unit area = Unit::base(Quantity::Area);
    EXPECT_EQ(read(L"2 mm * 3 cm", area), 60);
    EXPECT_EQ(read(L"7", area), 7);
    EXPECT_EQ(read(L"(2 mm)^3", Unit::base(Quantity::Volume)), 8);
}

TEST(Expressions, WhatMakesNoSenseIsRefusedWithItsPlace)
{
    const std::pair<const wchar_t*, const char*> lengths[] = {
        {L"5 deg", "This is an angle, but a length is needed: character 1 of \"5 deg\"."},
        {L"2 mm * 3 mm", "This is an area, but a length is needed: character 1 of \"2 mm * 3 mm\"."},
        {L"2 mm + 3 deg", "a length and an angle can't be added: character 8 of \"2 mm + 3 deg\"."},
        {L"12 mm / 0", "Division by zero: character 9 of \"12 mm / 0\"."},
        {L"1/(3 mm - 3 mm)", "Division by zero: character 3"},
        {L"0^-1", "Division by zero"},
        {L"2 1/0 in", "Division by zero"},
        {L"3 + 1e300 * 1e300", "The number becomes too large: character 5"},
        {L"1e999", "The number becomes too large: character 1"},
        {L"1e-999 mm / 1e-999", "Division by zero: character 13"},
        {L"10^200^2", "character"},
        {L"1e200 km * 1e200", "too large"},
        {L"5 parsec", "\"parsec\" is not a unit: character 3"},
        {L"5 mm in", "character 6"},
        {L"(5 mm) in", "What has a unit already"},
        {L"5 mm +", "Something is missing: character 7"},
        {L"(5 mm", "Something is missing: character 6"},
        {L"5 mm)", "\")\" makes no sense: character 5"},
        {L"1,5 mm", "not a comma: character 2"},
        {L"sinus(3)", "\"sinus\" is not a function: character 1"},
        {L"sqrt(-1)", "square root"},
        {L"sqrt(2 mm)", "square root"},
        {L"asin(2)", "from -1 to 1"},
        {L"sin(2 mm)", "sin needs an angle"},
        {L"nan", "\"nan\" makes no sense"},
        {L"inf mm", "makes no sense"},
        {L"\u4e94", "makes no sense"},
        {L"", "A value is missing."},
        {L" \t", "A value is missing."},
    };
    for (const auto& [text, part] : lengths)
        EXPECT_NE(refusal(text, kLength).find(part), std::string::npos)
            << Strings::narrow(text) << " gives: " << refusal(text, kLength);
    EXPECT_NE(refusal(L"5 mm", kAngle).find("This is a length, but an angle is needed"), std::string::npos);
    EXPECT_NE(refusal(L"5 mm", Unit()).find("a number without a unit is needed"), std::string::npos);
    EXPECT_NE(refusal(std::wstring(100000, L'('), kLength), "");
    EXPECT_NE(refusal(std::wstring(200, L'('), kLength), "");
    EXPECT_NE(refusal(std::wstring(200, L'-'), kLength), "");
}

TEST(Expressions, NoiseIsReadOrRefusedButNeverFatal)
{
    std::mt19937 random(TestSupport::seed());
    const std::wstring pieces[] = {L"1", L"2.5", L" ", L"mm", L"in", L"deg",  L"(",  L")", L"+",
                                   L"-", L"*",   L"/", L"^",  L"0",  L"sin(", L"pi", L",", L"1/2"};
    for (int i = 0; i < 3000; ++i) {
        std::wstring text;
        for (auto k = random() % 12; k > 0; --k)
            text += pieces[random() % std::size(pieces)];
        const double value = read(text, kLength);
        EXPECT_TRUE(std::isfinite(value) || !refusal(text, kLength).empty()) << Strings::narrow(text);
    }
}

TEST(UnitTexts, ValuesAreShownWithAsManyDecimalsAsTheUserWants)
{
    EXPECT_EQ(shown(12.5, kLength, 3), L"12.5 mm");
    EXPECT_EQ(shown(10, kLength, 3), L"10 mm");
    EXPECT_EQ(shown(100, kLength, 0), L"100 mm");
    EXPECT_EQ(shown(25.4 / 3, kInches, 4), L"0.3333 in");
    EXPECT_EQ(shown(2.0 / 3, kLength, 0), L"1 mm");
    EXPECT_EQ(shown(-1e-9, kLength, 3), L"0 mm") << "the rounding of a computation";
    // An existing value isn't shown as zero.
    const Unit cubicMetre(Quantity::Volume, L"m\u00b3", 1e9);
    EXPECT_EQ(shown(1, cubicMetre, 3), L"1e-09 m\u00b3");
    EXPECT_EQ(shown(-1234.5, cubicMetre, 3), L"-0.00000123 m\u00b3");
    EXPECT_EQ(shown(0.4, kLength, 0), L"0.4 mm");
    EXPECT_EQ(shown(0.00099999, kInches, 2), L"0.000039 in");
    EXPECT_EQ(shown(0.0004, kAngle, 1), L"0.02\u00b0");
    EXPECT_EQ(shown(0, kLength, 2), L"0 mm");
    EXPECT_EQ(shown(45 * kDegree, kAngle, 2), L"45\u00b0");
    EXPECT_EQ(shown(0.1, Unit(), 16), L"0.1");
    EXPECT_EQ(shown(3e20, Unit(), 2), L"3e+20");
    EXPECT_EQ(shown(645.16, Unit(Quantity::Area, L"in\u00b2", 645.16), 2), L"1 in\u00b2");

    LengthUnit::display(*LengthUnit::find("in"));
    UnitDisplaySettings::userEditableSettings().generalPrecision(1);
    EXPECT_EQ(toText(50.8 * 25.4, Unit::display(Quantity::Area), UnitDisplaySettings::get()), L"2 in\u00b2");
    EXPECT_EQ(toText(25.4 * 1.25, Unit::display(Quantity::Length), UnitDisplaySettings::get()), L"1.2 in");
    UnitDisplaySettings::userEditableSettings().generalPrecision(99);
    EXPECT_EQ(UnitDisplaySettings::get().generalPrecision(), UnitDisplaySettings::kAllDecimals);
    UnitDisplaySettings::userEditableSettings().reset();
    EXPECT_EQ(Unit::display(Quantity::Length).symbol(), L"mm");
}

TEST(UnitTexts, TheExactTextReadsBackAsExactlyTheSameValue)
{
    std::mt19937_64 random(TestSupport::seed());
    const Unit units[] = {Unit(), kLength, kInches, kAngle, Unit(Quantity::Area, L"in\u00b2", 25.4 * 25.4)};
    for (int i = 0; i < 2000; ++i) {
        double value = 0;
        do {
            const uint64_t bits = random();
            static_assert(sizeof bits == sizeof value);
            std::memcpy(&value, &bits, sizeof bits);
        } while (!std::isfinite(value));
        for (const Unit& unit : units)
            ASSERT_EQ(read(toExactText(value, unit), unit), value)
                << Strings::narrow(toExactText(value, unit));
    }
    EXPECT_EQ(toExactText(25.4, kInches), L"1 in");
}
