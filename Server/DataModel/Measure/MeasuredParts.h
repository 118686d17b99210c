#pragma once

#include "Server/Base/StrongRef.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <functional>
#include <optional>
#include <vector>

namespace Vs {

/// A body with all its occurrences of one size, or a part of one.
struct PartToMeasure
{
    StrongRef<Body> body;
    double scale = 1; ///< How many times larger lengths are where it occurs.
    size_t count = 1; ///< How often it occurs so.
    ObjectPath::Leaf leaf = ObjectPath::Leaf::Body;
    uint32_t index = 0; ///< Of the face, edge or vertex (ObjectPath).
};

/// What measuring gave, in mm and its powers. Each is there only if all the parts have it.
struct MeasuredParts
{
    /// The form of the faces or edges; Several where they differ.
    enum class Form { None, Plane, Cylinder, Cone, Sphere, FreeFace, Line, Circle, Curve, Several };

    Form form = Form::None;
    std::optional<double> volume, area, length; ///< Of all together.
    std::optional<double> diameter;             ///< One that all have.
    /// Along its own axes, of one body that is nothing but a box, a cylinder or a sphere (Body::smart).
    std::optional<GkVector3d> size;
    bool isExact = true; ///< Else of the triangles that are shown: the exact data are too large to be read.
};

/// Measures things together, one after the other; a body that was measured before costs nothing
/// (Body::properties). `goOn` is asked before each, and gives up by returning false. Nothing then, or if the
/// exact model can't be read or the kernel fails. Any thread.
[[nodiscard]] std::optional<MeasuredParts> measureParts(const std::vector<PartToMeasure>& parts,
                                                        const std::function<bool()>& goOn);

} // namespace Vs
