#pragma once

#include <string>

namespace Vs {

/// Something that a running recording takes down. Every line of a transcript, whoever it comes from, is
/// written by a trigger. Main thread only.
class TranscriptTrigger
{
public:
    TranscriptTrigger() = default;
    TranscriptTrigger(const TranscriptTrigger&) = delete;
    TranscriptTrigger& operator=(const TranscriptTrigger&) = delete;
    virtual ~TranscriptTrigger() = default;

    /// The line of a text transcript; none is written if it is empty.
    virtual std::wstring onCreateTranscriptEntry() = 0;
    /// The same for a Python transcript; the default puts the text entry into Python's words.
    virtual void onCreatePythonTranscriptEntry(std::wstring& entry);

    /// Hands the entry to the recording, if one runs and takes entries now.
    void writeTranscriptEntry();
};

/// Writes a line that is known already.
void writeTranscriptLine(const std::wstring& line);

} // namespace Vs
