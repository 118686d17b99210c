#include "Server/Geometry/GkCircArc3d.h"

GkCircArc3d::GkCircArc3d(const GkPoint3d& centre, const GkVector3d& normal, double radius)
    : GkCircArc3d(centre, normal, normal.perpVector(), radius, 0, kFullTurn)
{
}

GkCircArc3d::GkCircArc3d(const GkPoint3d& centre, const GkVector3d& normal, const GkVector3d& reference,
                         double radius, double startAngle, double endAngle)
    : m_centre(centre), m_normal(normal.normal()), m_radius(radius), m_start(startAngle), m_end(endAngle)
{
    const GkVector3d inPlane = reference - m_normal * reference.dotProduct(m_normal);
    m_reference = inPlane.isZeroLength() ? m_normal.perpVector() : inPlane.normal();
}

GkPoint3d GkCircArc3d::pointAt(double angle) const
{
    const GkVector3d across = m_normal.crossProduct(m_reference);
    return m_centre + (m_reference * std::cos(angle) + across * std::sin(angle)) * m_radius;
}
