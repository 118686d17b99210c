#pragma once

#include "Server/Types/Units/Unit.h"

#include <optional>

/// The arithmetic of expressions; private to this folder.
namespace Vs::Units {

/// What is wrong with an expression, as a sentence for the user, and the place that it is about.
struct ExpressionError
{
    std::wstring message;
    size_t position; ///< Counts characters from 0.
};

/// The powers of length and angle in what a number measures: an area has the second power of length.
struct Powers
{
    int length = 0;
    int angle = 0;

    static Powers of(Quantity quantity);
    bool plain() const { return length == 0 && angle == 0; }
    bool operator==(const Powers&) const = default;
};

/// "a length", "an area", ... for messages.
std::wstring nameOf(const Powers& powers);

/// A unit, or a power of one, as an expression has it.
struct UnitPower
{
    double size = 1;
    Powers powers;
};

/// A number of an expression, in base units. Each operation throws an ExpressionError if it makes no sense.
struct Magnitude
{
    double number = 0;
    Powers powers;
    /// The unit that stands directly behind the number and isn't part of it yet, as it may belong to the
    /// quotient that the number is part of.
    std::optional<UnitPower> unit;
    size_t position = 0;

    /// Makes the unit part of the number.
    Magnitude settled() const;

    /// `field` says what plain numbers that are added to a quantity count in.
    Magnitude sum(const Magnitude& other, double sign, const Unit& field) const;
    Magnitude product(const Magnitude& other) const;
    Magnitude quotient(const Magnitude& other) const;
    Magnitude power(int exponent) const;
    Magnitude negated() const;
    Magnitude withUnit(const UnitPower& behind) const;
};

/// Throws an ExpressionError for a name that is no unit.
UnitPower unitOf(const std::wstring& symbol, int exponent, size_t position);

/// Throws an ExpressionError for a name that is no function, and for what it can't be taken of.
Magnitude call(const std::wstring& function, const Magnitude& argument, size_t position);

} // namespace Vs::Units
