#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vs {

class Asset;

/// Which parts of an asset lost faces since the file was damaged that it was read from. Kept with its
/// settings, so that it is known as long as the model is.
namespace DamagedParts {

/// How many of its faces are gone, and how many there were.
using Loss = std::pair<size_t, size_t>;

/// By Component::id.
[[nodiscard]] std::unordered_map<std::string, Loss> of(const Asset& asset);
/// What was to be warned of when its file was read, as clauses that go after the file's name.
[[nodiscard]] std::vector<std::wstring> warningsOf(const Asset& asset);
/// Notes what the warnings of a file say that was just read.
void note(Asset& asset, const std::vector<std::wstring>& warnings);

} // namespace DamagedParts

} // namespace Vs
