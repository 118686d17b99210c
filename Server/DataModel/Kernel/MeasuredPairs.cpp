#include "Server/DataModel/Kernel/MeasuredPairs.h"

#include <algorithm>
#include <utility>

namespace Vs::Kernel {

namespace {

constexpr size_t kMost = 32;

bool isSame(const std::vector<MeasuredShape>& a, const std::vector<MeasuredShape>& b)
{
    return std::ranges::equal(a, b, [](const MeasuredShape& one, const MeasuredShape& other) {
        return one.entry == other.entry && one.leaf == other.leaf && one.index == other.index &&
               one.placement.isEqualTo(other.placement, {0, 0});
    });
}

} // namespace

const ShapeAnswer* MeasuredPairs::find(const std::vector<MeasuredShape>& first,
                                       const std::vector<MeasuredShape>& second, EMeasureType type,
                                       const std::vector<TopoDS_Shape>& bodies)
{
    const auto known = std::ranges::find_if(m_pairs, [&](const Pair& each) {
        return each.type == type && isSame(each.first, first) && isSame(each.second, second) &&
               std::ranges::equal(each.bodies, bodies,
                                  [](const auto& a, const auto& b) { return a.IsEqual(b); });
    });
    if (known == m_pairs.end())
        return nullptr;
    m_pairs.splice(m_pairs.begin(), m_pairs, known);
    return &m_pairs.front().answer;
}

void MeasuredPairs::add(Pair pair)
{
    m_pairs.push_front(std::move(pair));
    if (m_pairs.size() > kMost)
        m_pairs.pop_back();
}

} // namespace Vs::Kernel
