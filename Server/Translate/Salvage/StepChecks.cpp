#include "Server/Translate/Salvage/StepChecks.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

namespace Vs::Translate::Salvage {

namespace {

using Kind = StepValue::Kind;

/// The kernel stores numbers of instances as signed ones.
constexpr uint32_t kLargestReference = 2'000'000'000;
constexpr int kHighestDegree = 25;

class Checker
{
public:
    Checker(std::string_view text, Instance& instance) : m_text(text), m_instance(instance) {}

    bool matches(const StepRecord& record, const EntityRule& rule);
    /// For an unknown entity: only what it refers to must exist.
    bool takeLinks(std::span<const StepValue> values, bool mayMiss = false);

private:
    bool matches(const StepValue& value, const ValueRule& rule, bool mayMiss);
    bool addLink(const StepValue& value, Role role, bool mayMiss);

    std::string_view m_text;
    Instance& m_instance;
};

bool Checker::addLink(const StepValue& value, Role role, bool mayMiss)
{
    const auto begin = static_cast<uint32_t>(value.text.data() - m_text.data());
    m_instance.links.push_back(
        {value.reference, role, mayMiss, false, begin, begin + static_cast<uint32_t>(value.text.size())});
    return value.reference <= kLargestReference;
}

bool Checker::takeLinks(std::span<const StepValue> values, bool mayMiss)
{
    return std::all_of(values.begin(), values.end(), [&](const StepValue& value) {
        return value.kind == Kind::Reference ? addLink(value, Role::Count, mayMiss)
                                             : takeLinks(value.items, mayMiss);
    });
}

bool Checker::matches(const StepValue& value, const ValueRule& rule, bool mayMiss)
{
    if ((rule.isOptional && value.kind == Kind::Omitted) || (rule.isDerivable && value.kind == Kind::Derived))
        return true;
    const bool isNumber = value.kind == Kind::Number;
    const auto each = [&](bool membersMayMiss) {
        return value.kind == Kind::List && !value.items.empty() &&
               std::all_of(value.items.begin(), value.items.end(),
                           [&](const StepValue& item) { return matches(item, *rule.inner, membersMayMiss); });
    };
    switch (rule.kind) {
    case ValueRule::Kind::Any:
        return takeLinks({&value, 1}, mayMiss);
    case ValueRule::Kind::Text:
        return value.kind == Kind::Text || value.kind == Kind::Omitted;
    case ValueRule::Kind::Word:
        return value.kind == Kind::Word;
    case ValueRule::Kind::Logical:
        return value.kind == Kind::Word &&
               (value.text == ".T." || value.text == ".F." || value.text == ".U.");
    case ValueRule::Kind::Number:
        return isNumber;
    case ValueRule::Kind::Positive:
        return isNumber && value.number > 0;
    case ValueRule::Kind::Share:
        return isNumber && value.number >= 0 && value.number <= 1;
    case ValueRule::Kind::Count:
        return isNumber && value.isInteger && value.number > 0;
    case ValueRule::Kind::Derived:
        return value.kind == Kind::Derived || value.kind == Kind::Omitted;
    case ValueRule::Kind::Typed:
        return isNumber ||
               (value.kind == Kind::Typed && value.items.size() == 1 && value.items[0].kind == Kind::Number);
    case ValueRule::Kind::Reference:
        return value.kind == Kind::Reference && addLink(value, rule.role, mayMiss);
    case ValueRule::Kind::List:
        return each(false);
    case ValueRule::Kind::Some:
        return each(true);
    }
    return false;
}

bool Checker::matches(const StepRecord& record, const EntityRule& rule)
{
    if (record.values.size() != rule.values.size())
        return false;
    for (size_t i = 0; i < rule.values.size(); ++i)
        if (!matches(record.values[i], rule.values[i], false))
            return false;
    return true;
}

/// The parameters of one entity, wherever its supertypes put them; empty if it isn't there.
std::span<const StepValue> valuesOf(const std::vector<StepRecord>& records, std::string_view entity)
{
    for (const StepRecord& record : records)
        if (record.name == entity)
            return record.values;
    return {};
}

double sum(const StepValue& list)
{
    return std::accumulate(list.items.begin(), list.items.end(), 0.0,
                           [](double sum, const StepValue& item) { return sum + item.number; });
}

/// Whether knots increase, each has its multiplicity, and their number fits the degree and the points.
bool knotsFit(const StepValue& multiplicities, const StepValue& knots, double degree, size_t points)
{
    const auto falls = [](const StepValue& a, const StepValue& b) { return a.number >= b.number; };
    return degree <= kHighestDegree && multiplicities.items.size() == knots.items.size() &&
           knots.items.size() > 1 &&
           std::adjacent_find(knots.items.begin(), knots.items.end(), falls) == knots.items.end() &&
           std::all_of(multiplicities.items.begin(), multiplicities.items.end(),
                       [&](const StepValue& each) { return each.number <= degree + 1; }) &&
           sum(multiplicities) == double(points) + degree + 1;
}

bool isGrid(const StepValue& rows)
{
    return std::all_of(rows.items.begin(), rows.items.end(),
                       [&](const StepValue& row) { return row.items.size() == rows.items[0].items.size(); });
}

bool curveFits(std::span<const StepValue> curve, std::span<const StepValue> knots,
               std::span<const StepValue> rational)
{
    const size_t points = curve[1].items.size();
    return double(points) > curve[0].number && knotsFit(knots[0], knots[1], curve[0].number, points) &&
           (rational.empty() || rational[0].items.size() == points);
}

bool surfaceFits(std::span<const StepValue> surface, std::span<const StepValue> knots,
                 std::span<const StepValue> rational)
{
    const StepValue& rows = surface[2];
    if (!isGrid(rows))
        return false;
    const size_t across = rows.items.size(), along = rows.items[0].items.size();
    return knotsFit(knots[0], knots[2], surface[0].number, across) &&
           knotsFit(knots[1], knots[3], surface[1].number, along) &&
           (rational.empty() || (rational[0].items.size() == across && isGrid(rational[0]) &&
                                 rational[0].items[0].items.size() == along));
}

bool splinesFit(const std::vector<StepRecord>& records)
{
    const auto all = [&](std::string_view entity) { return valuesOf(records, entity); };
    if (records.size() > 1) {
        if (const auto knots = all("B_SPLINE_CURVE_WITH_KNOTS"); !knots.empty())
            return !all("B_SPLINE_CURVE").empty() &&
                   curveFits(all("B_SPLINE_CURVE"), knots, all("RATIONAL_B_SPLINE_CURVE"));
        if (const auto knots = all("B_SPLINE_SURFACE_WITH_KNOTS"); !knots.empty())
            return !all("B_SPLINE_SURFACE").empty() &&
                   surfaceFits(all("B_SPLINE_SURFACE"), knots, all("RATIONAL_B_SPLINE_SURFACE"));
        return true;
    }
    // Not being complex, it has all parameters in one list: the name, those of the spline itself, then the
    // knots.
    if (const auto one = all("B_SPLINE_CURVE_WITH_KNOTS"); !one.empty())
        return curveFits(one.subspan(1), one.subspan(6), {});
    if (const auto one = all("B_SPLINE_SURFACE_WITH_KNOTS"); !one.empty())
        return surfaceFits(one.subspan(1), one.subspan(8), {});
    return true;
}

/// Neither zero nor absurd.
bool isDirection(const StepValue& numbers)
{
    constexpr double kShortest = 1e-6, kLongest = 1e6;
    double square = 0;
    for (const StepValue& each : numbers.items)
        square += each.number * each.number;
    return square > kShortest * kShortest && square < kLongest * kLongest;
}

bool fitsItself(const std::vector<StepRecord>& records)
{
    const StepRecord& first = records.front();
    if (first.name == "CARTESIAN_POINT")
        return first.values[1].items.size() <= 3;
    if (first.name == "DIRECTION")
        return first.values[1].items.size() <= 3 && isDirection(first.values[1]);
    return splinesFit(records);
}

} // namespace

bool checkStatement(const StepStatement& statement, Instance& instance)
{
    instance.number = statement.number;
    instance.text = statement.text;
    std::vector<StepRecord> records;
    if (statement.number > kLargestReference || !parse(statement.text, records))
        return false;
    instance.entity = records.front().name;
    Checker checker(statement.text, instance);
    const bool isComplex = records.size() > 1;
    for (const StepRecord& record : records) {
        const EntityRule* rule = ruleOf(record.name, isComplex);
        if (rule)
            instance.roles |= rule->roles;
        if (!(rule && rule->hasValues ? checker.matches(record, *rule) : checker.takeLinks(record.values)))
            return false;
    }
    return fitsItself(records);
}

} // namespace Vs::Translate::Salvage
