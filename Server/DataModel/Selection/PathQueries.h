#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What an asset answers about the paths of its objects. Main thread.
namespace Vs {

class Asset;
class Component;
class Status;

/// The object that a person's text names. Nothing, with an error that tells the step, if one is unknown or
/// ambiguous.
std::optional<ObjectPath> findPath(const Asset& asset, std::wstring_view text, Status& status);

/// The text that `findPath` reads back as this path; empty if the component isn't in the asset.
std::wstring pathText(const ObjectPath& path, const Asset& asset);

/// The texts of the paths of a component's children, in their order. `path` is the component's own, empty for
/// the root. Asking for all at once takes linear time.
std::vector<std::wstring> childPaths(const Component& component, const std::wstring& path);

/// The component, if the object is still there; else null with an error. Whether there are as many vertices
/// or solids is known only to the exact shape and told where that is used; `findPath` asks it for solids.
const Component* resolvePath(const ObjectPath& path, const Asset& asset, Status& status);

/// Where the component's own coordinates lie in the asset's; nothing if it isn't in the asset.
std::optional<GkMatrix3d> placementOf(const ObjectPath& path, const Asset& asset);

} // namespace Vs
