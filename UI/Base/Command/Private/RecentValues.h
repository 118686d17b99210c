#pragma once

#include <string>
#include <vector>

namespace Vu {

class CommandInputBase;

/// What the user typed into an input of a command before, as it was typed; kept with the user's options.
namespace RecentValues {

/// The latest first; at most eight.
std::vector<std::wstring> of(const CommandInputBase& input);
/// A text that is there already becomes the latest.
void add(const CommandInputBase& input, const std::wstring& text);

} // namespace RecentValues

} // namespace Vu
