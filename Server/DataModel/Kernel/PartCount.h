#pragma once

#include <TopAbs_ShapeEnum.hxx>
#include <TopoDS_Shape.hxx>

#include <cstddef>

namespace Vs::Kernel {

/// How many parts of a kind a shape has. One that occurs several times, as an edge does in each of its faces,
/// counts each time.
[[nodiscard]] size_t countOf(const TopoDS_Shape& shape, TopAbs_ShapeEnum kind);

} // namespace Vs::Kernel
