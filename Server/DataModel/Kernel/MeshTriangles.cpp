#include "Server/DataModel/Kernel/MeshTriangles.h"

#include <algorithm>
#include <cmath>

namespace Vs::Kernel {

Vector cross(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

float dot(const Vector& a, const Vector& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

float length(const Vector& v)
{
    return std::sqrt(dot(v, v));
}

Triangle MeshTriangles::triangle(size_t i) const
{
    return {mesh.triangles[3 * i], mesh.triangles[3 * i + 1], mesh.triangles[3 * i + 2]};
}

Vector MeshTriangles::from(uint32_t a, uint32_t b) const
{
    const float* p = &mesh.positions[size_t(a) * 3];
    const float* q = &mesh.positions[size_t(b) * 3];
    return {q[0] - p[0], q[1] - p[1], q[2] - p[2]};
}

size_t MeshTriangles::longest(const Triangle& t) const
{
    const float sides[] = {side(t[0], t[1]), side(t[1], t[2]), side(t[2], t[0])};
    return size_t(std::max_element(sides, sides + 3) - sides);
}

} // namespace Vs::Kernel
