#pragma once

#include "Server/Base/TranscriptMgr.h"

#include <string>

namespace Vs {

/// The first line of a Python transcript, which distinguishes it from other scripts.
constexpr const char* kPythonTranscriptHead = "# Transcript";
/// The beginning of a recorded text transcript's first line; the layout's number follows it.
constexpr const char* kTextTranscriptHead = "# quillet-transcript ";
constexpr int kTextTranscriptLayout = 1;

/// Whether the file is one that was recorded, or written by hand as one would be: its first line that isn't
/// empty or a comment begins with the name of a command. False for what can't be read.
[[nodiscard]] bool looksLikeTextTranscript(const std::wstring& path);

/// Whether the file is a transcript: all but those Python files that don't begin with that line.
[[nodiscard]] bool isTranscript(const std::wstring& path);

/// Whether recording over the file would lose something: it is neither empty nor a transcript of that type.
/// The first line of a text transcript that isn't a comment is a command of this program. Anything but a
/// regular file counts as empty.
[[nodiscard]] bool holdsNoTranscript(const std::wstring& path, ETranscriptType type);

} // namespace Vs
