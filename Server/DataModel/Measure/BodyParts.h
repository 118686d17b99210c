#pragma once

#include "Server/DataModel/Measure/PartTypes.h"
#include "Server/DataModel/Selection/ObjectPath.h"

namespace Vs {

class Body;

/// The parts of a body and how they meet. Throws std::runtime_error if the exact model can't be read or the
/// kernel fails.
[[nodiscard]] BodyParts bodyParts(Body& body);
/// Area or length and centre of all faces or all edges, to a relative error of 1e-6. Throws like `bodyParts`.
[[nodiscard]] std::vector<PartExtent> extentsOfParts(const Body& body, ObjectPath::Leaf leaf);

} // namespace Vs
