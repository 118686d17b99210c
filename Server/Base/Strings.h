#pragma once

#include <string>
#include <string_view>

namespace Vs::Strings {

/// UTF-8 to wide text. A byte that is no valid UTF-8 becomes U+FFFD; never fails.
[[nodiscard]] std::wstring widen(std::string_view narrow);

/// Wide text to UTF-8, for people and for files that hold text. A value that is no code point becomes U+FFFD;
/// never fails.
[[nodiscard]] std::string narrow(std::wstring_view wide);

/// Bytes to wide text and back without a loss: names of files, and lines that may hold such. They mostly are
/// UTF-8, but nothing forces them to be. A byte 0x80 to 0xFF that is none becomes U+DC80 to U+DCFF, which no
/// text has, as in Python; `toBytes` makes that byte of it again, and does all else as `narrow`.
[[nodiscard]] std::wstring fromBytes(std::string_view bytes);
[[nodiscard]] std::string toBytes(std::wstring_view wide);

/// The text as one parameter of a text line: in double quotes, with `"` and `\` escaped by a backslash, if it
/// is empty or holds blanks, quotes, backslashes or starts with the flag sign; as it stands otherwise.
/// TextCommandMgr reads the result back as exactly `text`.
[[nodiscard]] std::wstring quote(std::wstring_view text);

/// The text as a terminal may get it: control characters other than tab and line feed, by which what comes
/// from a file, a name or a script could steer the terminal, become U+FFFD, and carriage returns before a
/// line feed go. Whatever this program prints passes through here.
std::string forTerminal(std::string_view text);

/// How many letters must be typed, taken out or changed to make one text of the other, whatever their case
/// (Levenshtein's distance).
[[nodiscard]] size_t editDistance(std::wstring_view a, std::wstring_view b);

} // namespace Vs::Strings
