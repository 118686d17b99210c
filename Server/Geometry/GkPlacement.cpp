#include "Server/Geometry/GkPlacement.h"

#include <algorithm>
#include <cstring>

GkPlacement::GkPlacement(const GkMatrix3d& matrix)
    : m_shift(matrix.entry[0][3], matrix.entry[1][3], matrix.entry[2][3])
{
    const GkMatrix3d shift = GkMatrix3d::translation(m_shift);
    // Bit by bit, since a zero may have a sign.
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): so it is meant.
    if (std::memcmp(shift.entry, matrix.entry, sizeof shift.entry) != 0)
        m_turned = new Shared(matrix);
}

GkMatrix3d GkPlacement::matrix() const
{
    return m_turned ? m_turned->matrix : GkMatrix3d::translation(m_shift);
}

BBox GkPlacement::placed(const BBox& box) const
{
    if (m_turned || box.isEmpty())
        return box.transformed(matrix());
    return {box.low() + m_shift, box.high() + m_shift};
}

bool operator==(const GkPlacement& a, const GkPlacement& b)
{
    if (!a.m_turned && !b.m_turned)
        return a.m_shift.x == b.m_shift.x && a.m_shift.y == b.m_shift.y && a.m_shift.z == b.m_shift.z;
    if (a.m_turned == b.m_turned)
        return true;
    const GkMatrix3d first = a.matrix(), second = b.matrix();
    return std::equal(&first.entry[0][0], &first.entry[0][0] + 16, &second.entry[0][0]);
}
