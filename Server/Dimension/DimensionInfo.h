#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkPoint3d.h"

#include <string>

namespace Vs::Scene {
class Camera;
class NodeChange;
} // namespace Vs::Scene

namespace Vs::Dimension {

class DimensionDrawing;

/// How a dimension is looked at, which makes its arrows and its lettering legible at every zoom.
struct Viewer
{
    GkVector3d right{1, 0, 0}, up{0, 1, 0}; ///< Of the screen, of length one.
    double pixel = 1;                       ///< How many millimetres a pixel covers at the dimension.

    /// For a camera of a canvas of that size, in logical pixels, and a dimension at a place.
    static Viewer of(const Scene::Camera& camera, double width, double height, const GkPoint3d& place);
};

/// A dimension as a drawing shows it: a line or an arc with arrows at its ends and the value beside it. It
/// doesn't follow the camera: whoever shows it builds it anew as the camera moves.
class DimensionInfo
{
public:
    virtual ~DimensionInfo() = default;

    void color(const Colour& colour) { m_colour = colour; }
    /// What stands beside the line, in the letters of Scene::StrokeFont; empty for nothing.
    void text(std::wstring text) { m_text = std::move(text); }
    void viewer(const Viewer& viewer) { m_viewer = viewer; }

    /// Adds the dimension to the group that `change` is of. It doesn't count in the bounds of the scene. A
    /// `reference` dimension, which follows from others, has its text in brackets.
    void buildDimensionGraphics(Scene::NodeChange& change, bool reference) const;

private:
    /// Draws line and arrows, and puts the text.
    virtual void draw(DimensionDrawing& drawing, const std::wstring& text) const = 0;

    Colour m_colour{1, 1, 1, 1};
    std::wstring m_text;
    Viewer m_viewer;
};

/// The distance of two places.
class LinearDimensionInfo : public DimensionInfo
{
public:
    LinearDimensionInfo(const GkPoint3d& point1, const GkPoint3d& point2) : m_point1(point1), m_point2(point2)
    {
    }

private:
    void draw(DimensionDrawing& drawing, const std::wstring& text) const override;

    GkPoint3d m_point1, m_point2;
};

/// The angle of two legs that meet, as an arc.
class AngularDimensionInfo : public DimensionInfo
{
public:
    /// Each leg has an end and a start; the arc runs about the start of the first, and through `onArc` or as
    /// far out. Legs that point the same or the opposite way have no arc, and nothing is drawn.
    AngularDimensionInfo(const GkPoint3d& end1, const GkPoint3d& start1, const GkPoint3d& start2,
                         const GkPoint3d& end2, const GkPoint3d& onArc)
        : m_apex(start1), m_leg1(end1 - start1), m_leg2(end2 - start2), m_radius(start1.distanceTo(onArc))
    {
    }

private:
    void draw(DimensionDrawing& drawing, const std::wstring& text) const override;

    GkPoint3d m_apex;
    GkVector3d m_leg1, m_leg2;
    double m_radius;
};

} // namespace Vs::Dimension
