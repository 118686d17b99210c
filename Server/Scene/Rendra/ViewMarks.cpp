#include "Server/Scene/Rendra/ViewMarks.h"

#include "Server/Base/Strings.h"
#include "Server/Scene/Rendra/GridScale.h"
#include "Server/Scene/StrokeFont.h"
#include "Server/Types/LengthUnit.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Rendra {

using Vs::Scene::StrokeFont;

namespace {

// All in logical pixels.
constexpr double kAxisLength = 36, kAxisPlace = 62, kLetterAway = 11;
constexpr double kTextHeight = 10;
constexpr double kMargin = 18, kTickHeight = 7, kTextAbove = 11;
/// The bar is at least that long, and at most two and a half times as much.
constexpr double kLeastBar = 50;
constexpr float kAxisWidth = 2.4f, kTextWidth = 1.5f, kHalo = 3;
/// In smaller views the marks would cover what is shown.
constexpr double kLeastWidth = 240, kLeastHeight = 150;

constexpr const wchar_t* kNames[] = {L"X", L"Y", L"Z"};
/// Before light backgrounds, and before dark ones.
constexpr float kAxisColours[2][3][3] = {
    {{0.80f, 0.20f, 0.18f}, {0.16f, 0.54f, 0.16f}, {0.14f, 0.36f, 0.84f}},
    {{1.00f, 0.42f, 0.38f}, {0.44f, 0.84f, 0.42f}, {0.46f, 0.68f, 1.00f}}};

/// "50 mm", short: the numbers of a scale are round.
std::wstring lengthText(double length, const Vs::LengthUnit& unit)
{
    char number[40];
    const auto end =
        std::to_chars(std::begin(number), std::end(number), length, std::chars_format::general, 6);
    return std::wstring(number, end.ptr) + L" " + Vs::Strings::widen(unit.key);
}

} // namespace

void ViewMarks::addLine(const GkPoint2d& from, const GkPoint2d& to, const Colour& colour,
                        std::vector<LineStrips::Vertex>& lines)
{
    for (const GkPoint2d& end : {from, to})
        lines.push_back({{float(end.x), float(end.y), 0}, {colour[0], colour[1], colour[2], 1}});
}

void ViewMarks::addText(const std::wstring& text, const GkPoint2d& middle, const Colour& colour)
{
    const double height = kTextHeight * m_pixel;
    const double left = middle.x - StrokeFont::width(text) * height / 2, bottom = middle.y - height / 2;
    for (const StrokeFont::Polyline& line : StrokeFont::lines(text))
        for (size_t i = 1; i < line.size(); ++i)
            addLine({left + line[i - 1].x * height, bottom + line[i - 1].y * height},
                    {left + line[i].x * height, bottom + line[i].y * height}, colour, m_texts);
}

// The nearest is drawn last.
void ViewMarks::addAxes(const Frame& frame)
{
    const std::array<GkVector3d, 3> seen = {frame.projection.view() * GkVector3d(1, 0, 0),
                                            frame.projection.view() * GkVector3d(0, 1, 0),
                                            frame.projection.view() * GkVector3d(0, 0, 1)};
    std::array<size_t, 3> order = {0, 1, 2};
    std::ranges::sort(order, {}, [&](size_t axis) { return seen[axis].z; });
    const GkPoint2d origin(kAxisPlace * m_pixel, kAxisPlace * m_pixel);
    for (const size_t axis : order) {
        const GkVector3d& to = seen[axis];
        const GkPoint2d tip(origin.x + to.x * kAxisLength * m_pixel, origin.y + to.y * kAxisLength * m_pixel);
        addLine(origin, tip, kAxisColours[frame.environment.isDark()][axis], m_axes);
        // An axis that points at the viewer has its letter where those of the others rarely are.
        const double flat = std::hypot(to.x, to.y);
        const double right = flat > 0.1 ? to.x / flat : -0.71, up = flat > 0.1 ? to.y / flat : -0.71;
        addText(kNames[axis], {tip.x + right * kLetterAway * m_pixel, tip.y + up * kLetterAway * m_pixel},
                m_line);
    }
}

void ViewMarks::addScaleBar(const Frame& frame)
{
    const Vs::LengthUnit& unit =
        frame.target.gridUnit ? *frame.target.gridUnit : Vs::LengthUnit::all().front();
    const double pixelSize = frame.projection.pixelSize(frame.fragment.camera()->distance());
    const double least = pixelSize * kLeastBar * m_pixel / unit.millimetres;
    if (!std::isnormal(least) || least < 0)
        return;
    const double length = GridScale(least).minor();
    const double right = frame.area.width - kMargin * m_pixel;
    const double left = right - length * unit.millimetres / pixelSize;
    const double bottom = kMargin * m_pixel, half = kTickHeight / 2 * m_pixel;
    addLine({left, bottom}, {right, bottom}, m_line, m_texts);
    for (const double end : {left, right})
        addLine({end, bottom - half}, {end, bottom + half}, m_line, m_texts);
    addText(lengthText(length, unit), {(left + right) / 2, bottom + kTextAbove * m_pixel}, m_line);
}

void ViewMarks::draw(const Frame& frame)
{
    if (!(frame.target.axisCross || frame.target.scaleBar) || !frame.showsModel())
        return;
    m_pixel = std::max(1.0, double(frame.target.lineWidth));
    if (frame.area.width < kLeastWidth * m_pixel || frame.area.height < kLeastHeight * m_pixel)
        return;
    const Vs::Colour& line = frame.environment.line;
    for (const auto& [to, from] : {std::pair(0, line.r), {1, line.g}, {2, line.b}})
        m_line[to] = std::pow(from, 1 / 2.2f);
    m_axes.clear();
    m_texts.clear();
    if (frame.target.axisCross)
        addAxes(frame);
    if (frame.target.scaleBar)
        addScaleBar(frame);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    drawAll(frame, m_axes, kAxisWidth);
    drawAll(frame, m_texts, kTextWidth);
    frame.drawIntoPicture();
}

// A halo like the background keeps them readable before a model.
void ViewMarks::drawAll(const Frame& frame, const std::vector<LineStrips::Vertex>& lines, float width)
{
    const Area &area = frame.area, &part = frame.part;
    double toClip[4][4] = {};
    toClip[0][0] = 2.0 / part.width;
    toClip[0][3] = 2.0 * (area.x - part.x) / part.width - 1;
    toClip[1][1] = 2.0 / part.height;
    toClip[1][3] = 2.0 * (area.y - part.y) / part.height - 1;
    toClip[3][3] = 1;
    const float shade = frame.environment.isDark() ? 0.08f : 0.96f;
    std::vector<LineStrips::Vertex> halo = lines;
    for (LineStrips::Vertex& vertex : halo)
        std::fill(std::begin(vertex.colour), std::end(vertex.colour) - 1, shade);
    const auto pixel = float(m_pixel);
    if (m_strips.begin(frame, toClip, halo))
        m_strips.draw((width + kHalo) * pixel, {1, 1, 1, 0.45f});
    if (m_strips.begin(frame, toClip, lines))
        m_strips.draw(width * pixel);
}

} // namespace Rendra
