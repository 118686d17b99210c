#pragma once

#include "Server/Body/BodyMesh.h"

#include <memory>

namespace SceneTest {

/// A box about the origin with six flat faces, in this order: -x, +x, -y, +y, -z, +z, and its twelve edges.
Vs::BodyMesh box(double x, double y, double z);
std::shared_ptr<const Vs::BodyMesh> boxMesh(double x, double y, double z);

} // namespace SceneTest
