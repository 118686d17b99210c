#pragma once

#include "Server/Body/BodyMesh.h"

#include <memory>

namespace Rendra {

/// A mesh with fewer triangles that looks like `mesh` from so far away that its longest side is a few times
/// `cells` pixels long: all vertices in one cell of a grid become one. Sharp edges stay sharp, faces keep
/// their colours, and a closed mesh stays closed. It has no edge lines. Null if less than a third of the
/// triangles would be saved. `cells` is from 1 to 1024. May be called from any thread.
[[nodiscard]] std::shared_ptr<const Vs::BodyMesh> coarseMesh(const Vs::BodyMesh& mesh, int cells);

} // namespace Rendra
