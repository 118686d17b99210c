#pragma once

#include "UI/Commands/Transcripts/NamedTask.h"

#include <string>

namespace Vu::Commands {

// Replays that wait for the end of the current event. Their errors are reported where transcripts report
// them; nobody looks at their status.

class ReplayTranscriptTask : public NamedTask<ReplayTranscriptTask>
{
public:
    static constexpr const char* kName = "ReplayTranscriptTask";

    explicit ReplayTranscriptTask(std::wstring path) : m_path(std::move(path)) {}
    bool run() override;

private:
    std::wstring m_path;
};

/// Continues the transcript loaded in the debugger; does nothing without one.
class ReplayTextTranscriptTask : public NamedTask<ReplayTextTranscriptTask>
{
public:
    static constexpr const char* kName = "ReplayTextTranscriptTask";
    bool run() override;
};

/// Runs its next line.
class StepReplayTextTranscriptTask : public NamedTask<StepReplayTextTranscriptTask>
{
public:
    static constexpr const char* kName = "StepReplayTextTranscriptTask";
    bool run() override;
};

} // namespace Vu::Commands
