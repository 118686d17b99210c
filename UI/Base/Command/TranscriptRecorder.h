#pragma once

#include "UI/Base/Command/CommandObserver.h"

#include <string>
#include <vector>

namespace Vu {

/// Writes one line into the running transcript for each command that the user, a line or a script called and
/// that was committed: the wrapper's line if there is one, with the arguments as its parameters in the order
/// in which the command has them, else a line of Commands.Start. For a command with inputs there follow a
/// line for each input and one that commits it.
class TranscriptRecorder : public ICommandObserver
{
public:
    void after(const CommandRun& run) override;

    /// The line that runs the command again.
    static std::wstring lineOf(const CommandRun& run);
    /// The lines that then give the command the values of its inputs, and commit it; none for a command
    /// without inputs that are recorded.
    static std::vector<std::wstring> inputLinesOf(const CommandBase& command);
};

} // namespace Vu
