#pragma once

#include "Server/Scene/Projection.h"

#include <array>

namespace Vs::Scene {

/// The space seen in a rectangle of the screen: bounded by four planes and, in a perspective, in front of the
/// viewer.
class ViewRegion
{
public:
    /// In world coordinates; the rectangle in pixels.
    ViewRegion(const Projection& projection, double left, double bottom, double right, double top);
    /// The same region in the coordinates from which the matrix maps.
    ViewRegion within(const GkMatrix3d& toOuter) const;

    bool contains(const GkPoint3d& p) const;
    /// For a box: 1 if all of it is inside, -1 if none is, 0 if a quick test can't tell.
    int holds(const BBox& box) const;
    /// Whether a part of the triangle or of the line between the points is within.
    bool meetsTriangle(const GkPoint3d& a, const GkPoint3d& b, const GkPoint3d& c) const;
    bool meetsLine(const GkPoint3d& a, const GkPoint3d& b) const;
    /// Clips the line between the points to the part that is within. False if none is.
    bool cutLine(GkPoint3d& a, GkPoint3d& b) const;

private:
    /// Within where the sum isn't negative.
    struct Plane
    {
        double x, y, z, w;
        double at(const GkPoint3d& p) const { return x * p.x + y * p.y + z * p.z + w; }
    };
    ViewRegion() = default;
    bool partOfLine(const GkPoint3d& a, const GkPoint3d& b, double& from, double& to) const;

    std::array<Plane, 5> m_planes{};
};

} // namespace Vs::Scene
