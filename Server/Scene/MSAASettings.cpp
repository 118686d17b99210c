#include "Server/Scene/MSAASettings.h"

#include "Server/Scene/OffscreenRenderer.h"

#include <algorithm>
#include <atomic>

namespace Vs::Scene {

namespace {

/// What the driver reported last; 0 until one was asked. Written by whichever thread draws.
std::atomic<int> offeredSamples = 0;

} // namespace

void GetMSAASettings(int& level, int& quality)
{
    if (offeredSamples == 0) {
        Status ignored; // whoever requests a picture gets the error
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

} // namespace Vs::Scene
