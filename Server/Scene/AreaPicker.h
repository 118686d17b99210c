#pragma once

#include "Server/Scene/Picker.h"

namespace Vs::Scene {

/// A rectangle of the screen, and what is wanted of what it holds.
struct AreaWish
{
    double left = 0, bottom = 0, right = 0, top = 0; ///< In pixels of the projection.
    /// Also what lies in it only in part.
    bool crossing = false;
    /// What is hidden everywhere in the rectangle doesn't count.
    bool visibleOnly = true;
    /// Whole bodies; or those of their parts, by bits `1 << Part`.
    bool bodies = true;
    unsigned parts = 0;
};

/// The bodies and parts in a rectangle, in the order of the nodes. Those of bodies have no part. Only path,
/// transformation and part are told of each.
[[nodiscard]] std::vector<PickedPoint> pickArea(const Rendra::Graphics::Node& root,
                                                const Projection& projection, const AreaWish& wish);

} // namespace Vs::Scene
