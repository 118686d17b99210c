#include "Server/Types/Units/Private/Magnitude.h"

#include "Server/Types/Private/Texts.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace Vs::Units {

namespace {

using Types::localized;
using Types::localizedFormat;

constexpr double kDegree = std::numbers::pi / 180;
/// Powers beyond this are slips of the finger.
constexpr int kGreatestPower = 100;

Magnitude finite(Magnitude result)
{
    if (!std::isfinite(result.number))
        throw ExpressionError{localized("ExpressionOverflow", "The number becomes too large"),
                              result.position};
    return result;
}

/// A sine is taken of an angle; without a unit the number counts as degrees.
double angleOf(const Magnitude& argument, const std::wstring& function)
{
    if (argument.powers.plain())
        return argument.number * kDegree;
    if (argument.powers != Powers::of(Quantity::Angle))
        throw ExpressionError{localizedFormat("ExpressionNeedsAngle", "%1% needs an angle", function),
                              argument.position};
    return argument.number;
}

double plainOf(const Magnitude& argument, const std::wstring& function)
{
    if (!argument.powers.plain())
        throw ExpressionError{
            localizedFormat("ExpressionNeedsPlain", "%1% needs a number without a unit", function),
            argument.position};
    return argument.number;
}

Magnitude squareRoot(const Magnitude& argument)
{
    if (argument.number < 0 || argument.powers.length % 2 != 0 || argument.powers.angle % 2 != 0)
        throw ExpressionError{localized("ExpressionNoRoot",
                                        "A square root can't be taken of a negative number, and can be "
                                        "taken of an area but not of a length"),
                              argument.position};
    return {std::sqrt(argument.number), {argument.powers.length / 2, argument.powers.angle / 2}, {}, 0};
}

struct Function
{
    const wchar_t* name;
    Magnitude (*value)(const Magnitude& argument, const std::wstring& name);
};

template <double (*F)(double)>
Magnitude ofAngle(const Magnitude& argument, const std::wstring& name)
{
    return {F(angleOf(argument, name)), {}, {}, 0};
}

template <double (*F)(double)>
Magnitude toAngle(const Magnitude& argument, const std::wstring& name)
{
    const double result = F(plainOf(argument, name));
    if (std::isnan(result))
        throw ExpressionError{
            localizedFormat("ExpressionOutside", "%1% is defined only for numbers from -1 to 1", name),
            argument.position};
    return {result, Powers::of(Quantity::Angle), {}, 0};
}

constexpr Function kFunctions[] = {
    {L"sqrt", [](const Magnitude& argument, const std::wstring&) { return squareRoot(argument); }},
    {L"abs",
     [](const Magnitude& argument, const std::wstring&) {
         return Magnitude{std::abs(argument.number), argument.powers, {}, 0};
     }},
    {L"sin", ofAngle<std::sin>},
    {L"cos", ofAngle<std::cos>},
    {L"tan", ofAngle<std::tan>},
    {L"asin", toAngle<std::asin>},
    {L"acos", toAngle<std::acos>},
    {L"atan", toAngle<std::atan>},
};

} // namespace

Powers Powers::of(Quantity quantity)
{
    switch (quantity) {
    case Quantity::Length:
        return {1, 0};
    case Quantity::Area:
        return {2, 0};
    case Quantity::Volume:
        return {3, 0};
    case Quantity::Angle:
        return {0, 1};
    case Quantity::Plain:
        break;
    }
    return {};
}

std::wstring nameOf(const Powers& powers)
{
    if (powers.plain())
        return localized("QuantityPlain", "a number without a unit");
    if (powers == Powers::of(Quantity::Length))
        return localized("QuantityLength", "a length");
    if (powers == Powers::of(Quantity::Area))
        return localized("QuantityArea", "an area");
    if (powers == Powers::of(Quantity::Volume))
        return localized("QuantityVolume", "a volume");
    if (powers == Powers::of(Quantity::Angle))
        return localized("QuantityAngle", "an angle");
    return localized("QuantityOther", "a quantity without a name");
}

Magnitude Magnitude::settled() const
{
    if (!unit)
        return *this;
    return finite({number * unit->size, unit->powers, {}, position});
}

Magnitude Magnitude::sum(const Magnitude& other, double sign, const Unit& field) const
{
    Magnitude left = settled();
    Magnitude right = other.settled();
    const Powers wanted = Powers::of(field.quantity());
    if (left.powers.plain() && right.powers == wanted)
        left = left.withUnit({field.size(), wanted}).settled();
    else if (right.powers.plain() && left.powers == wanted)
        right = right.withUnit({field.size(), wanted}).settled();
    if (left.powers != right.powers)
        throw ExpressionError{localizedFormat("ExpressionNoSum", "%1% and %2% can't be added",
                                              nameOf(left.powers), nameOf(right.powers)),
                              other.position};
    return finite({left.number + sign * right.number, left.powers, {}, position});
}

Magnitude Magnitude::product(const Magnitude& other) const
{
    if (!unit && powers.plain() && other.unit)
        return finite({number * other.number, {}, other.unit, position});
    const Magnitude left = settled();
    const Magnitude right = other.settled();
    return finite({left.number * right.number,
                   {left.powers.length + right.powers.length, left.powers.angle + right.powers.angle},
                   {},
                   position});
}

Magnitude Magnitude::quotient(const Magnitude& other) const
{
    if (other.number == 0)
        throw ExpressionError{localized("ExpressionDivisionByZero", "Division by zero"), other.position};
    if (!unit && powers.plain() && other.unit)
        return finite({number / other.number, {}, other.unit, position});
    const Magnitude left = settled();
    const Magnitude right = other.settled();
    return finite({left.number / right.number,
                   {left.powers.length - right.powers.length, left.powers.angle - right.powers.angle},
                   {},
                   position});
}

Magnitude Magnitude::power(int exponent) const
{
    if (std::abs(exponent) > kGreatestPower)
        throw ExpressionError{localized("ExpressionOverflow", "The number becomes too large"), position};
    if (number == 0 && exponent < 0)
        throw ExpressionError{localized("ExpressionDivisionByZero", "Division by zero"), position};
    return finite(
        {std::pow(number, exponent), {powers.length * exponent, powers.angle * exponent}, {}, position});
}

Magnitude Magnitude::negated() const
{
    Magnitude result = *this;
    result.number = -number;
    return result;
}

Magnitude Magnitude::withUnit(const UnitPower& behind) const
{
    if (!powers.plain())
        throw ExpressionError{
            localized("ExpressionSecondUnit", "What has a unit already can't be given another one"),
            position};
    Magnitude result = *this;
    result.unit = behind;
    return result;
}

UnitPower unitOf(const std::wstring& symbol, int exponent, size_t position)
{
    const Unit* unit = Unit::find(symbol);
    if (!unit)
        throw ExpressionError{localizedFormat("ExpressionUnknownUnit", "\"%1%\" is not a unit", symbol),
                              position};
    if (std::abs(exponent) > kGreatestPower)
        throw ExpressionError{localized("ExpressionOverflow", "The number becomes too large"), position};
    const Powers powers = Powers::of(unit->quantity());
    return {std::pow(unit->size(), exponent), {powers.length * exponent, powers.angle * exponent}};
}

Magnitude call(const std::wstring& function, const Magnitude& argument, size_t position)
{
    for (const Function& candidate : kFunctions)
        if (candidate.name == function) {
            Magnitude result = candidate.value(argument.settled(), function);
            result.position = position;
            return finite(result);
        }
    throw ExpressionError{localizedFormat("ExpressionUnknownFunction", "\"%1%\" is not a function", function),
                          position};
}

} // namespace Vs::Units
