#include "Server/Scene/RenderParams.h"

#include "Server/Scene/GraphicsOptionGroup.h"

namespace Vs::Scene {

namespace {

/// What every graphics unit, and drawing in software, has.
constexpr int kUsualSamples = 4;

} // namespace

GraphicsOptionGroup* GraphicsOptionGroup::get()
{
    static GraphicsOptionGroup group;
    return &group;
}

void GetMSAASettings(int& level, int& quality)
{
    level = kUsualSamples;
    quality = 0;
}

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
}

void RenderParams::groundPlaneOrientation(const GkVector3d& up)
{
    if (up.isZeroLength())
        return;
    m_groundPlaneOrientation = up.normal();
    ++m_revision;
}

} // namespace Vs::Scene
