#pragma once

#include "Server/Body/BodyMesh.h"

/// The colours of what tools draw into the scene. They contrast with bodies of any common colour.
namespace Vu::Adorner {

/// Of what the pointer is over.
inline Vs::Colour colorHighlighted()
{
    return {0.85f, 0.12f, 0.0f, 1};
}

/// Of a preview: what doesn't exist yet, or is only measured.
inline constexpr Vs::Colour previewColor{0.0f, 0.07f, 0.45f, 1};

} // namespace Vu::Adorner
