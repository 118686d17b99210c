#pragma once

#include "Server/Geometry/GkPoint3d.h"

#include <map>
#include <memory>

namespace Vs {
class CursorResource;
namespace Scene {
class Camera;
}
} // namespace Vs

namespace Vu::Commands {

class OrbitCmd;
class OrbitReticle;

/// How the view turns during one drag: one mode for each zone of the reticle.
class OrbitMode
{
public:
    OrbitMode(OrbitCmd* owner, OrbitReticle* reticle, Vs::CursorResource* cursor, bool constrained)
        : m_owner(owner), m_reticle(reticle), m_cursor(cursor), m_constrained(constrained)
    {
    }
    virtual ~OrbitMode() = default;

    /// The drag begins; the reticle would be in its way.
    virtual void begin();
    virtual void end();
    /// Turns by a movement of the pointer: `dx` pixels to the right, `dy` upwards, and `dz` radians about the
    /// middle of the canvas.
    virtual void orbit(Vs::Scene::Camera* camera, double dx, double dy, double dz) = 0;

    Vs::CursorResource* cursor() const { return m_cursor; }
    /// What a constrained orbit turns about.
    void axis(const GkVector3d& axis) { m_axis = axis; }
    void center(const GkPoint3d& center) { m_center = center; }

protected:
    OrbitCmd* m_owner;
    OrbitReticle* m_reticle; ///< Not owned.
    Vs::CursorResource* m_cursor;
    bool m_constrained;
    GkPoint3d m_center;
    GkVector3d m_axis = GkVector3d::kZAxis;
};

/// The modes by EOrbitZone.
std::map<int, std::unique_ptr<OrbitMode>> makeOrbitModes(OrbitCmd* owner, OrbitReticle* reticle,
                                                         bool constrained);

/// The axis that a constrained orbit turns about: of the main axes of the active asset, by its sceneUp and
/// sceneFront, the one that the viewer takes for up. That is the one nearest to the camera's up, unless
/// another one lies exactly upright in the picture, within 60 degrees of the camera's up.
GkVector3d computeUpForConstrainedOrbit(const Vs::Scene::Camera& camera);

} // namespace Vu::Commands
