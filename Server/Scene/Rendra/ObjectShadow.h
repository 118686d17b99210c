#pragma once

#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Rendra/Layer.h"
#include "Server/Scene/Rendra/Program.h"

#include <cstdint>

namespace Rendra {

struct Frame;

/// The shadows that bodies throw on each other in the light of the environment's first lamp: a picture of how
/// far the light reaches. It does not depend on where it is seen from, and so is kept as long as no body
/// comes, goes or moves and the lamp stays.
class ObjectShadow
{
public:
    /// What is kept of one scene.
    struct Kept
    {
        Layer depths;
        Layer glass; ///< How much light comes through what is transparent, and how far that is.
        bool hasGlass = false;
        GkMatrix3d place;    ///< From coordinates relative to the draw list's origin to the picture, -1 to 1.
        double texel = 0;    ///< Width of its pixels, in millimetres.
        uint64_t shapes = 0; ///< Of which revision; 0 for none.
        GkVector3d toLamp, origin;
        int type = 0;
    };

    /// Brings the shadows of the frame's scene up to date. False if there are none: they are not asked for,
    /// would cost too much for a frame that is to be quick, or the driver cannot draw them. Draws into layers
    /// of its own.
    bool find(const Frame& frame);
    /// Sets the uniforms of `kLookUp` for a program that is current; `find` must have returned true. Uses
    /// texture units 2, 5 and 6.
    static void set(const Program& program, const Frame& frame);
    /// Names these units alone. Samplers of different kinds may not share one, whether they are used or not.
    static void setUnits(const Program& program);

    void release();

    /// A piece for fragment programs (see Program::make): `lampReaches(place, normal)` tells how much of the
    /// lamp's light reaches a place with a normal, both in the camera's coordinates, from 0 to 1; `toLamp` is
    /// the direction of the lamp, and `shadowed` is true.
    static const char* const kLookUp;
    /// The same for programs that draw without shadows: all light reaches everything.
    static const char* const kNoLookUp;

private:
    void drawGlass(const Frame& frame, Kept& kept);

    Program m_depthOnly, m_glass;
    bool m_tried = false;
};

} // namespace Rendra
