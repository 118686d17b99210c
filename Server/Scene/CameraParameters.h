#pragma once

#include "Server/Geometry/GkPoint3d.h"

namespace Vs::Scene {

class Camera;

/// The state of a camera, for transitions from one view to another.
struct CameraParameters
{
    CameraParameters() = default;
    explicit CameraParameters(const Camera& camera);

    GkPoint3d position;
    GkPoint3d target;
    GkVector3d up;
    double clipNear = 0;
    double clipFar = 0;
    double extentsWidth = 0;
    double extentsHeight = 0;
    int projection = 0;

    void applyTo(Camera& camera) const;

    /// The state at the fraction `part` of the way, from 0 (this one) to 1 (the other). The view turns about
    /// the target at a constant rate in a single rotation, sizes change geometrically, and both ends are
    /// exactly the given states. The projection is the other one's from the first step on.
    [[nodiscard]] CameraParameters towards(const CameraParameters& other, double part) const;

    [[nodiscard]] bool isEqualTo(const CameraParameters& other) const;
};

} // namespace Vs::Scene
