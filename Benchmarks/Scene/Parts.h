#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <memory>
#include <vector>

/// The scene that both sides of the comparison draw: plates, pins and balls in a cube-like grid, as an
/// assembly of many small parts. The same meshes, placements and colours on both sides.
namespace BenchScene {

struct Part
{
    int mesh; ///< Index into `meshes()`.
    GkMatrix3d placement;
    Vs::Colour colour;
};

/// The three unique parts: 12, 96 and 960 triangles.
std::vector<std::shared_ptr<const Vs::BodyMesh>> meshes();

std::vector<Part> parts(int count);

/// Number of frames that take a whole turn about the scene.
constexpr int kFramesPerTurn = 120;
constexpr int kWidth = 1280;
constexpr int kHeight = 720;

} // namespace BenchScene
