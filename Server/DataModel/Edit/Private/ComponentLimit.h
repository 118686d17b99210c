#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Vs {

class Asset;

/// Why there can't be so many copies of components of `source` (Component::id) beside them, if there can't;
/// else empty. A copy beside one in an assembly that occurs several times comes into all of these.
[[nodiscard]] std::wstring whyTooMany(const Asset& source, const std::vector<std::string>& components,
                                      size_t copies);

/// The same for copies at the top of the tree of an asset.
[[nodiscard]] std::wstring whyTooMany(const Asset& source, const std::vector<std::string>& components,
                                      const Asset& target);

} // namespace Vs
