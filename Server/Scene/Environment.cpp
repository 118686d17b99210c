#include "Server/Scene/Environment.h"

#include "Server/Scene/Panorama.h"

#include <algorithm>
#include <cmath>

namespace Vs::Scene {

namespace {

float step(float from, float to, float value)
{
    const float t = std::clamp((value - from) / (to - from), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

Colour mix(const Colour& a, const Colour& b, float t)
{
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t, 1};
}

} // namespace

Colour Environment::seen(const GkVector3d& direction, float blur) const
{
    if (panorama)
        return panorama->mirrored(direction);
    const float height = float(direction.z);
    const Colour above = mix(horizon, zenith, std::pow(std::max(height, 0.0f), skyFall));
    const Colour below = mix(ground, nadir, std::pow(std::max(-height, 0.0f), groundFall));
    return mix(below, above, step(-haze - blur, haze + blur, height));
}

Colour Environment::scattered(const GkVector3d& direction) const
{
    return panorama ? panorama->scattered(direction) : seen(direction);
}

} // namespace Vs::Scene
