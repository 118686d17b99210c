#pragma once

#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Rendra/Layer.h"
#include "Server/Scene/Rendra/Program.h"

#include <cstdint>

namespace Rendra {

struct Frame;

/// The shadows that bodies cast on each other in the light of the environment's first lamp: a shadow map. It
/// doesn't depend on the viewpoint, so it is kept until a body is added, removed or moved, or the lamp
/// changes.
class ObjectShadow
{
public:
    /// What is cached for one scene.
    struct Kept
    {
        Layer depths;
        Layer glass; ///< The light that passes through what is transparent, and how far away that is.
        bool hasGlass = false;
        GkMatrix3d place; ///< From coordinates relative to the draw list's origin to the shadow map, -1 to 1.
        double texel = 0; ///< Width of its pixels, in millimetres.
        uint64_t shapes = 0; ///< Its revision; 0 for none.
        GkVector3d toLamp, origin;
        int type = 0;
    };

    /// Updates the shadows of the frame's scene. False if there are none: they aren't requested, would be too
    /// expensive for a frame that must be quick, or the driver can't draw them. Draws into its own layers.
    bool find(const Frame& frame);
    /// Whether the shadows of the frame are so soft that they may be found at fewer places and averaged.
    static bool areSoft(const Frame& frame);
    /// Sets the uniforms of `kLookUp` for the current program; `find` must have returned true. Uses texture
    /// units 2, 5 and 6.
    static void set(const Program& program, const Frame& frame);
    /// Only assigns these units.
    static void setUnits(const Program& program);

    void release();

    /// Pieces for fragment shaders (see Program::make), of which the first is part of all. What is lit by the
    /// second is `lampReachesSoftly(place, normal, turn, asked)`, without glass, and less exactly.
    static const char* const kPlaces;
    static const char* const kSoftLookUp;
    /// `lampReaches(place, normal, found)` returns how much of each colour of the lamp's light reaches a
    /// place with a normal, both in the camera's coordinates, from 0 to 1; `toLamp` is the direction of the
    /// lamp, and `shadowed` is true. With FOUND, it is known already how much of it gets past opaque bodies.
    static const char* const kLookUp;
    /// The same for programs that draw without shadows: all light reaches everything.
    static const char* const kNoLookUp;

private:
    void drawGlass(const Frame& frame, Kept& kept);

    Program m_depthOnly, m_glass;
    bool m_tried = false;
};

} // namespace Rendra
