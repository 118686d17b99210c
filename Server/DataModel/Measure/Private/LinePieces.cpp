#include "Server/DataModel/Measure/Private/LinePieces.h"

#include <algorithm>
#include <cmath>

namespace Vs {

namespace {

/// As parts of the whole: on a large sheet, a tenth of a line's width, and what can't be seen at all.
constexpr double kSliver = 1e-4, kNothing = 1e-6;

/// A stretch along a whole polyline: the whole part of a number is that of its piece.
struct Run
{
    bool hidden;
    double from, to;
    double length; ///< As it is seen.
};

double seenLength(const GkPoint3d& a, const GkPoint3d& b)
{
    return std::hypot(b.x - a.x, b.y - a.y);
}

void append(std::vector<Run>& runs, const Run& run)
{
    if (run.to <= run.from)
        return;
    if (runs.empty() || runs.back().hidden != run.hidden) {
        runs.push_back(run);
        return;
    }
    runs.back().to = run.to;
    runs.back().length += run.length;
}

std::vector<Run> runsOf(const SeenLine& line, const LineVisibility& visibility)
{
    std::vector<Run> runs;
    std::vector<LineVisibility::Stretch> hidden;
    for (size_t i = 1; i < line.points.size(); ++i) {
        const GkPoint3d &a = line.points[i - 1], &b = line.points[i];
        visibility.hidden(a, b, line.owner, hidden);
        const double length = seenLength(a, b), start = double(i - 1);
        double at = 0;
        for (const LineVisibility::Stretch& stretch : hidden) {
            append(runs, {false, start + at, start + stretch.from, (stretch.from - at) * length});
            append(runs,
                   {true, start + stretch.from, start + stretch.to, (stretch.to - stretch.from) * length});
            at = stretch.to;
        }
        append(runs, {false, start + at, start + 1, (1 - at) * length});
    }
    return runs;
}

// Tolerances leave tiny stretches where lines go behind something that they touch.
std::vector<Run> withoutSlivers(std::vector<Run> runs, double sliver)
{
    for (const bool hidden : {false, true}) {
        if (runs.size() < 2)
            break;
        for (Run& run : runs)
            if (run.hidden == hidden && run.length < sliver)
                run.hidden = !hidden;
        std::vector<Run> joined;
        for (const Run& run : runs)
            append(joined, run);
        runs = std::move(joined);
    }
    return runs;
}

GkPoint2d pointOf(const SeenLine& line, double at)
{
    const size_t piece = std::min(size_t(at), line.points.size() - 2);
    const GkPoint3d &a = line.points[piece], &b = line.points[piece + 1];
    const double t = at - double(piece);
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

/// Adds a point; the one before goes if it lies on the way.
void add(std::vector<GkPoint2d>& points, const GkPoint2d& point, double nothing)
{
    if (!points.empty() && std::hypot(point.x - points.back().x, point.y - points.back().y) <= nothing)
        return;
    if (points.size() > 1) {
        const GkPoint2d &a = points[points.size() - 2], &b = points.back();
        const double alongX = point.x - a.x, alongY = point.y - a.y;
        const double across = alongX * (b.y - a.y) - alongY * (b.x - a.x);
        const double forward = (b.x - a.x) * (point.x - b.x) + (b.y - a.y) * (point.y - b.y);
        if (forward > 0 && std::abs(across) <= nothing * std::hypot(alongX, alongY))
            points.pop_back();
    }
    points.push_back(point);
}

} // namespace

std::vector<LineDrawing::Line> piecesOf(const SeenLine& line, const LineVisibility& visibility, double size,
                                        bool hidden)
{
    std::vector<LineDrawing::Line> pieces;
    for (const Run& run : withoutSlivers(runsOf(line, visibility), kSliver * size)) {
        if (run.hidden && (!hidden || line.smooth))
            continue;
        LineDrawing::Line piece{run.hidden, line.smooth, {}};
        add(piece.points, pointOf(line, run.from), kNothing * size);
        for (double at = std::floor(run.from) + 1; at < run.to; ++at)
            add(piece.points, pointOf(line, at), kNothing * size);
        add(piece.points, pointOf(line, run.to), kNothing * size);
        if (piece.points.size() > 1)
            pieces.push_back(std::move(piece));
    }
    return pieces;
}

} // namespace Vs
