#pragma once

#include "Server/Geometry/GkPoint3d.h"

/// An arc of a circle, or a whole one. Angles are radians, counter-clockwise about the normal from the
/// reference direction.
class GkCircArc3d
{
public:
    static constexpr double kFullTurn = 6.283185307179586;

    /// A whole circle that begins at some point of it.
    GkCircArc3d(const GkPoint3d& centre, const GkVector3d& normal, double radius);
    /// `reference` is brought to right angles with the normal.
    GkCircArc3d(const GkPoint3d& centre, const GkVector3d& normal, const GkVector3d& reference, double radius,
                double startAngle, double endAngle);

    const GkPoint3d& center() const { return m_centre; }
    const GkVector3d& normal() const { return m_normal; }
    const GkVector3d& refVec() const { return m_reference; }
    double radius() const { return m_radius; }
    double startAng() const { return m_start; }
    double endAng() const { return m_end; }

    [[nodiscard]] GkPoint3d pointAt(double angle) const;
    GkPoint3d startPoint() const { return pointAt(m_start); }
    GkPoint3d endPoint() const { return pointAt(m_end); }
    double length() const { return m_radius * std::abs(m_end - m_start); }
    bool isClosed() const { return std::abs(std::abs(m_end - m_start) - kFullTurn) <= 1e-12; }

private:
    GkPoint3d m_centre;
    GkVector3d m_normal, m_reference;
    double m_radius, m_start, m_end;
};
