#pragma once

#include "Server/Base/Status.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <optional>

namespace Vs {

class Body;

/// What is integrated over a body; each takes its time.
enum class BodyMeasure { Volume, Area };

/// How a volume spreads around its centre: the integral of the products of two coordinates from there, in
/// mm⁵. What turns about an axis needs their sums; see `inertiaOf`.
struct Spread
{
    double xx = 0, yy = 0, zz = 0, xy = 0, xz = 0, yz = 0;
};

/// What a body measures, in its own coordinates.
struct BodyProperties
{
    double volume = 0;   ///< mm³, summed over the solids alone: a free face beside a solid adds nothing.
    double area = 0;     ///< mm², of the solids' faces; of all faces if there is no solid.
    double freeArea = 0; ///< mm², of the faces that belong to no solid of a body that has some.
    GkPoint3d volumeCentre, areaCentre; ///< Centres of mass of the two; the origin where there is none.
    Spread spread;                      ///< Of the volume.
    bool closed = false; ///< Whether it encloses a space, so that its volume is one. Of several solids: all.
    int solids = 0;
    int faces = 0;
};

/// Measures the body to a relative error of 1e-6. Computed at the first call and kept with the body; as one
/// body stands for all of its occurrences, a part that occurs a thousand times is measured once. Nothing,
/// with an error in the status, if the body has no exact geometry (a mesh read from STL is measured by its
/// triangles) or the kernel fails on it. Safe to call from any thread.
[[nodiscard]] std::optional<BodyProperties> bodyProperties(const Body& body, Status& status);

/// How many times larger lengths are at a place than in a body's own coordinates. Files of meshes and scenes
/// place parts at a scale, which is the same in all directions.
[[nodiscard]] double scaleOf(const GkMatrix3d& placement);

/// The moments of inertia about axes through the centre, for a density of 1, with the products of inertia
/// below zero as the tensor has them.
[[nodiscard]] Spread inertiaOf(const Spread& spread);

/// What a body measures at a place, in the coordinates that it is placed in.
[[nodiscard]] BodyProperties placed(BodyProperties properties, const GkMatrix3d& placement);

} // namespace Vs
