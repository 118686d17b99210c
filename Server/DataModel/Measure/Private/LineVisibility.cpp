#include "Server/DataModel/Measure/Private/LineVisibility.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Vs {

namespace {

/// Parts of the whole size: what counts as the same place in the picture, and how deep something must be
/// below a triangle to be hidden. The coordinates have single precision.
constexpr double kSamePlace = 1e-6, kBelow = 3e-6;
/// Outlines may be that many deviations below triangles of their own body.
constexpr double kZigzag = 4;
constexpr uint32_t kMostInBox = 8;

/// Puts a stretch among the others, joined with those that it touches.
void put(std::vector<LineVisibility::Stretch>& stretches, LineVisibility::Stretch added)
{
    constexpr double kTouch = 1e-9;
    auto first = stretches.begin();
    while (first != stretches.end() && first->to < added.from - kTouch)
        ++first;
    auto end = first;
    for (; end != stretches.end() && end->from <= added.to + kTouch; ++end) {
        added.from = std::min(added.from, end->from);
        added.to = std::max(added.to, end->to);
    }
    if (first == end)
        stretches.insert(first, added);
    else {
        *first = added;
        stretches.erase(first + 1, end);
    }
}

} // namespace

struct LineVisibility::Line
{
    double x, y, z;    ///< Its start.
    double dx, dy, dz; ///< From there to its end.
    Owner owner;

    bool meets(const Box& box) const
    {
        const double low[2] = {std::min(x, x + dx), std::min(y, y + dy)};
        const double high[2] = {std::max(x, x + dx), std::max(y, y + dy)};
        if (low[0] > double(box.high[0]) || high[0] < double(box.low[0]) || low[1] > double(box.high[1]) ||
            high[1] < double(box.low[1]) || std::min(z, z + dz) > double(box.nearest))
            return false;
        const double halfX = (double(box.high[0]) - double(box.low[0])) / 2;
        const double halfY = (double(box.high[1]) - double(box.low[1])) / 2;
        const double offX = double(box.low[0]) + halfX - x, offY = double(box.low[1]) + halfY - y;
        return std::abs(dx * offY - dy * offX) <= std::abs(dx) * halfY + std::abs(dy) * halfX;
    }
};

void LineVisibility::add(const GkPoint3d& a, const GkPoint3d& b, const GkPoint3d& c)
{
    const double twice = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    const double longest = std::sqrt(std::max({(b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y),
                                               (c.x - b.x) * (c.x - b.x) + (c.y - b.y) * (c.y - b.y),
                                               (a.x - c.x) * (a.x - c.x) + (a.y - c.y) * (a.y - c.y)}));
    if (std::abs(twice) <= kSamePlace * m_size * longest)
        return;
    const auto set = [](const GkPoint3d& p, float(&corner)[3]) {
        corner[0] = float(p.x);
        corner[1] = float(p.y);
        corner[2] = float(p.z);
    };
    Triangle& added = m_triangles.emplace_back();
    added.body = uint32_t(m_deviations.size() - 1);
    set(a, added.corners[0]);
    set(twice > 0 ? b : c, added.corners[1]);
    set(twice > 0 ? c : b, added.corners[2]);
}

LineVisibility::Box LineVisibility::around(uint32_t first, uint32_t count) const
{
    constexpr float kFar = std::numeric_limits<float>::max();
    Box box{{kFar, kFar}, {-kFar, -kFar}, -kFar, first, count};
    for (uint32_t i = first; i < first + count; ++i)
        for (const auto& corner : m_triangles[i].corners) {
            for (size_t k = 0; k < 2; ++k) {
                box.low[k] = std::min(box.low[k], corner[k]);
                box.high[k] = std::max(box.high[k], corner[k]);
            }
            box.nearest = std::max(box.nearest, corner[2]);
        }
    const auto margin = float(kSamePlace * m_size);
    for (size_t k = 0; k < 2; ++k) {
        box.low[k] -= margin;
        box.high[k] += margin;
    }
    return box;
}

void LineVisibility::build()
{
    m_boxes.clear();
    if (!m_triangles.empty())
        split(0, uint32_t(m_triangles.size()));
}

void LineVisibility::split(uint32_t first, uint32_t count)
{
    const size_t at = m_boxes.size();
    m_boxes.push_back(around(first, count));
    if (count <= kMostInBox)
        return;
    const Box box = m_boxes[at];
    const size_t axis = box.high[0] - box.low[0] > box.high[1] - box.low[1] ? 0 : 1;
    const auto begin = m_triangles.begin() + std::ptrdiff_t(first);
    const uint32_t half = count / 2;
    std::nth_element(begin, begin + half, begin + count, [axis](const Triangle& a, const Triangle& b) {
        return a.corners[0][axis] + a.corners[1][axis] + a.corners[2][axis] <
               b.corners[0][axis] + b.corners[1][axis] + b.corners[2][axis];
    });
    split(first, half);
    m_boxes[at].first = uint32_t(m_boxes.size());
    m_boxes[at].count = 0;
    split(first + half, count - half);
}

void LineVisibility::hidden(const GkPoint3d& start, const GkPoint3d& end, const Owner& owner,
                            std::vector<Stretch>& stretches) const
{
    stretches.clear();
    const Line line{start.x, start.y, start.z, end.x - start.x, end.y - start.y, end.z - start.z, owner};
    const auto isAllHidden = [&] {
        return stretches.size() == 1 && stretches[0].from <= 0 && stretches[0].to >= 1;
    };
    std::vector<uint32_t> open;
    if (!m_boxes.empty())
        open.push_back(0);
    while (!open.empty()) {
        const uint32_t at = open.back();
        const Box& box = m_boxes[at];
        open.pop_back();
        if (!line.meets(box))
            continue;
        for (uint32_t i = box.first; i < box.first + box.count; ++i)
            clip(line, m_triangles[i], stretches);
        if (isAllHidden())
            return;
        if (box.count > 0)
            continue;
        // What is nearer hides more.
        const bool isSecondNearer = m_boxes[box.first].nearest > m_boxes[at + 1].nearest;
        open.push_back(isSecondNearer ? at + 1 : box.first);
        open.push_back(isSecondNearer ? box.first : at + 1);
    }
}

void LineVisibility::clip(const Line& line, const Triangle& triangle, std::vector<Stretch>& stretches) const
{
    Stretch inside{0, 1};
    // Keeps where a value that goes linearly from `first` to `last` is not negative.
    const auto keep = [&inside](double first, double last) {
        if (first < 0 && last < 0)
            return false;
        if (first < 0)
            inside.from = std::max(inside.from, first / (first - last));
        else if (last < 0)
            inside.to = std::min(inside.to, first / (first - last));
        return inside.from < inside.to;
    };
    const auto& c = triangle.corners;
    const double margin = kSamePlace * m_size;
    for (size_t k = 0; k < 3; ++k) {
        const auto &a = c[k], &b = c[(k + 1) % 3];
        const double alongX = double(b[0]) - double(a[0]), alongY = double(b[1]) - double(a[1]);
        const double first = alongX * (line.y - double(a[1])) - alongY * (line.x - double(a[0]));
        const double slack = margin * std::sqrt(alongX * alongX + alongY * alongY);
        if (!keep(first + slack, first + alongX * line.dy - alongY * line.dx + slack))
            return;
    }
    const GkVector3d ab(double(c[1][0]) - double(c[0][0]), double(c[1][1]) - double(c[0][1]),
                        double(c[1][2]) - double(c[0][2]));
    const GkVector3d ac(double(c[2][0]) - double(c[0][0]), double(c[2][1]) - double(c[0][1]),
                        double(c[2][2]) - double(c[0][2]));
    const GkVector3d normal = ab.crossProduct(ac).normal();
    const GkVector3d to(line.x - double(c[0][0]), line.y - double(c[0][1]), line.z - double(c[0][2]));
    double below = kBelow * m_size;
    if (triangle.body != line.owner.body)
        below += double(m_deviations[triangle.body] + m_deviations[line.owner.body]);
    else if (line.owner.isOutline)
        below += kZigzag * double(m_deviations[triangle.body]);
    const double first = -normal.dotProduct(to) - below;
    if (keep(first, first - normal.dotProduct({line.dx, line.dy, line.dz})))
        put(stretches, inside);
}

} // namespace Vs
