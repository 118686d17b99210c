#pragma once

#include "Server/Geometry/GkPoint3d.h"

/// Anything with a point and a direction in space; here an unbounded line.
class GkLinearEnt3d
{
public:
    virtual ~GkLinearEnt3d() = default;

    const GkPoint3d& pointOnLine() const { return m_point; }
    /// Length one; zero for a line through two equal points.
    const GkVector3d& direction() const { return m_direction; }

    /// The point on the line nearest to `p`.
    [[nodiscard]] GkPoint3d closestPointTo(const GkPoint3d& p) const;
    [[nodiscard]] double distanceTo(const GkPoint3d& p) const { return closestPointTo(p).distanceTo(p); }
    [[nodiscard]] bool isOn(const GkPoint3d& p, const GkTol& tol = GkContext::gTol) const
    {
        return distanceTo(p) <= tol.equalPoint;
    }
    [[nodiscard]] bool isParallelTo(const GkLinearEnt3d& other, const GkTol& tol = GkContext::gTol) const
    {
        return m_direction.isParallelTo(other.m_direction, tol);
    }

protected:
    GkLinearEnt3d(const GkPoint3d& point, const GkVector3d& direction)
        : m_point(point), m_direction(direction.normal())
    {
    }

private:
    GkPoint3d m_point;
    GkVector3d m_direction;
};

/// An unbounded straight line.
class GkLine3d : public GkLinearEnt3d
{
public:
    GkLine3d(const GkPoint3d& point, const GkVector3d& direction) : GkLinearEnt3d(point, direction) {}
    GkLine3d(const GkPoint3d& from, const GkPoint3d& to) : GkLinearEnt3d(from, to - from) {}
};
