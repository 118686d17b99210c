#include "Server/Geometry/GkPlane.h"

#include "Server/Geometry/GkLine3d.h"

GkPlane::GkPlane(const GkPoint3d& point, const GkVector3d& normal)
    : m_point(point), m_normal(normal.isZeroLength() ? GkVector3d(0, 0, 1) : normal.normal())
{
}

bool GkPlane::intersectWith(const GkLinearEnt3d& line, GkPoint3d& where, const GkTol& tol) const
{
    const double slope = line.direction().dotProduct(m_normal);
    if (std::abs(slope) <= tol.equalVector)
        return false;
    where = line.pointOnLine() - line.direction() * (signedDistanceTo(line.pointOnLine()) / slope);
    return true;
}
