#include "Server/DataModel/Model/PartSuccessors.h"

#include "Server/Base/Require.h"

#include <algorithm>

namespace Vs {

namespace {

using Numbers = PartSuccessors::Numbers;
constexpr uint32_t kNone = PartSuccessors::kNone;

uint32_t at(const Numbers& numbers, uint32_t index)
{
    return index < numbers.size() ? numbers[index] : kNone;
}

Numbers inverted(const Numbers& successors)
{
    Numbers found, times;
    for (uint32_t index = 0; index < successors.size(); ++index) {
        const uint32_t successor = successors[index];
        if (successor == kNone)
            continue;
        if (successor >= found.size()) {
            found.resize(successor + 1, kNone);
            times.resize(successor + 1, 0);
        }
        found[successor] = ++times[successor] == 1 ? index : kNone;
    }
    return found;
}

Numbers chained(Numbers first, const Numbers& second)
{
    for (uint32_t& number : first)
        number = at(second, number);
    return first;
}

} // namespace

std::optional<uint32_t> PartSuccessors::of(ObjectPath::Leaf leaf, uint32_t index) const
{
    require(leaf > ObjectPath::Leaf::Body, "only the parts of a body have numbers");
    if (m_same)
        return index;
    // What becomes of a solid as a whole isn't tracked.
    if (leaf == ObjectPath::Leaf::Solid)
        return std::nullopt;
    const uint32_t found = at(m_lists[int(leaf) - int(ObjectPath::Leaf::Face)], index);
    return found == kNone ? std::nullopt : std::optional(found);
}

PartSuccessors PartSuccessors::inverse() const
{
    return m_same ? *this : PartSuccessors(inverted(m_lists[0]), inverted(m_lists[1]), inverted(m_lists[2]));
}

PartSuccessors PartSuccessors::followedBy(const PartSuccessors& next) const
{
    if (m_same || next.m_same)
        return m_same ? next : *this;
    return PartSuccessors(chained(m_lists[0], next.m_lists[0]), chained(m_lists[1], next.m_lists[1]),
                          chained(m_lists[2], next.m_lists[2]));
}

} // namespace Vs
