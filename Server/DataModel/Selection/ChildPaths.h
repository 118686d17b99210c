#pragma once

#include <string>
#include <vector>

namespace Vs {

class Component;

/// The texts of the paths (ObjectPath) of a component's children, in their order. `path` is the component's
/// own, empty for the root. Asking for all at once takes linear time.
std::vector<std::wstring> childPaths(const Component& component, const std::wstring& path);

} // namespace Vs
