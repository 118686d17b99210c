#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <memory>
#include <string>
#include <vector>

/// The scene that both sides of the comparison draw: plates, pins and balls in a cube-like grid, as an
/// assembly of many small parts, or what a file holds. The same meshes, placements and colours on both sides.
namespace BenchScene {

struct Part
{
    int mesh; ///< Index into `meshes()`.
    GkMatrix3d placement;
    Vs::Colour colour;
};

struct Scene
{
    std::vector<std::shared_ptr<const Vs::BodyMesh>> meshes;
    std::vector<Part> parts;
};

/// For a number, so many occurrences of a hundred parts of 12 to 1200 triangles; for "million", one ball of a
/// million triangles; for "box", a box; for a model file, as a worker writes it, what that shows. Else
/// nothing.
Scene sceneOf(const std::string& name);

/// Has a worker read a STEP file. Returns the path of the model file that it wrote, or an empty one.
std::string modelOf(const std::string& stepFile);

/// Runs `measure` on each scene that a program's arguments name; on the two large ones if they name none.
/// Returns the program's exit code: 0 if all succeeded.
int measureAll(int argc, char** argv, bool (*measure)(const std::string& scene));

/// Number of frames that take a whole turn about the scene.
constexpr int kFramesPerTurn = 120;
constexpr int kWidth = 1280;
constexpr int kHeight = 720;

} // namespace BenchScene
