#include "Server/Geometry/BBox.h"

#include <algorithm>

void BBox::add(const GkPoint3d& p)
{
    if (m_empty) {
        *this = BBox(p, p);
        return;
    }
    m_low = {std::min(m_low.x, p.x), std::min(m_low.y, p.y), std::min(m_low.z, p.z)};
    m_high = {std::max(m_high.x, p.x), std::max(m_high.y, p.y), std::max(m_high.z, p.z)};
}

void BBox::add(const BBox& other)
{
    if (other.m_empty)
        return;
    add(other.m_low);
    add(other.m_high);
}

BBox BBox::transformed(const GkMatrix3d& matrix) const
{
    BBox box;
    if (m_empty)
        return box;
    for (int corner = 0; corner < 8; ++corner)
        box.add(matrix * GkPoint3d(corner & 1 ? m_high.x : m_low.x, corner & 2 ? m_high.y : m_low.y,
                                   corner & 4 ? m_high.z : m_low.z));
    return box;
}
