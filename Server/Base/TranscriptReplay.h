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

/// For TranscriptMgr. Progress shows how far it is, and Progress::requestCancel ends it after the line that
/// runs, or inside a Python script.
ReplayResult playTranscript(const std::wstring& path, ETranscriptType type, const ReplayOptions& options);

} // namespace Vs
