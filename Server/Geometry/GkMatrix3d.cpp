#include "Server/Geometry/GkMatrix3d.h"

#include <algorithm>
#include <cmath>

GkMatrix3d GkMatrix3d::translation(const GkVector3d& v)
{
    GkMatrix3d m;
    m.entry[0][3] = v.x;
    m.entry[1][3] = v.y;
    m.entry[2][3] = v.z;
    return m;
}

// Rodrigues' rotation formula.
GkMatrix3d GkMatrix3d::rotation(double radians, const GkVector3d& axis, const GkPoint3d& centre)
{
    const GkVector3d n = axis.normal();
    const double c = std::cos(radians), s = std::sin(radians), t = 1 - c;
    GkMatrix3d m;
    const double rows[3][3] = {{t * n.x * n.x + c, t * n.x * n.y - s * n.z, t * n.x * n.z + s * n.y},
                               {t * n.x * n.y + s * n.z, t * n.y * n.y + c, t * n.y * n.z - s * n.x},
                               {t * n.x * n.z - s * n.y, t * n.y * n.z + s * n.x, t * n.z * n.z + c}};
    for (int i = 0; i < 3; ++i)
        std::copy_n(rows[i], 3, m.entry[i]);
    const GkVector3d shift = centre.asVector() - m * centre.asVector();
    return translation(shift) * m;
}

GkMatrix3d GkMatrix3d::scaling(double factor, const GkPoint3d& centre)
{
    GkMatrix3d m;
    for (int i = 0; i < 3; ++i)
        m.entry[i][i] = factor;
    return translation(centre.asVector() * (1 - factor)) * m;
}

GkMatrix3d GkMatrix3d::operator*(const GkMatrix3d& right) const
{
    GkMatrix3d m;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            m.entry[i][j] = 0;
            for (int k = 0; k < 4; ++k)
                m.entry[i][j] += entry[i][k] * right.entry[k][j];
        }
    return m;
}

GkPoint3d GkMatrix3d::operator*(const GkPoint3d& p) const
{
    const GkVector3d v = *this * p.asVector();
    return {v.x + entry[0][3], v.y + entry[1][3], v.z + entry[2][3]};
}

GkVector3d GkMatrix3d::operator*(const GkVector3d& v) const
{
    return {entry[0][0] * v.x + entry[0][1] * v.y + entry[0][2] * v.z,
            entry[1][0] * v.x + entry[1][1] * v.y + entry[1][2] * v.z,
            entry[2][0] * v.x + entry[2][1] * v.y + entry[2][2] * v.z};
}

double GkMatrix3d::det() const
{
    const GkVector3d a(entry[0][0], entry[0][1], entry[0][2]);
    const GkVector3d b(entry[1][0], entry[1][1], entry[1][2]);
    const GkVector3d c(entry[2][0], entry[2][1], entry[2][2]);
    return a.dotProduct(b.crossProduct(c));
}

GkMatrix3d GkMatrix3d::inverse() const
{
    const double d = det();
    GkMatrix3d m;
    if (d == 0)
        return m;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            const int r0 = (j + 1) % 3, r1 = (j + 2) % 3, c0 = (i + 1) % 3, c1 = (i + 2) % 3;
            m.entry[i][j] = (entry[r0][c0] * entry[r1][c1] - entry[r0][c1] * entry[r1][c0]) / d;
        }
    const GkVector3d shift = m * GkVector3d(entry[0][3], entry[1][3], entry[2][3]);
    m.entry[0][3] = -shift.x;
    m.entry[1][3] = -shift.y;
    m.entry[2][3] = -shift.z;
    return m;
}

bool GkMatrix3d::isEqualTo(const GkMatrix3d& other, const GkTol& tol) const
{
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            if (std::abs(entry[i][j] - other.entry[i][j]) > (j == 3 ? tol.equalPoint : tol.equalVector))
                return false;
    return true;
}
