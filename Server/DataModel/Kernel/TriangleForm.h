#pragma once

#include "Server/DataModel/Kernel/RoundForm.h"

#include <TopoDS_Face.hxx>
#include <gp_Circ.hxx>
#include <gp_Pln.hxx>

#include <optional>
#include <vector>

namespace Vs::Kernel {

// What triangles tell of the surface that they were made of: their corners lie on it to the single precision
// that files of triangles have.

/// The plane of a face without a surface, its normal to the outside; nothing if it isn't flat.
std::optional<gp_Pln> planeOfTriangles(const TopoDS_Face& face);

/// The cylinder of a face without a surface; nothing for other forms.
std::optional<RoundForm> cylinderOfTriangles(const TopoDS_Face& face);

/// The circle around which the corners of a polyline lie; nothing for one of few corners or another form.
std::optional<gp_Circ> circleOfPolyline(const std::vector<gp_Pnt>& corners);

} // namespace Vs::Kernel
