#pragma once

#include "Server/Body/BodyMesh.h"

#include <memory>

/// Meshes of simple bodies, made by hand, for tests of drawing.
namespace Shapes {

using MeshPtr = std::shared_ptr<const Vs::BodyMesh>;

/// A box with its low corner at the origin, six faces. Faces in the order -x, +x, -y, +y, -z, +z;
/// `topColour`, if given, is the colour of +z. Edges: the rims of -z and +z, each as one, then the four
/// upright ones from the origin counter-clockwise; vertices in the same order, first those of -z.
MeshPtr box(double x, double y, double z, const Vs::Colour* topColour = nullptr);

/// A ball around the origin; no edges.
MeshPtr ball(double radius, int rings = 32);

/// A cylinder along z around the origin, standing on z = 0.
MeshPtr cylinder(double radius, double height, int sides = 48);

/// A ring along z around the origin; no edges.
MeshPtr torus(double radius, double thickness, int sides = 64);

} // namespace Shapes
