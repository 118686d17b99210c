#include "Server/Scene/RenderParams.h"

#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/OffscreenRenderer.h"

#include <algorithm>
#include <atomic>

namespace Vs::Scene {

namespace {

/// What the driver said last; 0 as long as none was asked. Written by whichever thread draws.
std::atomic<int> offeredSamples = 0;

} // namespace

GraphicsOptionGroup* GraphicsOptionGroup::get()
{
    static GraphicsOptionGroup group;
    return &group;
}

void GetMSAASettings(int& level, int& quality)
{
    if (offeredSamples == 0) {
        Status ignored; // who asks for a picture is told
        if (!OffscreenRenderer::get()->prepare(ignored))
            OfferMSAA(1);
    }
    level = offeredSamples;
    quality = 0;
}

void OfferMSAA(int samples)
{
    offeredSamples = std::max(1, samples);
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
