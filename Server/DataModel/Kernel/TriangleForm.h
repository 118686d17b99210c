#pragma once

#include "Server/DataModel/Kernel/RoundForm.h"

#include <TopoDS_Face.hxx>
#include <gp_Circ.hxx>
#include <gp_Pln.hxx>

#include <optional>
#include <vector>

namespace Vs::Kernel {

// What triangles reveal of the surface that they approximate: their corners lie on it to the single precision
// of triangle files.

/// The plane of a face without a surface, its normal pointing outwards; nothing if it isn't flat.
std::optional<gp_Pln> planeOfTriangles(const TopoDS_Face& face);

/// The cylinder of a face without a surface; nothing for other forms.
std::optional<RoundForm> cylinderOfTriangles(const TopoDS_Face& face);

/// The circle that the corners of a polyline lie on; nothing if there are few corners or the form is another.
std::optional<gp_Circ> circleOfPolyline(const std::vector<gp_Pnt>& corners);

} // namespace Vs::Kernel
