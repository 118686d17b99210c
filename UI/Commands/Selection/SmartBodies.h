#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"

#include <vector>

namespace Vs {
class Asset;
}

namespace Vu::Commands {

/// Of all bodies that show in the views, those that are smart (Vs::Body::smart), each once, where the tree of
/// components has it first.
std::vector<Vs::ObjectPath> smartBodies(Vs::Asset& asset);

} // namespace Vu::Commands
