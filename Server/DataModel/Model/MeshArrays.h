#pragma once

#include "Server/Body/BodyMesh.h"

#include <cstdint>
#include <span>

namespace Vs {

/// The arrays of a BodyMesh where they are stored: in the mesh itself, or in a mapped file.
struct MeshArrays
{
    std::span<const float> positions, normals;
    std::span<const uint32_t> triangles;
    std::span<const BodyMesh::Face> faces;
    std::span<const Colour> colours;
    std::span<const float> edgePoints;
    std::span<const uint32_t> edgeStarts;
    std::span<const float> vertexPoints;
    std::span<const Finish> finishes;

    static MeshArrays of(const BodyMesh& mesh);

    /// Whether all indices stay within the arrays, so that code that draws, picks, measures or exports a mesh
    /// need not check: all points have three coordinates and all vertices a normal; triangles refer to
    /// existing vertices; the faces cover all triangles one after another, in existing colours; there is a
    /// finish for each colour, or none; the edges cover all of their points one after another. Coordinates
    /// may have any value.
    [[nodiscard]] bool isSound() const;
};

} // namespace Vs
