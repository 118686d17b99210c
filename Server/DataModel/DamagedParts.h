#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vs {

class Asset;

/// Which parts of an asset lack faces because its file was damaged, or have faces that can't be shown. Kept
/// with its settings, so that it is known as long as the model exists.
namespace DamagedParts {

/// How many of its faces are gone or not to be seen, and how many there were.
using Loss = std::pair<size_t, size_t>;

/// By Component::id.
[[nodiscard]] std::unordered_map<std::string, Loss> of(const Asset& asset);
/// The warnings about its file when it was read, as clauses that follow the file's name.
[[nodiscard]] std::vector<std::wstring> warningsOf(const Asset& asset);
/// Notes what the warnings say about a file that was just read.
void note(Asset& asset, const std::vector<std::wstring>& warnings);

} // namespace DamagedParts

} // namespace Vs
