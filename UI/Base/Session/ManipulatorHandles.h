#pragma once

#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Node.h"
#include "Server/Scene/Projection.h"

#include <memory>
#include <optional>
#include <vector>

namespace Vu {

/// What a part of a manipulator does when it is dragged.
struct ManipulatorHandle
{
    enum class Kind {
        Along, ///< Moves along the axis.
        Plane, ///< Moves in the plane at right angles to the axis.
        Turn,  ///< Turns about the axis.
    };

    Kind kind = Kind::Along;
    int axis = 0; ///< 0 for x, 1 for y, 2 for z.

    GkVector3d direction() const;
    friend bool operator==(const ManipulatorHandle&, const ManipulatorHandle&) = default;
};

/// How a handle looks, in a frame where the arrows have length 1, and where it can be grabbed.
[[nodiscard]] std::shared_ptr<const Vs::BodyMesh> meshOf(const ManipulatorHandle& handle);
[[nodiscard]] Vs::Colour colourOf(const ManipulatorHandle& handle, bool pointed);

/// How far a place of the screen is from the handle, in pixels; nothing if the handle can't be dragged in
/// this view: an axis that points at the viewer, a plane seen edge-on. `frame` leads to world coordinates.
[[nodiscard]] std::optional<double> distanceTo(const ManipulatorHandle& handle, const GkMatrix3d& frame,
                                               const Vs::Scene::Projection& projection, double x, double y);

/// Where a drag is, in the handle's own measure: millimetres along the axis, a point of the plane, or an
/// angle in radians from -pi to pi as `x`. Nothing where the ray through the place misses. The frame's axes
/// have length one.
[[nodiscard]] std::optional<GkVector3d> placeOn(const ManipulatorHandle& handle, const GkMatrix3d& frame,
                                                const Vs::Scene::Projection& projection, double x, double y);

} // namespace Vu
