#pragma once

#include "Server/Geometry/GkPoint2d.h"

#include <vector>

namespace Vs {

/// What is seen of a model from one direction, as lines.
struct LineDrawing
{
    struct Line
    {
        bool hidden = false; ///< By something nearer.
        bool smooth = false; ///< Faces meet there without an edge.
        std::vector<GkPoint2d> points;
    };
    /// In millimetres of the model: x to the right, y upwards, the model's origin at (0, 0).
    std::vector<Line> lines;
    /// How many bodies are not drawn, since their shapes can't be meshed.
    size_t leftOut = 0;
};

} // namespace Vs
