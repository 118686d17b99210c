#pragma once

#include <string>

namespace Vu::Commands {

/// Writes a line of the add-in's own into the running transcript, as it stands. Without a recording nothing
/// happens, so callers need not ask for one.
void insertTranscriptLine(const std::wstring& line);

/// Keeps what a check finds now as its reference, beside the transcript that is recorded: who writes the
/// check down sees a model that is right. Why it can't is a warning. Without a recording nothing happens.
void keepReference(const std::wstring& checkLine);

/// What a person typed as one parameter of a line: without white space at its ends, and with `_` for each
/// blank inside; in quotes if it still would not be one word, since it holds a quote, say. Empty if it is.
std::wstring normalizedDescription(std::wstring text);

} // namespace Vu::Commands
