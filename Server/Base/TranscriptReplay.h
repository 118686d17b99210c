#pragma once

#include "Server/Base/TranscriptMgr.h"

namespace Vs {

struct ReplayOptions
{
    TranscriptParameters parameters; ///< Added to those of TranscriptMgr meanwhile.
    bool keepGoing = false;          ///< Go on after a line that failed.
    bool oneLine = false;            ///< Only the line at which the debugger stands.
    bool quiet = false;              ///< The host is not told of failures; the status has them.
    /// Receives what failed, each as `FILE:LINE: message`; at most the first hundred of a file. Null for
    /// nobody.
    Status* status = nullptr;
    /// Called with each line of a text transcript before it runs, after substitution and without comments and
    /// empty lines, and with each statement of a Python one.
    std::function<void(const std::wstring& line)> beforeLine;
    /// Called after each line that ran, with its number and its status, and with the host's work between
    /// lines done. Of Python that isn't run in steps once at the end, with the number 0.
    std::function<void(size_t line, unsigned status)> afterLine;
};

struct [[nodiscard]] ReplayResult
{
    /// Lines that ran, comments and empty lines not counted; of Python, statements.
    size_t lines = 0;
    size_t failures = 0;   ///< Lines that answered another status than 0, and an unreadable file.
    size_t failedLine = 0; ///< The last of them; 0 for none, and for the file as a whole.
    bool cancelled = false;

    bool ok() const { return failures == 0 && !cancelled; }
};

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

/// For TranscriptMgr. Progress shows how far it is, and Progress::requestCancel ends it after the line that
/// runs, or inside a Python script.
ReplayResult playTranscript(const std::wstring& path, ETranscriptType type, const ReplayOptions& options);

} // namespace Vs
