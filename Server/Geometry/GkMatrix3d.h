#pragma once

#include "Server/Geometry/GkPoint3d.h"

/// An affine transformation: `entry[row][column]`, applied to column vectors, translation in the last column.
class GkMatrix3d
{
public:
    /// The identity.
    constexpr GkMatrix3d() = default;

    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    [[nodiscard]] static GkMatrix3d translation(const GkVector3d& v);
    [[nodiscard]] static GkMatrix3d rotation(double radians, const GkVector3d& axis,
                                             const GkPoint3d& centre = {});
    [[nodiscard]] static GkMatrix3d scaling(double factor, const GkPoint3d& centre = {});

    GkMatrix3d operator*(const GkMatrix3d& right) const;
    GkPoint3d operator*(const GkPoint3d& p) const;
    GkVector3d operator*(const GkVector3d& v) const;

    [[nodiscard]] double det() const;
    /// The inverse; the identity if the matrix is singular.
    [[nodiscard]] GkMatrix3d inverse() const;
    [[nodiscard]] bool isEqualTo(const GkMatrix3d& other, const GkTol& tol = GkContext::gTol) const;
};
