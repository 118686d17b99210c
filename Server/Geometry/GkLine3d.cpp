#include "Server/Geometry/GkLine3d.h"

GkPoint3d GkLinearEnt3d::closestPointTo(const GkPoint3d& p) const
{
    return m_point + m_direction * (p - m_point).dotProduct(m_direction);
}
