#pragma once

#include "Server/Scene/Picker.h"

namespace Vs::Scene {

/// A rectangle of the screen, and which of its content is requested.
struct AreaWish
{
    double left = 0, bottom = 0, right = 0, top = 0; ///< In pixels of the projection.
    /// Also what is only partly inside.
    bool crossing = false;
    /// Leaves out what is hidden everywhere in the rectangle.
    bool visibleOnly = true;
    /// Whole bodies; or their parts of these kinds, by bits `1 << Part`.
    bool bodies = true;
    unsigned parts = 0;
};

/// The bodies and parts in a rectangle, in the order of the nodes. Bodies have no part. Only path,
/// transformation and part of each are set.
[[nodiscard]] std::vector<PickedPoint> pickArea(const Rendra::Graphics::Node& root,
                                                const Projection& projection, const AreaWish& wish);

} // namespace Vs::Scene
