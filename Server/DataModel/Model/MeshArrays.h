#pragma once

#include "Server/Body/BodyMesh.h"

#include <cstdint>
#include <span>

namespace Vs {

/// The numbers of a BodyMesh where they lie: in the mesh itself, or in a file that is mapped.
struct MeshArrays
{
    std::span<const float> positions, normals;
    std::span<const uint32_t> triangles;
    std::span<const BodyMesh::Face> faces;
    std::span<const Colour> colours;
    std::span<const float> edgePoints;
    std::span<const uint32_t> edgeStarts;
    std::span<const float> vertexPoints;

    static MeshArrays of(const BodyMesh& mesh);

    /// Whether no number leads out of the arrays, so that whatever draws, picks, measures or exports a mesh
    /// need not look: all points have three coordinates and all vertices a normal; triangles are of vertices
    /// that there are; the faces follow one another through all triangles, in colours that there are; the
    /// edges follow one another through all of their points. Coordinates may be any numbers.
    [[nodiscard]] bool isSound() const;
};

} // namespace Vs
