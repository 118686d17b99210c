#pragma once

#include "Server/Body/BodyMesh.h"

#include <memory>

namespace Rendra {

/// A mesh with fewer triangles that looks like `mesh` from so far away that its longest side is a few times
/// `cells` pixels long: all vertices in one cell of a grid become one. Sharp edges stay sharp, faces keep
/// their colours, and a closed mesh stays closed. It has no edge lines. Null if less than a third of the
/// triangles would be saved. `cells` is from 1 to 1024. May be called from any thread.
[[nodiscard]] std::shared_ptr<const Vs::BodyMesh> coarseMesh(const Vs::BodyMesh& mesh, int cells);

/// The same, but vertices become one only where the surface is smooth and of one colour in the whole cell,
/// which moves it by less than a tenth of the cell. Everything else stays where it is, to the last bit.
[[nodiscard]] std::shared_ptr<const Vs::BodyMesh> smoothedMesh(const Vs::BodyMesh& mesh, int cells);

} // namespace Rendra
