#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs {
struct LengthUnit;
}

/// Numbers with units: what the units are, how a number is written with one, and how a person's text is read.
namespace Vs::Units {

/// What a number measures.
enum class Quantity { Plain, Length, Area, Volume, Angle };

/// A unit of a quantity. The program itself holds lengths in millimetres, areas and volumes in their square
/// and cube, angles in radians, whatever unit they are shown in: these are the base units. A small value.
class Unit
{
public:
    /// The unit of plain numbers: 1, without a symbol.
    Unit() = default;
    /// `size` is one of it, in the base unit of the quantity.
    Unit(Quantity quantity, std::wstring symbol, double size);

    /// The base unit.
    [[nodiscard]] static Unit base(Quantity quantity);
    /// The one in which the user sees the quantity: an option for lengths, and with them areas and volumes;
    /// degrees for angles. Main thread.
    static Unit display(Quantity quantity);
    [[nodiscard]] static Unit length(const LengthUnit& unit);
    /// The unit of a symbol that a person may type, such as "mm", "in", "\"", "deg" or "°"; null if there is
    /// none. Areas and volumes are powers of lengths and have no entry of their own.
    [[nodiscard]] static const Unit* find(std::wstring_view symbol);

    Quantity quantity() const { return m_quantity; }
    /// As it stands behind a number: "mm", "mm²", "°"; empty for plain numbers.
    const std::wstring& symbol() const { return m_symbol; }
    double size() const { return m_size; }

    /// From the base unit to this one, and back.
    [[nodiscard]] double toThisUnit(double value) const { return value / m_size; }
    [[nodiscard]] double fromThisUnit(double value) const { return value * m_size; }

    bool operator==(const Unit&) const = default;

private:
    Quantity m_quantity = Quantity::Plain;
    std::wstring m_symbol;
    double m_size = 1;
};

} // namespace Vs::Units
