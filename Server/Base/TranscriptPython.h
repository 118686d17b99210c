#pragma once

#include <string>
#include <string_view>

/// Lines of text as statements of a Python transcript.
namespace Vs::TranscriptPython {

/// The statement equivalent to the line: a call of the command's function in the module of its area, a
/// comment for a comment, and `quillet.run` for what cannot be expressed so.
std::wstring statement(std::wstring_view line);
/// The module whose function the statement calls; empty if it needs none but `quillet`.
std::wstring moduleOf(std::wstring_view statement);

} // namespace Vs::TranscriptPython
