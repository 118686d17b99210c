#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Vs {

class Asset;

/// Why there can't be that many copies of components of `source` (Component::id) beside them; empty if there
/// can. A copy in an assembly that occurs several times appears in all of its occurrences.
[[nodiscard]] std::wstring whyTooMany(const Asset& source, const std::vector<std::string>& components,
                                      size_t copies);

/// The same for copies at the top of the tree of an asset.
[[nodiscard]] std::wstring whyTooMany(const Asset& source, const std::vector<std::string>& components,
                                      const Asset& target);

} // namespace Vs
