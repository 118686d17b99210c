#pragma once

#include "Server/Geometry/GkPoint3d.h"

#include <cstdint>
#include <vector>

namespace Vs {

/// Tells which stretches of straight lines are hidden by triangles, seen along -z in a parallel projection.
/// Exact but for tolerances, so it depends on no resolution.
class LineVisibility
{
public:
    /// Of a line, from 0 at its start to 1 at its end.
    struct Stretch
    {
        double from, to;
    };

    /// `size` is that of everything there is: what is smaller than some millionths of it doesn't count.
    explicit LineVisibility(double size) : m_size(size) {}

    /// A body whose triangles deviate that far from its surfaces. The triangles follow.
    void beginBody(double deviation) { m_deviations.push_back(float(deviation)); }
    /// Of the last body. One that is seen edge-on hides nothing.
    void add(const GkPoint3d& a, const GkPoint3d& b, const GkPoint3d& c);
    /// To be called when all are there.
    void build();

    /// To whom a line belongs.
    struct Owner
    {
        uint32_t body;          ///< Counted from 0.
        bool isOutline = false; ///< It runs where triangles turn away, and not between surfaces.
    };
    /// The hidden stretches of a line, in their order. Triangles of its own body hide what lies behind them;
    /// those of another one only what is deeper below them than both bodies deviate, so that surfaces in
    /// contact don't hide each other's lines. Outlines zigzag between triangles, so they have such a margin
    /// within their own body as well. Any thread.
    void hidden(const GkPoint3d& start, const GkPoint3d& end, const Owner& owner,
                std::vector<Stretch>& stretches) const;

private:
    struct Triangle
    {
        float corners[3][3]; ///< Counter-clockwise for the viewer.
        uint32_t body;
    };
    /// A box around triangles, seen by the viewer, in a tree: the first child comes next.
    struct Box
    {
        float low[2], high[2], nearest;
        uint32_t first, count; ///< Of triangles; without any, `first` is the second child.
    };
    struct Line;

    void split(uint32_t first, uint32_t count);
    Box around(uint32_t first, uint32_t count) const;
    void clip(const Line& line, const Triangle& triangle, std::vector<Stretch>& stretches) const;

    double m_size;
    std::vector<float> m_deviations;
    std::vector<Triangle> m_triangles;
    std::vector<Box> m_boxes;
};

} // namespace Vs
