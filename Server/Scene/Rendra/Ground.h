#pragma once

#include "Server/Scene/Rendra/DrawList.h"

namespace Rendra {

/// Two perpendicular directions along a ground whose up has unit length: together a right-handed system,
/// aligned with the scene's own axes wherever possible.
void groundAxes(const GkVector3d& up, GkVector3d& right, GkVector3d& forward);

/// The ground below the bodies of a scene. Coordinates are along the three directions, relative to the draw
/// list's origin.
struct Ground
{
    GkVector3d right, forward, up; ///< Of unit length, perpendicular, right-handed.
    double level = 0;              ///< The ground's height along `up`: that of the lowest point of a body.
    double top = 0;                ///< The height above which there is no body.
    double left = 0, width = 0;    ///< The extent of the bodies along `right`.
    double front = 0, depth = 0;   ///< The same along `forward`.

    double height() const { return top - level; }
    /// The diagonal of the box around the bodies.
    double size() const;
    /// The middle of what the bodies cover, on the ground.
    GkVector3d middle() const;
};

/// Finds the ground, and keeps it until a body is added, removed or moved.
class GroundFinder
{
public:
    /// Null if there is no body.
    const Ground* find(const DrawList& list, const GkVector3d& up);

private:
    Ground m_ground;
    GkVector3d m_up;
    uint64_t m_shapes = 0;
    bool m_exists = false;
};

} // namespace Rendra
