#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Vs {
class TextCommand;
}

/// Helps a person to type a line of text. Main thread only.
namespace Vs::TextCompletion {

/// What could stand in place of the word that ends at `cursor`: whole `area.name` texts (before the dot the
/// area alone), flags that the command's help names, what its first parameter can be, or files. Except for
/// files, the case of what is typed doesn't matter. Sorted; areas for transcripts come last.
std::vector<std::wstring> complete(std::wstring_view line, size_t cursor);
/// Registers what the first parameter of a command, `area.name`, can be; `names` is called at each
/// completion.
void firstParameter(const std::wstring& command, std::function<std::vector<std::wstring>()> names);
/// Where that word begins, for whoever replaces it.
size_t wordStart(std::wstring_view line, size_t cursor);
/// What a command's help says about its parameters, as in "<asset name> [<document path>]"; empty if nothing.
std::wstring placeholders(const TextCommand& command);

/// The flags that a help text names, with their slashes, as in "[/on][/off]".
std::set<std::wstring> flagsOf(const std::wstring& help);

} // namespace Vs::TextCompletion
