#pragma once

#include "Server/Body/Finish.h"
#include "Server/Geometry/BBox.h"

#include <cstdint>
#include <vector>

namespace Vs {

/// Linear RGB with opacity, each from 0 to 1.
struct Colour
{
    float r = 0.72f, g = 0.73f, b = 0.75f, a = 1.0f;
    friend bool operator==(const Colour&, const Colour&) = default;
};

/// The triangles and edge lines of one body, in the body's own coordinates and in millimetres. Made once for
/// each unique shape and shared by all of its occurrences; never changed after that.
struct BodyMesh
{
    /// A run of triangles that come from one face of the body; of none if the face couldn't be meshed.
    struct Face
    {
        uint32_t firstTriangle;
        uint32_t triangleCount;
        int32_t colour; ///< Index into `colours`, or -1 for the body's colour.
    };

    std::vector<float> positions;    ///< x, y, z of each vertex.
    std::vector<float> normals;      ///< x, y, z of each vertex, length one.
    std::vector<uint32_t> triangles; ///< Three vertex indices each, counter-clockwise seen from outside.
    std::vector<Face> faces;
    std::vector<Colour> colours;   ///< The colours that single faces have of their own.
    std::vector<float> edgePoints; ///< x, y, z of each point of the edges' polylines.
    /// First point of each edge's polyline; one more entry ends the last. An edge that couldn't be drawn has
    /// no points.
    std::vector<uint32_t> edgeStarts;
    /// x, y, z of each vertex of the exact shape, in its order. A body of triangles alone has none.
    std::vector<float> vertexPoints;
    /// Empty if no face has a material; otherwise the finish of faces in the body's colour, followed by that
    /// of faces in each of `colours`.
    std::vector<Finish> finishes;
    BBox bounds;

    Finish finishOf(const Face& face) const
    {
        const auto at = static_cast<size_t>(face.colour + 1);
        return at < finishes.size() ? finishes[at] : Finish();
    }
};

} // namespace Vs
