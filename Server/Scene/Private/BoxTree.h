#pragma once

#include "Server/Geometry/BBox.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace Vs::Scene {

/// A bounding volume hierarchy: numbered things in an order in which neighbours in space are neighbours, with
/// a tree of boxes above them, so that a search visits a few dozen of them instead of all.
class BoxTree
{
public:
    struct Box
    {
        float low[3], high[3];

        /// Inside out: holds nothing.
        static Box nothing();
        /// Contains the whole box, although single precision is coarser.
        static Box around(const BBox& box);
        void add(const float* point);
        void add(const Box& other);
    };

    BoxTree() = default;
    /// One box for each thing. A thing whose box is empty is never found.
    explicit BoxTree(const std::vector<Box>& boxes);

    /// The value that `enter` returns for a box with nothing to find in it.
    static constexpr double kNever = std::numeric_limits<double>::infinity();

    /// Calls `visit(number)` for all things in those leaf boxes for which `enter(box)` returns no more than
    /// `limit`, roughly in the order of these values. `enter` must not return more for a box than for one
    /// inside it. A visit may lower the limit.
    template <class Enter, class Visit>
    void search(const double& limit, Enter&& enter, Visit&& visit) const
    {
        struct Open
        {
            size_t node;
            double entry;
        };
        if (m_boxes.empty())
            return;
        Open open[80];
        size_t count = 0;
        open[count++] = {0, enter(m_boxes[0])};
        while (count > 0) {
            const Open top = open[--count];
            if (!(top.entry <= limit) || top.entry == kNever)
                continue;
            if (top.node + 1 >= m_leaves) {
                const size_t first = (top.node + 1 - m_leaves) * kLeafSize;
                const size_t end = first + kLeafSize < m_order.size() ? first + kLeafSize : m_order.size();
                for (size_t i = first; i < end; ++i)
                    visit(m_order[i]);
                continue;
            }
            Open near{2 * top.node + 1, enter(m_boxes[2 * top.node + 1])};
            Open far{2 * top.node + 2, enter(m_boxes[2 * top.node + 2])};
            if (far.entry < near.entry)
                std::swap(near, far);
            open[count++] = far;
            open[count++] = near;
        }
    }

private:
    static constexpr size_t kLeafSize = 8;

    /// Node i has the children 2 i + 1 and 2 i + 2; the last `m_leaves` nodes are the leaves.
    std::vector<Box> m_boxes;
    std::vector<uint32_t> m_order; ///< Numbers, leaf by leaf.
    size_t m_leaves = 0;
};

} // namespace Vs::Scene
