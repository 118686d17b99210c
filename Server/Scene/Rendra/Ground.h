#pragma once

#include "Server/Scene/Rendra/DrawList.h"

namespace Rendra {

/// Two directions along a ground whose up has length one, at right angles: with it, a right-handed system,
/// and along the scene's own axes wherever that can be.
void groundAxes(const GkVector3d& up, GkVector3d& right, GkVector3d& forward);

/// Where the ground lies below the bodies of a scene. Coordinates are along the three directions, relative to
/// the draw list's origin.
struct Ground
{
    GkVector3d right, forward, up; ///< Of length one, at right angles, right-handed.
    double level = 0;              ///< Of the ground, along `up`: as deep as the lowest point of a body.
    double top = 0;                ///< Above it no body reaches.
    double left = 0, width = 0;    ///< What the bodies cover, along `right`.
    double front = 0, depth = 0;   ///< The same along `forward`.

    double height() const { return top - level; }
    /// The diagonal of the box around the bodies.
    double size() const;
    /// The middle of what the bodies cover, on the ground.
    GkVector3d middle() const;
};

/// Finds the ground, and keeps it until a body comes, goes or moves.
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
