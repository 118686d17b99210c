#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// An asset's answers about the paths of its objects. Main thread.
namespace Vs {

class Asset;
class Component;
class Status;

/// The object that a user's text names. Nothing, with an error that names the step, if one is unknown or
/// ambiguous.
std::optional<ObjectPath> findPath(const Asset& asset, std::wstring_view text, Status& status);

/// The text that `findPath` reads back as this path; empty if the component isn't in the asset.
std::wstring pathText(const ObjectPath& path, const Asset& asset);

/// The texts of the paths of a component's children, in their order. `path` is the component's own, empty for
/// the root. Asking for all at once takes linear time.
std::vector<std::wstring> childPaths(const Component& component, const std::wstring& path);

/// The component, if the object still exists; otherwise null with an error. The number of vertices and solids
/// is known only to the exact shape, so code that uses it checks that; `findPath` checks it for solids.
const Component* resolvePath(const ObjectPath& path, const Asset& asset, Status& status);

/// The component's own coordinates in the asset's; nothing if it isn't in the asset.
std::optional<GkMatrix3d> placementOf(const ObjectPath& path, const Asset& asset);

} // namespace Vs
