#pragma once

#include <string>

namespace Vu::Commands {

/// Writes a line of the add-in's own into the running transcript, verbatim. Does nothing without a recording,
/// so callers need not check for one.
void insertTranscriptLine(const std::wstring& line);

/// Stores the present result of a check as its reference, beside the transcript being recorded: whoever
/// writes down the check is looking at a correct model. Failure to do so is a warning. Does nothing without a
/// recording.
void keepReference(const std::wstring& checkLine);

/// Turns the user's input into one parameter of a line: trimmed, with `_` for each inner blank; in quotes if
/// it still isn't a single word, for instance because it contains a quote. Empty if it is empty.
std::wstring normalizedDescription(std::wstring text);

} // namespace Vu::Commands
