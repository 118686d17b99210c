#include "Server/Scene/RenderParams.h"

#include "Server/Scene/GraphicsOptionGroup.h"

namespace Vs::Scene {

RenderParams::RenderParams()
{
    const GraphicsOptionGroup& options = *GraphicsOptionGroup::get();
    m_groundPlane = options.displayGroundPlane();
    m_groundShadow = options.groundShadowEnabled();
    m_groundReflection = options.groundReflectionEnabled();
    m_ambientOcclusion = options.ambientOccludedEnabled();
    m_nprEffect = options.NPREffect();
    m_visualStyle = options.visualStyle();
    m_objectShadowType = options.objectShadowType();
    m_shadowsAreChosen = options.objectShadowIsChosen();
}

void RenderParams::groundPlaneOrientation(const GkVector3d& up)
{
    if (up.isZeroLength())
        return;
    m_groundPlaneOrientation = up.normal();
    ++m_revision;
}

} // namespace Vs::Scene
