#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// How those who hold faces, edges and vertices of bodies find them again when the bodies change: the numbers
// in their paths hold for one shape alone. Main thread.
namespace Vs {

class Asset;

/// A component whose body got another shape.
struct ReshapedBody
{
    std::string component; ///< Component::id.
    uint64_t before;       ///< The revision of the body that it had.
};

/// Those of the last change that AssetEventSite::assetComponentsChanged told of, or is telling of.
const std::vector<ReshapedBody>& reshapedBodies(const Asset& asset);

/// Whether what the asset shows is open only to be looked at (TransactionNode::isPreview), and goes again.
bool showsPreview(const Asset& asset);

/// What an object is now that was named when its body had that revision. Nothing if the component is gone,
/// or the part has no successor, or several, in the changes since.
std::optional<ObjectPath> successorOf(const ObjectPath& path, uint64_t revision, const Asset& asset);

} // namespace Vs
