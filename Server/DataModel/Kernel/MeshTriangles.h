#pragma once

#include "Server/Body/BodyMesh.h"

#include <array>
#include <cstdint>

namespace Vs::Kernel {

using Triangle = std::array<uint32_t, 3>; ///< Its corners in BodyMesh::positions.
using Vector = std::array<float, 3>;

Vector cross(const Vector& a, const Vector& b);
float dot(const Vector& a, const Vector& b);
float length(const Vector& v);

/// A mesh whose triangles are examined. It must outlive this.
class MeshTriangles
{
public:
    explicit MeshTriangles(BodyMesh& mesh) : mesh(mesh) {}

    size_t count() const { return mesh.triangles.size() / 3; }
    Triangle triangle(size_t i) const;
    Vector from(uint32_t a, uint32_t b) const;
    float side(uint32_t a, uint32_t b) const { return length(from(a, b)); }
    /// Twice the area, along the normal.
    Vector area(uint32_t a, uint32_t b, uint32_t c) const { return cross(from(a, b), from(a, c)); }
    /// The side that starts at this corner is the longest.
    size_t longest(const Triangle& t) const;

    BodyMesh& mesh;
};

} // namespace Vs::Kernel
