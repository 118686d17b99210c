#pragma once

#include "Server/Geometry/GkPoint3d.h"

#include <cstdint>
#include <vector>

namespace Vs {

/// What a face, an edge or a vertex is, in the body's own coordinates.
struct PartFacts
{
    enum class Form { Plane, Cylinder, Cone, Sphere, Torus, Freeform, Line, Circle, Curve, Vertex };

    Form form = Form::Freeform;
    /// The outward normal of a plane, or the normal of a circle's plane; the axis of another round face; the
    /// direction of a line. Zero where there is none.
    GkVector3d direction;
    GkPoint3d place;   ///< A vertex; the centre of a round part, or a point on its axis.
    double radius = 0; ///< Of round parts, for a torus that of its tube; otherwise 0, as for a cone.
    /// Whether a cylinder, a cone or a sphere is concave, as a hole is.
    bool concave = false;
    /// The edges that bound a face, or the vertices that bound an edge (ObjectPath::index).
    std::vector<uint32_t> bounds;
};

/// The parts of a body in the order of their numbers. Edges that nobody sees, such as seams, don't count.
struct BodyParts
{
    /// The revision of their shape; the numbers of a later shape may differ (successorOf).
    uint64_t revision = 0;
    std::vector<PartFacts> faces, edges, vertices;
};

/// How large a part is, and where.
struct PartExtent
{
    double size = 0;  ///< The area of a face or the length of an edge. NaN where it can't be measured.
    GkPoint3d centre; ///< As MeasureMgr defines the position.
};

} // namespace Vs
