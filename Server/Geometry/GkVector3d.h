#pragma once

#include <cmath>

/// Tolerances of the geometry library: lengths in millimetres, directions by the sine of an angle.
struct GkTol
{
    double equalPoint = 1e-6;
    double equalVector = 1e-9;
};

namespace GkContext {
inline const GkTol gTol{};
} // namespace GkContext

class GkMatrix3d;

/// A direction with a length, in millimetres.
class GkVector3d
{
public:
    constexpr GkVector3d() = default;
    constexpr GkVector3d(double x, double y, double z) : x(x), y(y), z(z) {}

    double x = 0, y = 0, z = 0;

    static const GkVector3d kXAxis, kYAxis, kZAxis;

    [[nodiscard]] constexpr double dotProduct(const GkVector3d& v) const
    {
        return x * v.x + y * v.y + z * v.z;
    }
    [[nodiscard]] constexpr GkVector3d crossProduct(const GkVector3d& v) const
    {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    [[nodiscard]] double length() const { return std::sqrt(lengthSqrd()); }
    constexpr double lengthSqrd() const { return dotProduct(*this); }
    [[nodiscard]] bool isZeroLength(const GkTol& tol = GkContext::gTol) const
    {
        return length() <= tol.equalVector;
    }

    /// The vector of length one; a zero vector stays zero.
    [[nodiscard]] GkVector3d normal() const;
    GkVector3d& normalize() { return *this = normal(); }
    /// Some vector of unit length perpendicular to this one.
    [[nodiscard]] GkVector3d perpVector() const;
    /// Parallel or opposite, by the sine of the angle between them.
    [[nodiscard]] bool isParallelTo(const GkVector3d& v, const GkTol& tol = GkContext::gTol) const;
    [[nodiscard]] bool isEqualTo(const GkVector3d& v, const GkTol& tol = GkContext::gTol) const;
    /// Angle in radians, from 0 to pi.
    [[nodiscard]] double angleTo(const GkVector3d& v) const;
    GkVector3d& rotateBy(double radians, const GkVector3d& axis);
    GkVector3d& transformBy(const GkMatrix3d& matrix);

    constexpr GkVector3d operator+(const GkVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr GkVector3d operator-(const GkVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr GkVector3d operator-() const { return {-x, -y, -z}; }
    constexpr GkVector3d operator*(double s) const { return {x * s, y * s, z * s}; }
    constexpr GkVector3d operator/(double s) const { return {x / s, y / s, z / s}; }
};

constexpr GkVector3d operator*(double s, const GkVector3d& v)
{
    return v * s;
}
