#pragma once

#include "Server/Base/StrongRef.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <functional>
#include <optional>
#include <vector>

namespace Vs {

/// A body, or a part of one, with all its occurrences at one scale.
struct PartToMeasure
{
    StrongRef<Body> body;
    double scale = 1; ///< The scale at which it occurs.
    size_t count = 1; ///< How often it occurs at that scale.
    ObjectPath::Leaf leaf = ObjectPath::Leaf::Body;
    uint32_t index = 0; ///< Of the face, edge or vertex (ObjectPath).
};

/// Results of measuring, in mm and its powers. Each is set only if all the parts have it.
struct MeasuredParts
{
    /// The form of the faces or edges; Several where they differ.
    enum class Form { None, Plane, Cylinder, Cone, Sphere, FreeFace, Line, Circle, Curve, Several };

    Form form = Form::None;
    std::optional<double> volume, area, length; ///< Of all together.
    std::optional<double> diameter;             ///< One that all have in common.
    /// Along its own axes, for a single body that is a plain box, cylinder or sphere (Body::smart).
    std::optional<GkVector3d> size;
    bool isExact = true; ///< False if measured on the displayed mesh, the exact data being too large.
};

/// Measures things together, one after the other; a body measured before costs nothing (Body::properties).
/// `goOn` is called before each, and cancels by returning false. Returns nothing then, or if the exact model
/// can't be read or the kernel fails. Any thread.
[[nodiscard]] std::optional<MeasuredParts> measureParts(const std::vector<PartToMeasure>& parts,
                                                        const std::function<bool()>& goOn);

} // namespace Vs
