#pragma once

#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/GridScale.h"
#include "Server/Scene/Rendra/VertexStream.h"

#include <vector>

namespace Rendra {

/// Draws the layout grid: lines in the plane through the origin at right angles to what is up, as far apart
/// as suits the zoom, and numbers along its two axes. It belongs to no model: nothing finds it but the eye.
class LayoutGrid : public Pass
{
public:
    bool make(Vs::Status& status) override;
    void draw(const Frame& frame) override;
    void release() override;

    /// Whether transparent bodies are to be drawn over the grid of a frame, not under it: where one looks
    /// down on its plane.
    static bool isUnderGlass(const Frame& frame);

private:
    /// Where the grid is for one picture. Coordinates are along `axes`, in millimetres.
    struct Plane
    {
        GkVector3d axes[2], up;
        double middle[2]; ///< The place that the camera looks at.
        double reach;     ///< Farther from there it has faded away.
        double minor, major;
    };
    struct Vertex
    {
        float position[3]; ///< In camera coordinates.
        float opacity;
    };

    friend class GridUnderGlass;
    void drawNow(const Frame& frame);
    bool makePrograms();
    void drawLines(const Frame& frame, const Plane& plane);
    void drawNumbers(const Frame& frame, const Plane& plane, const GridScale& scale);

    Program m_lines, m_numbers;
    GLuint m_noArray = 0;
    VertexStream m_stream;
    bool m_tried = false;
    std::vector<Vertex> m_vertices;
};

/// The grid once more, for its other place among the passes: drawn there alone if it is under glass.
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
