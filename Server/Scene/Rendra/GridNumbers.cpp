#include "Server/Scene/Rendra/GridNumbers.h"

#include "Server/Scene/Projection.h"
#include "Server/Scene/StrokeFont.h"

#include <algorithm>
#include <cmath>

namespace Rendra {

using Vs::Scene::StrokeFont;

namespace {

/// In logical pixels: how high a digit is, how far from its line, and how much space is between two numbers.
constexpr double kHeight = 9, kOffset = 5, kRoom = 8;
/// No more numbers than this along an axis are ever on the screen together.
constexpr int64_t kMostNumbers = 400;

/// The priority of a number over its neighbours.
int roundness(int64_t index)
{
    if (index == 0)
        return 9;
    int level = 0;
    for (; index % 10 == 0; index /= 10)
        level += 3;
    return level + (index % 5 == 0 ? 2 : index % 2 == 0 ? 1 : 0);
}

} // namespace

GridNumbers::GridNumbers(const Vs::Scene::Projection& projection, double pixel)
    : m_projection(projection), m_pixel(pixel)
{
}

void GridNumbers::addAxis(const GkVector3d& axis, double middle, double beside, double reach, double major,
                          const GridScale& scale)
{
    const double half = std::sqrt(std::max(0.0, reach * reach - beside * beside));
    if (!(half > 0))
        return;
    const double first = std::ceil((middle - half) / major), last = std::floor((middle + half) / major);
    if (!(std::abs(first) < 1e15 && std::abs(last) < 1e15))
        return;
    const auto nearest = int64_t(std::llround(middle / major));
    std::vector<int64_t> indices;
    for (int64_t i = std::max(int64_t(first), nearest - kMostNumbers / 2);
         i <= std::min(int64_t(last), nearest + kMostNumbers / 2); ++i)
        indices.push_back(i);
    std::stable_sort(indices.begin(), indices.end(),
                     [](int64_t a, int64_t b) { return roundness(a) > roundness(b); });
    for (const int64_t index : indices) {
        // They fade like the lines.
        const double part = std::hypot(double(index) * major - middle, beside) / reach;
        const double t = std::clamp((part - 0.3) / 0.6, 0.0, 1.0);
        const double opacity = 1 - t * t * (3 - 2 * t);
        if (opacity > 0.05)
            place(axis, double(index) * major, major, scale.number(index), opacity);
    }
}

bool GridNumbers::place(const GkVector3d& axis, double along, double major, const std::wstring& text,
                        double opacity)
{
    const auto onScreen = [&](double distance) {
        const GkVector3d world = axis * distance;
        return m_projection.worldToScreen(GkPoint3d(world.x, world.y, world.z));
    };
    const GkPoint3d at = onScreen(along);
    if (m_projection.perspective() && !(at.z > m_projection.pixelSize(1) * major * 1e-3))
        return false;
    const GkPoint3d next = onScreen(along + major * 1e-3);
    const double width = StrokeFont::width(text) * kHeight * m_pixel, height = kHeight * m_pixel;
    // Beside the axis, on its lower side, far enough away that the axis doesn't cross the number.
    GkVector3d off(at.y - next.y, next.x - at.x, 0);
    if (off.lengthSqrd() == 0)
        return false;
    off = off.normal() * (off.y > 0 ? -1.0 : 1.0);
    const double away = kOffset * m_pixel + std::abs(off.x) * width / 2 + std::abs(off.y) * height / 2;
    Label label{text, {}, at.z, opacity};
    label.box.left = at.x + off.x * away - width / 2;
    label.box.bottom = at.y + off.y * away - height / 2;
    label.box.right = label.box.left + width;
    label.box.top = label.box.bottom + height;
    if (!(label.box.right > 0 && label.box.left < m_projection.width() && label.box.top > 0 &&
          label.box.bottom < m_projection.height()))
        return false;
    const double room = kRoom * m_pixel;
    const bool covers = std::any_of(m_labels.begin(), m_labels.end(), [&](const Label& other) {
        return label.box.left < other.box.right + room && other.box.left < label.box.right + room &&
               label.box.bottom < other.box.top + room / 2 && other.box.bottom < label.box.top + room / 2;
    });
    if (!covers)
        m_labels.push_back(std::move(label));
    return !covers;
}

std::vector<GridNumbers::Line> GridNumbers::lines() const
{
    std::vector<Line> all;
    const double height = kHeight * m_pixel;
    for (const Label& label : m_labels)
        for (const StrokeFont::Polyline& line : StrokeFont::lines(label.text))
            for (size_t i = 1; i < line.size(); ++i) {
                const auto on = [&](const GkPoint2d& point) {
                    return GkPoint2d(label.box.left + point.x * height, label.box.bottom + point.y * height);
                };
                all.push_back({on(line[i - 1]), on(line[i]), label.ahead, label.opacity});
            }
    return all;
}

} // namespace Rendra
