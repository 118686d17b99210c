#pragma once

#include "Server/DataModel/Measure/LineDrawing.h"
#include "Server/Geometry/GkVector3d.h"

namespace Vs {

class Asset;

/// Computes from the meshes of all visible components which lines are seen along a direction, in a parallel
/// projection: edges, outlines, and with `hidden` also those that something hides. Where a mesh would leave
/// the exact shape by more than an eight-thousandth of the whole, a finer one is made. Takes long for large
/// models, while progress is shown; it can be cancelled. Throws std::runtime_error with the reason; so too if
/// nothing is visible. Main thread.
LineDrawing modelLines(const Asset& asset, const GkVector3d& direction, const GkVector3d& up, bool hidden);

} // namespace Vs
