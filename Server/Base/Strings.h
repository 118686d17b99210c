#pragma once

#include <string>
#include <string_view>

namespace Vs::Strings {

/// UTF-8 to wide text. A byte that is not valid UTF-8 becomes U+FFFD; never fails.
[[nodiscard]] std::wstring widen(std::string_view narrow);

/// Wide text to UTF-8, for people and for files that hold text. A value that is not a code point becomes
/// U+FFFD; never fails.
[[nodiscard]] std::string narrow(std::wstring_view wide);

/// Bytes to wide text and back without loss: file names, and lines that may contain them. They are mostly
/// UTF-8, but nothing forces them to be. A byte 0x80 to 0xFF that is none becomes U+DC80 to U+DCFF, which no
/// text contains, as in Python; `toBytes` turns it back into that byte and otherwise works like `narrow`.
[[nodiscard]] std::wstring fromBytes(std::string_view bytes);
[[nodiscard]] std::string toBytes(std::wstring_view wide);

/// The text as one parameter of a text line: in double quotes, with `"` and `\` escaped by a backslash, if it
/// is empty, contains blanks, quotes or backslashes, or starts with the flag sign; unchanged otherwise.
/// TextCommandMgr reads the result back as exactly `text`.
[[nodiscard]] std::wstring quote(std::wstring_view text);

/// The text made safe for a terminal: control characters other than tab and line feed, with which a file, a
/// name or a script could control the terminal, become U+FFFD, and carriage returns before a line feed are
/// removed. Everything that this program prints passes through here.
std::string forTerminal(std::string_view text);

/// How many letters must be inserted, removed or changed to turn one text into the other, ignoring case
/// (Levenshtein distance).
[[nodiscard]] size_t editDistance(std::wstring_view a, std::wstring_view b);

} // namespace Vs::Strings
