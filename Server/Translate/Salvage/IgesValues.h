#pragma once

#include "Server/Translate/Salvage/IgesRules.h"

#include <initializer_list>

namespace Vs::Translate::Salvage {

[[nodiscard]] IgesRoles rolesOf(std::initializer_list<IgesRole> each);

/// Takes an entity's values from left to right, and notes what doesn't fit.
class IgesValues
{
public:
    static constexpr int kMostMembers = 10'000'000;

    IgesValues(const IgesRecord& record, IgesFindings& findings) : m_record(record), m_findings(findings) {}

    bool isSound() const { return m_isSound; }
    int form() const { return m_record.directory.form.value_or(0); }
    /// How many values are left.
    size_t left() const { return m_record.values.size() - m_at; }
    size_t taken() const { return m_at; }

    void require(bool condition) { m_isSound &= condition; }
    int integer(int least, int most, bool mayBeOmitted = false);
    int count(int least = 1) { return integer(least, kMostMembers); }
    void flags(int count, int most = 1)
    {
        for (int i = 0; i < count; ++i)
            integer(0, most, true);
    }
    double number();
    double positive();
    void numbers(size_t count);
    /// That don't fall, nor more than `most` of which are alike.
    void knots(size_t count, int most);
    /// A direction: neither zero nor absurd.
    void direction();
    void any();
    /// As many as are left of these, which the kernel doesn't need.
    void optional(int count)
    {
        for (; count > 0 && left() > 0; --count)
            any();
    }
    /// Null if it may be, and is, 0.
    IgesLink* link(IgesRoles roles, bool mayBeNone = false);
    IgesLink* link(IgesRole role, bool mayBeNone = false) { return link(rolesOf({role}), mayBeNone); }
    /// A list that makes do with the members that are left.
    template <typename Rest>
    void list(IgesRoles roles, size_t each, const Rest& rest);
    void list(IgesRoles roles)
    {
        list(roles, 1, [] {});
    }
    void members(int count) { m_findings.members = count; }
    /// What may follow its own values.
    std::vector<uint32_t> properties();

private:
    const IgesValue* next();

    const IgesRecord& m_record;
    IgesFindings& m_findings;
    size_t m_at = 0;
    bool m_isSound = true;
};

template <typename Rest>
void IgesValues::list(IgesRoles roles, size_t each, const Rest& rest)
{
    m_findings.list = {m_at, each};
    const int members = count();
    // One whose end is gone has the members that are left.
    for (int i = 0; i < members && left() > 0 && m_isSound; ++i) {
        const IgesValue& value = *next();
        const bool isNumber = value.kind == IgesValue::Kind::Integer && value.number > 0;
        IgesLink member;
        member.place = m_at - 1;
        member.target = isNumber && value.number < kMostMembers ? uint32_t(value.number) : 0;
        member.roles = roles;
        member.mayMiss = true;
        m_findings.links.push_back(member);
        rest();
    }
    m_findings.lostEnd = m_at < m_findings.list.count + 1 + size_t(members) * each;
}

} // namespace Vs::Translate::Salvage
