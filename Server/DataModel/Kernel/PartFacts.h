#pragma once

#include "Server/DataModel/Measure/PartTypes.h"
#include "Server/DataModel/Selection/ObjectPath.h"

namespace Vs::Kernel {

class SubShapes;

/// Of all parts of a body; see Vs::bodyParts. Throws Standard_Failure.
BodyParts partsOf(const SubShapes& shapes);
/// See Vs::extentsOfParts. A part that can't be measured doesn't keep the others from being measured.
std::vector<PartExtent> extentsOf(const SubShapes& shapes, ObjectPath::Leaf leaf);

} // namespace Vs::Kernel
