#pragma once

#include <string>
#include <vector>

/// The titles of commands in all languages that the program knows, for searching commands by a title that
/// isn't shown. Main thread only.
namespace Vu::CommandTitles {

/// The title of a command in the user's language, for its Info: the text of `key` in the domain, or `english`
/// where there is none. Its key and default are remembered.
[[nodiscard]] std::wstring localized(const std::wstring& command, const wchar_t* domain, const char* key,
                                     const char* english);

/// One title of each command that was asked for above.
struct Title
{
    std::wstring command;
    std::wstring text;
};
/// In all languages, English among them; what reads the same in several is there several times. Opens the
/// catalogues of the languages, which takes some milliseconds.
[[nodiscard]] std::vector<Title> inAllLanguages();

} // namespace Vu::CommandTitles
