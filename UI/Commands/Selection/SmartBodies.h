#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"

#include <vector>

namespace Vs {
class Asset;
}

namespace Vu::Commands {

/// The smart bodies (Vs::Body::smart) among all bodies shown in the views, each once, at its first place in
/// the component tree.
std::vector<Vs::ObjectPath> smartBodies(Vs::Asset& asset);

} // namespace Vu::Commands
