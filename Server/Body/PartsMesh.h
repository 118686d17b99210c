#pragma once

#include "Server/Body/BodyMesh.h"

#include <memory>

namespace Vs {

/// The mesh in which the parts of a body have the numbers of ObjectPath::index: its own, or of a body of
/// triangles the divided one (dividedMesh), which is made at the first question and kept as long as the mesh
/// is there. From any thread.
std::shared_ptr<const BodyMesh> partsMesh(const std::shared_ptr<const BodyMesh>& mesh);

/// The same for who must not wait: that of a large body is made in a thread of its own, and null is returned
/// meanwhile.
std::shared_ptr<const BodyMesh> partsMeshIfMade(const std::shared_ptr<const BodyMesh>& mesh);

} // namespace Vs
