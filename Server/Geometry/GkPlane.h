#pragma once

#include "Server/Geometry/GkPoint3d.h"

class GkLinearEnt3d;

/// An unbounded plane.
class GkPlane
{
public:
    /// The plane of X and Y.
    GkPlane() = default;
    /// A zero normal stands for Z.
    GkPlane(const GkPoint3d& point, const GkVector3d& normal);

    const GkPoint3d& pointOnPlane() const { return m_point; }
    /// Length one.
    const GkVector3d& normal() const { return m_normal; }

    /// Positive on the side that the normal points to.
    [[nodiscard]] double signedDistanceTo(const GkPoint3d& p) const
    {
        return (p - m_point).dotProduct(m_normal);
    }
    [[nodiscard]] GkPoint3d closestPointTo(const GkPoint3d& p) const
    {
        return p - m_normal * signedDistanceTo(p);
    }
    [[nodiscard]] bool isOn(const GkPoint3d& p, const GkTol& tol = GkContext::gTol) const
    {
        return std::abs(signedDistanceTo(p)) <= tol.equalPoint;
    }
    /// Where the line intersects the plane. False, with `where` unchanged, if the line is parallel to it.
    bool intersectWith(const GkLinearEnt3d& line, GkPoint3d& where, const GkTol& tol = GkContext::gTol) const;

private:
    GkPoint3d m_point;
    GkVector3d m_normal{0, 0, 1};
};
