#pragma once

#include "Server/DataModel/Measure/MeasureTypes.h"
#include "Server/DataModel/Selection/ObjectPath.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <cstdint>
#include <string>

namespace Vs {

/// A body of a model's data, or a part of it, placed where it occurs.
struct MeasuredShape
{
    std::string entry; ///< PartTree::Body::entry.
    ObjectPath::Leaf leaf = ObjectPath::Leaf::Body;
    uint32_t index = 0; ///< ObjectPath::index.
    GkMatrix3d placement;
};

/// What a shape is, as far as measuring is concerned.
enum class ShapeKind { Vertex, Line, Circle, Curve, Plane, Cylinder, Cone, Sphere, Face, Body, Component };

/// Why there is no value.
enum class NoAnswer {
    None,       ///< There is one.
    WrongKind,  ///< Shapes of this kind have no such value.
    Degenerate, ///< The shape is smaller than the kernel can resolve.
    Unbounded,  ///< The shape extends to infinity.
    Triangles,  ///< The shape is made only of triangles.
    Missing,    ///< The body has no such part.
    Parallel,   ///< The shapes never meet, so there is no angle between them.
    Open,       ///< The body doesn't enclose a volume.
};

/// The result of measuring shapes.
struct ShapeAnswer
{
    NoAnswer why = NoAnswer::None;
    ShapeKind kind = ShapeKind::Body; ///< Of the shape that `why` is about, or of the first.
    bool second = false;              ///< Whether `why` is about the second shape.
    MeasureResult result;
};

} // namespace Vs
