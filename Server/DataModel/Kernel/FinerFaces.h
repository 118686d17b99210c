#pragma once

#include "Server/Body/BodyMesh.h"

#include <Message_ProgressRange.hxx>
#include <TopoDS_Shape.hxx>

#include <memory>

namespace Vs::Kernel {

struct LooseBody;

/// Splits the triangles of a meshed shape where they are farther than `deviation` (mm) from its surfaces and
/// curves, each side in halves up to `rounds` times. Faces still meet without gaps, and keep their triangles
/// where these are good enough. Takes time in proportion to the triangles, unlike the kernel's mesher, whose
/// time grows with their square on surfaces that are bent in both directions. What has no surface stays as it
/// is. Throws Standard_Failure.
void splitTriangles(const TopoDS_Shape& shape, double deviation, int rounds,
                    const Message_ProgressRange& progress = {});

/// The mesh of a body with triangles so split, from those of the usual refinement. Null if it was cancelled.
std::shared_ptr<const BodyMesh> finerMesh(const LooseBody& body, double deviation, int rounds,
                                          const Message_ProgressRange& progress = {});

} // namespace Vs::Kernel
