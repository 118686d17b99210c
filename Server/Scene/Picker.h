#pragma once

#include "Server/Scene/Node.h"
#include "Server/Scene/Projection.h"

#include <optional>
#include <vector>

namespace Vs::Scene {

/// A part of a body, by its number in the mesh.
struct PickedPart
{
    Rendra::Graphics::Part part;
    uint32_t index;
    friend bool operator==(const PickedPart&, const PickedPart&) = default;
};

/// A place on a body that was picked.
struct PickedPoint
{
    /// From the node below the one that was searched down to the body's own.
    std::vector<StrongRef<Rendra::Graphics::Node>> path;
    GkMatrix3d localToWorld; ///< From the body's coordinates.
    GkPoint3d localPoint;
    /// Of the surface there, length one, towards the start of the ray; zero on an edge and at a vertex.
    GkVector3d localNormal;
    /// The place on the ray, in multiples of its direction.
    double along = 0;
    /// Empty only for a mesh without information about its faces.
    std::optional<PickedPart> part;
};

/// The nearest visible body that a ray hits, its triangles being two-sided unless a material says otherwise;
/// nothing if it hits none, or if it is not a ray (a zero direction, values that are not numbers). `root` is
/// searched with its own transformation.
[[nodiscard]] std::optional<PickedPoint> pick(const Rendra::Graphics::Node& root, const GkPoint3d& start,
                                              const GkVector3d& direction);

/// Every face of a visible body that a ray hits, once each, at the first hit; nearest first.
[[nodiscard]] std::vector<PickedPoint> pickAll(const Rendra::Graphics::Node& root, const GkPoint3d& start,
                                               const GkVector3d& direction);

/// What to look for at a place of the screen, besides faces.
struct PickWish
{
    bool vertices = false, edges = false;
    /// Only what nothing hides; otherwise everything under the place, however deep.
    bool visibleOnly = true;
    double tolerance = 5; ///< How far from the place edges and vertices may be, in pixels.
    friend bool operator==(const PickWish&, const PickWish&) = default;
};

/// What is at a place of the screen, in pixels of the projection: vertices that are near enough, then such
/// edges, then faces; of each kind, what is nearest to the place and to the viewer first. Edges and vertices
/// of a body hardly larger than the tolerance are left out: nobody can aim at them. A curved edge hardly
/// larger than the tolerance, such as the rim of a small hole, comes before vertices.
[[nodiscard]] std::vector<PickedPoint> pickAt(const Rendra::Graphics::Node& root,
                                              const Projection& projection, double x, double y,
                                              const PickWish& wish);

} // namespace Vs::Scene
