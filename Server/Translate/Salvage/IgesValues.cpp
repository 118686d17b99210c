#include "Server/Translate/Salvage/IgesValues.h"

#include <cmath>

namespace Vs::Translate::Salvage {

namespace {

constexpr double kLargest = 1e9;

} // namespace

IgesRoles rolesOf(std::initializer_list<IgesRole> each)
{
    IgesRoles roles;
    for (const IgesRole role : each)
        roles.set(size_t(role));
    return roles;
}

const IgesValue* IgesValues::next()
{
    if (m_at < m_record.values.size())
        return &m_record.values[m_at++];
    m_isSound = false;
    return nullptr;
}

int IgesValues::integer(int least, int most, bool mayBeOmitted)
{
    const IgesValue* const value = next();
    if (mayBeOmitted && value && value->kind == IgesValue::Kind::Omitted)
        return 0;
    if (!value || value->kind != IgesValue::Kind::Integer || value->number < least || value->number > most) {
        m_isSound = false;
        return 0;
    }
    return int(value->number);
}

double IgesValues::number()
{
    const IgesValue* const value = next();
    const bool isNumber =
        value && (value->kind == IgesValue::Kind::Integer || value->kind == IgesValue::Kind::Real);
    if (!isNumber || std::abs(value->number) >= kLargest) {
        m_isSound = false;
        return 0;
    }
    return value->number;
}

double IgesValues::positive()
{
    const double value = number();
    m_isSound &= value > 0;
    return value;
}

void IgesValues::numbers(size_t count)
{
    for (size_t i = 0; i < count && m_isSound; ++i)
        number();
}

void IgesValues::knots(size_t count, int most)
{
    int alike = 0;
    double last = 0;
    for (size_t i = 0; i < count && m_isSound; ++i) {
        const double knot = number();
        m_isSound &= i == 0 || knot >= last;
        alike = i > 0 && knot == last ? alike + 1 : 1;
        m_isSound &= alike <= most;
        last = knot;
    }
}

void IgesValues::direction()
{
    constexpr double kShortest = 1e-6, kLongest = 1e6;
    const double x = number(), y = number(), z = number(), length = std::hypot(x, y, z);
    m_isSound &= length > kShortest && length < kLongest;
}

void IgesValues::any()
{
    if (const IgesValue* const value = next())
        m_isSound &= value->kind != IgesValue::Kind::Bad;
}

IgesLink* IgesValues::link(IgesRoles roles, bool mayBeNone)
{
    const size_t place = m_at;
    const int target = integer(mayBeNone ? 0 : 1, 9'999'999, mayBeNone);
    if (target == 0)
        return nullptr;
    IgesLink link;
    link.place = place;
    link.target = uint32_t(target);
    link.roles = roles;
    m_findings.links.push_back(link);
    return &m_findings.links.back();
}

/// What may follow an entity's own values: entities that refer to it, and its properties.
std::vector<uint32_t> IgesValues::properties()
{
    std::vector<uint32_t> found;
    for (int list = 0; list < 2 && left() > 0; ++list) {
        const double count = next()->number;
        for (int i = 0; i < count && left() > 0; ++i)
            if (const double number = next()->number; list == 1 && number > 0 && number < kMostMembers)
                found.push_back(uint32_t(number));
    }
    return found;
}

} // namespace Vs::Translate::Salvage
