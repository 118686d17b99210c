#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Vs {

/// What `${NAME}` stands for in a transcript, by NAME; UTF-8.
using TranscriptParameters = std::map<std::string, std::string>;

/// The line with each `${NAME}` replaced by its value, and each `${NAME:-TEXT}` by its value or, if there is
/// none, by TEXT. The value keeps its blanks and quotes: where it needs quotes to stay inside its word, it
/// gets them. Anything that doesn't look like that (NAME of letters, digits, `_`) stays as it is, and `$${`
/// stands for `${`. Throws Vs::Exception for a name that has neither a value nor such a text.
[[nodiscard]] std::wstring substituteParameters(std::wstring_view line,
                                                const TranscriptParameters& parameters);
/// The line as a recording must write it, so that substituteParameters restores it.
[[nodiscard]] std::wstring escapeParameters(std::wstring_view line);

/// A parameter that a line asks for.
struct NamedParameter
{
    std::string name;
    std::wstring otherwise;  ///< What holds without a value, where the line says so.
    bool isRequired = false; ///< It doesn't.
};
/// In their order, each as often as the line has it.
[[nodiscard]] std::vector<NamedParameter> parametersIn(std::wstring_view line);

/// Reads `NAME=VALUE` into the parameters. Returns false if it isn't that.
[[nodiscard]] bool readParameter(std::string_view text, TranscriptParameters& parameters);

} // namespace Vs
