#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// How holders of faces, edges and vertices of bodies find them again when the bodies change: the numbers in
// their paths are valid for one shape only. Main thread.
namespace Vs {

class Asset;

/// A component whose body got another shape.
struct ReshapedBody
{
    std::string component; ///< Component::id.
    uint64_t before;       ///< The revision that its body had.
};

/// Those of the last change that AssetEventSite::assetComponentsChanged reported, or is reporting.
const std::vector<ReshapedBody>& reshapedBodies(const Asset& asset);

/// Whether the asset's current content is only a preview (TransactionNode::isPreview) that will be undone.
bool showsPreview(const Asset& asset);

/// What an object is now that was named when its body had that revision. Nothing if the component is gone, or
/// the part has no successor, or several, in the changes since.
std::optional<ObjectPath> successorOf(const ObjectPath& path, uint64_t revision, const Asset& asset);

} // namespace Vs
