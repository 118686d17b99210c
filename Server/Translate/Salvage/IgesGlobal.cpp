#include "Server/Translate/Salvage/IgesGlobal.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>
#include <vector>

namespace Vs::Translate::Salvage {

namespace {

using Kind = IgesValue::Kind;

struct Unit
{
    int flag;
    std::string_view name;
};
constexpr Unit kUnits[] = {{1, "IN"}, {1, "INCH"}, {2, "MM"}, {4, "FT"},  {5, "MI"},  {6, "M"},
                           {7, "KM"}, {8, "MIL"},  {9, "UM"}, {10, "CM"}, {11, "UIN"}};

// Places of the parameters, from 0.
constexpr size_t kProduct = 2, kFile = 3, kSystem = 4, kVersion = 5, kScale = 12, kUnitFlag = 13,
                 kUnitName = 14, kResolution = 18, kLargest = 19;

/// The unit of that name, in whatever case and with blanks around it.
const Unit* unitNamed(std::string_view written)
{
    std::string name;
    for (const char c : written.substr(written.find('H') + 1))
        if (c != ' ')
            name += char(std::toupper(static_cast<unsigned char>(c)));
    const auto unit = std::ranges::find(kUnits, name, &Unit::name);
    return unit == std::end(kUnits) ? nullptr : unit;
}

class Reader
{
public:
    explicit Reader(const IgesRecords& records)
    {
        bool isEnded = false;
        m_values = valuesOf(records.global, records.delimiters, isEnded);
        m_isWhole = isEnded && m_values.size() > kUnitName;
    }

    bool isWhole() const { return m_isWhole; }
    const IgesValue* at(size_t place, Kind kind) const
    {
        return place < m_values.size() && m_values[place].kind == kind ? &m_values[place] : nullptr;
    }
    std::string text(size_t place) const
    {
        const IgesValue* const value = at(place, Kind::Text);
        return value ? std::string(value->text) : std::string();
    }
    std::optional<double> positive(size_t place) const
    {
        if (place >= m_values.size() || !(m_values[place].number > 0) || m_values[place].kind == Kind::Text)
            return std::nullopt;
        return m_values[place].number;
    }
    /// Wherever it stands, as a lost letter shifts what follows.
    const Unit* anyUnit() const
    {
        for (size_t i = kScale; i < m_values.size(); ++i)
            if (const Unit* const unit =
                    m_values[i].kind == Kind::Text ? unitNamed(m_values[i].text) : nullptr)
                return unit;
        return nullptr;
    }

private:
    std::vector<IgesValue> m_values;
    bool m_isWhole = false;
};

/// The unit that the name says, or else the number.
std::optional<Unit> unitOf(const Reader& reader, bool& agrees)
{
    const IgesValue* const name = reader.at(kUnitName, Kind::Text);
    const IgesValue* const flag = reader.at(kUnitFlag, Kind::Integer);
    const Unit* const named = name ? unitNamed(name->text) : nullptr;
    const Unit* const numbered = [&]() -> const Unit* {
        const auto unit = std::ranges::find(kUnits, flag ? int(flag->number) : 0, &Unit::flag);
        return unit == std::end(kUnits) ? nullptr : unit;
    }();
    agrees = named && numbered && named->flag == numbered->flag;
    if (named)
        return *named;
    if (const Unit* const other = numbered ? numbered : reader.anyUnit())
        return *other;
    return std::nullopt;
}

std::string printed(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.12G", number);
    std::string plain = text;
    if (plain.find('.') == plain.npos)
        plain.insert(std::min(plain.find('E'), plain.size()), ".");
    return plain;
}

} // namespace

IgesGlobal::IgesGlobal(const IgesRecords& records)
{
    constexpr double kMostScale = 1e6, kCoarsest = 1;
    const Reader reader(records);
    bool agrees = false;
    const std::optional<Unit> unit = unitOf(reader, agrees);
    lostUnit = !unit;
    double scale = reader.positive(kScale).value_or(0);
    const bool isScaleSound = scale > 1 / kMostScale && scale < kMostScale;
    scale = isScaleSound ? scale : 1;
    const double resolution = reader.positive(kResolution).value_or(1e-4);
    const std::optional<double> largest = reader.positive(kLargest);
    isSound = reader.isWhole() && agrees && isScaleSound;
    const std::string name(unit ? unit->name : "MM");
    text = "1H,,1H;," + reader.text(kProduct) + ',' + reader.text(kFile) + ',' + reader.text(kSystem) + ',' +
           reader.text(kVersion) + ",32,308,15,308,15,," + printed(scale) + ',' +
           std::to_string(unit ? unit->flag : 2) + ',' + std::to_string(name.size()) + 'H' + name +
           ",1,0.01,15H20000101.000000," + printed(resolution < kCoarsest ? resolution : 1e-4) + ',' +
           (largest && *largest < 1e12 ? printed(*largest) : "") + ",,,11,0,15H20000101.000000;";
}

} // namespace Vs::Translate::Salvage
