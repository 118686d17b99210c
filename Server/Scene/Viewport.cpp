#include "Server/Scene/Viewport.h"

namespace Vs::Scene {

StrongRef<Viewport> Viewport::make(Segment* segment)
{
    return StrongRef<Viewport>(new Viewport(segment));
}

void Viewport::placement(double left, double bottom, double width, double height)
{
    m_left = left;
    m_bottom = bottom;
    m_width = width;
    m_height = height;
}

} // namespace Vs::Scene
