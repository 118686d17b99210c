#pragma once

#include "Server/DataModel/Measure/LineDrawing.h"
#include "Server/DataModel/Measure/Private/LineVisibility.h"

#include <vector>

namespace Vs {

/// A polyline of a body, as the viewer sees it: x to the right, y upwards, z towards the viewer.
struct SeenLine
{
    LineVisibility::Owner owner;
    bool smooth;
    std::vector<GkPoint3d> points;
};

/// The stretches of a line that are seen, and with `hidden` also those that aren't. What is tiny for a whole
/// of that size counts as what is beside it.
std::vector<LineDrawing::Line> piecesOf(const SeenLine& line, const LineVisibility& visibility, double size,
                                        bool hidden);

} // namespace Vs
