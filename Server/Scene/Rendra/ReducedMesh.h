#pragma once

#include "Server/Body/BodyMesh.h"

#include <memory>

namespace Rendra {

/// A mesh with fewer triangles whose surface and whose faces' borders are about `deviation` from the given
/// one at most. Its vertices are some of the mesh's own, with their normals; faces keep their colours, and a
/// closed mesh stays closed. It has no edge lines. Null if less than a third of the triangles would be saved.
/// May be called from any thread.
[[nodiscard]] std::shared_ptr<const Vs::BodyMesh> reducedMesh(const Vs::BodyMesh& mesh, double deviation);

} // namespace Rendra
