#pragma once

#include "Server/Scene/Rendra/GridScale.h"
#include "Server/Scene/Rendra/LineStrips.h"

#include <vector>

namespace Rendra {

/// Draws the layout grid: lines in the plane through the origin perpendicular to the up direction, with a
/// spacing that suits the zoom, and numbers along its two axes. It isn't part of any model: it can't be
/// picked.
class LayoutGrid : public Pass
{
public:
    bool make(Vs::Status& status) override;
    void draw(const Frame& frame) override;
    void release() override;

    /// Whether transparent bodies are drawn over the grid of a frame, not under it: when the view looks down
    /// on its plane.
    static bool isUnderGlass(const Frame& frame);

private:
    /// Where the grid is in one picture. Coordinates are along `axes`, in millimetres.
    struct Plane
    {
        GkVector3d axes[2], up;
        double middle[2]; ///< The point that the camera looks at.
        double reach;     ///< The distance from there at which it has faded out.
        double minor, major;
    };

    friend class GridUnderGlass;
    void drawNow(const Frame& frame);
    bool makeProgram();
    void drawLines(const Frame& frame, const Plane& plane);
    void drawNumbers(const Frame& frame, const Plane& plane, const GridScale& scale);

    Program m_lines;
    GLuint m_noArray = 0;
    LineStrips m_numbers;
    bool m_tried = false;
    std::vector<LineStrips::Vertex> m_vertices; ///< In camera coordinates.
};

/// The grid a second time, at its other position among the passes: drawn only there if it is under glass.
class GridUnderGlass : public Pass
{
public:
    explicit GridUnderGlass(LayoutGrid& grid) : m_grid(grid) {}
    bool make(Vs::Status&) override { return true; }
    void draw(const Frame& frame) override;
    void release() override {}

private:
    LayoutGrid& m_grid;
};

} // namespace Rendra
