#pragma once

#include "Server/Geometry/GkVector3d.h"

/// A place in space, in millimetres.
class GkPoint3d
{
public:
    constexpr GkPoint3d() = default;
    constexpr GkPoint3d(double x, double y, double z) : x(x), y(y), z(z) {}

    double x = 0, y = 0, z = 0;

    static const GkPoint3d kOrigin;

    [[nodiscard]] constexpr GkVector3d asVector() const { return {x, y, z}; }
    [[nodiscard]] double distanceTo(const GkPoint3d& p) const { return (*this - p).length(); }
    [[nodiscard]] bool isEqualTo(const GkPoint3d& p, const GkTol& tol = GkContext::gTol) const
    {
        return distanceTo(p) <= tol.equalPoint;
    }
    /// Becomes `p` moved by `v`.
    GkPoint3d& setToSum(const GkPoint3d& p, const GkVector3d& v) { return *this = p + v; }
    GkPoint3d& transformBy(const GkMatrix3d& matrix);
    GkPoint3d& rotateBy(double radians, const GkVector3d& axis, const GkPoint3d& centre);

    constexpr GkPoint3d operator+(const GkVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr GkPoint3d operator-(const GkVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr GkVector3d operator-(const GkPoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
};
