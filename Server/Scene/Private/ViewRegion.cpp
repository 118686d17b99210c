#include "Server/Scene/Private/ViewRegion.h"

#include <algorithm>

namespace Vs::Scene {

ViewRegion::ViewRegion(const Projection& projection, double left, double bottom, double right, double top)
{
    const double l = (2 * left / projection.width() - 1) * projection.halfWidth();
    const double r = (2 * right / projection.width() - 1) * projection.halfWidth();
    const double b = (2 * bottom / projection.height() - 1) * projection.halfHeight();
    const double t = (2 * top / projection.height() - 1) * projection.halfHeight();
    // In the camera's coordinates, which look along -z.
    if (projection.perspective())
        m_planes = {{{1, 0, l, 0}, {-1, 0, -r, 0}, {0, 1, b, 0}, {0, -1, -t, 0}, {0, 0, -1, 0}}};
    else
        m_planes = {{{1, 0, 0, -l}, {-1, 0, 0, r}, {0, 1, 0, -b}, {0, -1, 0, t}, {0, 0, 0, 0}}};
    *this = within(projection.view());
}

ViewRegion ViewRegion::within(const GkMatrix3d& toOuter) const
{
    ViewRegion inner;
    const auto& m = toOuter.entry;
    for (size_t i = 0; i < m_planes.size(); ++i) {
        const Plane& p = m_planes[i];
        const auto column = [&](int k) { return p.x * m[0][k] + p.y * m[1][k] + p.z * m[2][k]; };
        inner.m_planes[i] = {column(0), column(1), column(2), column(3) + p.w};
    }
    return inner;
}

bool ViewRegion::contains(const GkPoint3d& p) const
{
    return std::all_of(m_planes.begin(), m_planes.end(),
                       [&](const Plane& plane) { return plane.at(p) >= 0; });
}

int ViewRegion::holds(const BBox& box) const
{
    if (box.isEmpty())
        return -1;
    bool all = true;
    for (const Plane& plane : m_planes) {
        const GkPoint3d& low = box.low();
        const GkPoint3d& high = box.high();
        const GkPoint3d farthest(plane.x > 0 ? high.x : low.x, plane.y > 0 ? high.y : low.y,
                                 plane.z > 0 ? high.z : low.z);
        const GkPoint3d nearest(plane.x > 0 ? low.x : high.x, plane.y > 0 ? low.y : high.y,
                                plane.z > 0 ? low.z : high.z);
        if (plane.at(farthest) < 0)
            return -1;
        all = all && plane.at(nearest) >= 0;
    }
    return all ? 1 : 0;
}

// Clips against each plane in turn (Sutherland and Hodgman, 1974).
bool ViewRegion::meetsTriangle(const GkPoint3d& a, const GkPoint3d& b, const GkPoint3d& c) const
{
    constexpr size_t kMostCorners = 3 + 5;
    std::array<GkPoint3d, kMostCorners> corners{a, b, c}, left;
    size_t count = 3;
    for (const Plane& plane : m_planes) {
        size_t kept = 0;
        for (size_t i = 0; i < count; ++i) {
            const GkPoint3d &from = corners[i], &to = corners[(i + 1) % count];
            const double before = plane.at(from), after = plane.at(to);
            if (before >= 0)
                left[kept++] = from;
            if ((before >= 0) != (after >= 0) && kept < kMostCorners)
                left[kept++] = from + (to - from) * (before / (before - after));
        }
        if (kept == 0)
            return false;
        corners = left;
        count = kept;
    }
    return true;
}

bool ViewRegion::partOfLine(const GkPoint3d& a, const GkPoint3d& b, double& from, double& to) const
{
    from = 0;
    to = 1;
    for (const Plane& plane : m_planes) {
        const double before = plane.at(a), after = plane.at(b);
        if (before < 0 && after < 0)
            return false;
        if (before < 0)
            from = std::max(from, before / (before - after));
        else if (after < 0)
            to = std::min(to, before / (before - after));
    }
    return from <= to;
}

bool ViewRegion::meetsLine(const GkPoint3d& a, const GkPoint3d& b) const
{
    double from = 0, to = 1;
    return partOfLine(a, b, from, to);
}

bool ViewRegion::cutLine(GkPoint3d& a, GkPoint3d& b) const
{
    double from = 0, to = 1;
    if (!partOfLine(a, b, from, to))
        return false;
    const GkVector3d along = b - a;
    b = a + along * to;
    a = a + along * from;
    return true;
}

} // namespace Vs::Scene
