#pragma once

#include <array>
#include <cstdint>

namespace Vs {

/// What the material of a face says beyond its colour, as in physically based rendering. Kept in files as it
/// is in memory.
struct Finish
{
    /// How the opacity of the colour is meant. Masked ones are opaque here: a mask needs a picture.
    enum class Alpha : uint8_t { Opaque, Mask, Blend };

    float metallic = 0;              ///< From 0, a plastic or paint, to 1, a metal.
    float roughness = 1;             ///< From 0, a mirror, to 1.
    std::array<float, 3> emissive{}; ///< The light that it gives off: linear, each from 0 to 1.
    float alphaCutoff = 0.5f;        ///< Of Alpha::Mask.
    uint8_t isKnown = 0;             ///< 0 if there is no material; then nothing else counts.
    uint8_t isDoubleSided = 0;       ///< 0 if it is seen only from outside.
    Alpha alpha = Alpha::Opaque;
    uint8_t reserved = 0;

    friend bool operator==(const Finish&, const Finish&) = default;

    bool isOneSided() const { return isKnown != 0 && isDoubleSided == 0; }
    /// Whether all values are within their ranges.
    [[nodiscard]] bool isSound() const
    {
        const auto isShare = [](float value) { return value >= 0 && value <= 1; };
        return isShare(metallic) && isShare(roughness) && isShare(emissive[0]) && isShare(emissive[1]) &&
               isShare(emissive[2]) && isShare(alphaCutoff) && alpha <= Alpha::Blend;
    }
};

static_assert(sizeof(Finish) == 28, "it is kept in files without gaps");

} // namespace Vs
