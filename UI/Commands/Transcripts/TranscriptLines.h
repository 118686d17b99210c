#pragma once

#include <string>

namespace Vu::Commands {

/// Writes a line of the add-in's own into the running transcript, as it stands. Without a recording nothing
/// happens, so callers need not ask for one.
void insertTranscriptLine(const std::wstring& line);

/// What a person typed as a parameter that cannot hold a blank: without white space at its ends, and with `_`
/// for each blank inside.
std::wstring normalizedDescription(std::wstring text);

} // namespace Vu::Commands
