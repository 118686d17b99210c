#include "Server/Scene/Viewport.h"

#include "Server/Base/Require.h"

namespace Vs::Scene {

StrongRef<Viewport> Viewport::make(Segment* segment)
{
    return StrongRef<Viewport>(new Viewport(segment));
}

void Viewport::placement(double left, double bottom, double width, double height)
{
    require(left >= 0 && bottom >= 0 && width >= 0 && height >= 0, "a viewport is a part of its canvas");
    m_left = left;
    m_bottom = bottom;
    m_width = width;
    m_height = height;
}

} // namespace Vs::Scene
