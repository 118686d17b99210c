#include "Server/Dimension/DimensionInfo.h"

#include "Server/Dimension/Private/DimensionDrawing.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/Projection.h"

#include <algorithm>
#include <cmath>

namespace Vs::Dimension {

Viewer Viewer::of(const Scene::Camera& camera, double width, double height, const GkPoint3d& place)
{
    const Scene::Projection projection(camera, width, height);
    const double ahead = (place - camera.position()).dotProduct(camera.direction());
    // What stands behind the viewer isn't seen.
    const double nearest = camera.distance() * 1e-3;
    return {camera.right(), camera.screenUp(), projection.pixelSize(std::max(ahead, nearest))};
}

void DimensionInfo::buildDimensionGraphics(Scene::NodeChange& change, bool reference) const
{
    DimensionDrawing drawing(m_viewer);
    draw(drawing, reference && !m_text.empty() ? L"(" + m_text + L")" : m_text);
    const auto geometry = Scene::NodeChange::createLODGeometryNode(nullptr, true);
    Scene::NodeChange lines(geometry.get());
    lines.colorEffect(m_colour).countsInBounds(false);
    for (DimensionDrawing::Line& line : drawing.takeLines())
        lines.polyline(std::move(line));
    change.add(geometry);
}

void LinearDimensionInfo::draw(DimensionDrawing& drawing, const std::wstring& text) const
{
    const GkVector3d along = m_point2 - m_point1;
    drawing.line({m_point1, m_point2});
    drawing.arrow(m_point1, -along, along.length());
    drawing.arrow(m_point2, along, along.length());
    drawing.text(text, m_point1 + along * 0.5, drawing.beside(along));
}

void AngularDimensionInfo::draw(DimensionDrawing& drawing, const std::wstring& text) const
{
    const GkVector3d normal = m_leg1.crossProduct(m_leg2).normal();
    if (normal.isZeroLength())
        return;
    const double angle = m_leg1.angleTo(m_leg2);
    const auto spoke = [&](double radians) {
        GkVector3d direction = m_leg1.normal();
        return direction.rotateBy(radians, normal) * m_radius;
    };
    constexpr double kStep = 0.05;
    const int steps = std::max(2, int(std::ceil(angle / kStep)));
    DimensionDrawing::Line arc;
    for (int i = 0; i <= steps; ++i)
        arc.push_back(m_apex + spoke(angle * i / steps));
    const double length = angle * m_radius;
    // Along the arc where the arrow's middle is, so that it doesn't stand off.
    drawing.arrow(arc.front(), normal.crossProduct(spoke(0)) * -1, length);
    drawing.arrow(arc.back(), normal.crossProduct(spoke(angle)), length);
    drawing.line(std::move(arc));
    drawing.text(text, m_apex + spoke(angle / 2), spoke(angle / 2));
}

} // namespace Vs::Dimension
