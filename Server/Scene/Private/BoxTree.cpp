#include "Server/Scene/Private/BoxTree.h"

#include <algorithm>
#include <bit>

namespace Vs::Scene {

namespace {

constexpr float kMost = std::numeric_limits<float>::max();

/// The lowest ten bits with two zeros between each.
uint32_t spread(uint32_t bits)
{
    bits = (bits | bits << 16) & 0x030000FF;
    bits = (bits | bits << 8) & 0x0300F00F;
    bits = (bits | bits << 4) & 0x030C30C3;
    return (bits | bits << 2) & 0x09249249;
}

} // namespace

BoxTree::Box BoxTree::Box::nothing()
{
    return {{kMost, kMost, kMost}, {-kMost, -kMost, -kMost}};
}

BoxTree::Box BoxTree::Box::around(const BBox& box)
{
    if (box.isEmpty())
        return nothing();
    const auto below = [](double value) { return std::nextafter(float(value), -kMost); };
    const auto above = [](double value) { return std::nextafter(float(value), kMost); };
    return {{below(box.low().x), below(box.low().y), below(box.low().z)},
            {above(box.high().x), above(box.high().y), above(box.high().z)}};
}

void BoxTree::Box::add(const float* point)
{
    for (int axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], point[axis]);
        high[axis] = std::max(high[axis], point[axis]);
    }
}

void BoxTree::Box::add(const Box& other)
{
    for (int axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], other.low[axis]);
        high[axis] = std::max(high[axis], other.high[axis]);
    }
}

// Sorted along a space-filling curve (Morton, 1966); the tree above has one shape for each count and needs no
// links.
BoxTree::BoxTree(const std::vector<Box>& boxes)
{
    Box all = Box::nothing();
    for (const Box& box : boxes)
        all.add(box);
    double scale[3];
    for (int axis = 0; axis < 3; ++axis)
        scale[axis] = 1023 / std::max(double(all.high[axis]) - all.low[axis], 1e-300);
    std::vector<uint64_t> keys;
    keys.reserve(boxes.size());
    for (size_t i = 0; i < boxes.size(); ++i) {
        if (boxes[i].low[0] > boxes[i].high[0])
            continue;
        uint32_t key = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const double middle = (double(boxes[i].low[axis]) + boxes[i].high[axis]) / 2;
            const double at = (middle - all.low[axis]) * scale[axis];
            key |= spread(uint32_t(std::clamp(at, 0.0, 1023.0))) << axis;
        }
        keys.push_back(uint64_t(key) << 32 | i);
    }
    if (keys.empty())
        return;
    std::sort(keys.begin(), keys.end());
    m_order.assign(keys.begin(), keys.end()); // cut to the numbers

    m_leaves = std::bit_ceil((m_order.size() + kLeafSize - 1) / kLeafSize);
    m_boxes.assign(2 * m_leaves - 1, Box::nothing());
    for (size_t i = 0; i < m_order.size(); ++i)
        m_boxes[m_leaves - 1 + i / kLeafSize].add(boxes[m_order[i]]);
    for (size_t i = m_leaves - 1; i-- > 0;) {
        m_boxes[i].add(m_boxes[2 * i + 1]);
        m_boxes[i].add(m_boxes[2 * i + 2]);
    }
}

} // namespace Vs::Scene
