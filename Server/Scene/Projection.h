#pragma once

#include "Server/Geometry/BBox.h"

namespace Vs::Scene {

class Camera;

/// A camera's mapping for a canvas of a given size: from world coordinates to pixels and back. Screen x runs
/// to the right and y upwards from the lower left corner, in pixels; z is the distance from the camera's
/// position along its direction, in millimetres.
class Projection
{
public:
    /// Near and far are adapted to `bounds`; with an empty box they are the camera's own.
    Projection(const Camera& camera, double width, double height, const BBox& bounds = {});

    [[nodiscard]] GkPoint3d worldToScreen(const GkPoint3d& world) const
    {
        return cameraToScreen(m_view * world);
    }
    [[nodiscard]] GkPoint3d cameraToScreen(const GkPoint3d& camera) const;
    [[nodiscard]] GkPoint3d screenToWorld(const GkPoint3d& screen) const;
    /// The direction, of unit length, in which the ray through a place of the screen runs, and where it
    /// starts: in a perspective the position, otherwise a point in the plane of the position.
    [[nodiscard]] GkVector3d rayDirection(double x, double y) const;
    [[nodiscard]] GkPoint3d rayStart(double x, double y) const;

    bool perspective() const { return m_perspective; }
    double width() const { return m_width; }
    double height() const { return m_height; }
    double clipNear() const { return m_near; }
    double clipFar() const { return m_far; }
    /// Half the size of the view: in a parallel projection in millimetres, otherwise as tangents of angles.
    double halfWidth() const { return m_halfWidth; }
    double halfHeight() const { return m_halfHeight; }
    /// World to camera coordinates, as Camera::viewMatrix.
    const GkMatrix3d& view() const { return m_view; }
    /// How many millimetres one pixel covers at a distance from the position.
    [[nodiscard]] double pixelSize(double distance) const;
    /// What the same camera sees of a mirrored scene: triangles change their orientation on the screen.
    /// `bounds` is that of the scene without the reflection.
    [[nodiscard]] Projection mirrored(const GkMatrix3d& reflection, const BBox& bounds) const;
    /// Camera to clip coordinates, row by row, for the part of the view from (x0, y0) to (x1, y1), each from
    /// 0 to 1.
    void clipMatrix(double (&rows)[4][4], double x0 = 0, double y0 = 0, double x1 = 1, double y1 = 1) const;

private:
    void setRange(const BBox& bounds);

    GkMatrix3d m_view, m_inverseView;
    double m_width, m_height;
    double m_halfWidth, m_halfHeight;
    double m_near, m_far;
    double m_targetDistance; ///< Of the camera's target from its position.
    bool m_perspective;
};

} // namespace Vs::Scene
