#pragma once

#include <string>
#include <vector>

namespace Vu {

/// The answers that a transcript brings along for the questions that its next line asks, and those that a
/// person gives while one is recorded. Private to the host; main thread only.
class Answers
{
public:
    /// A question to a person: a message box, whose answer is the button, or a dialog for files, with a name
    /// for each of them and none for cancelled.
    enum class Kind { Button, Files };

    /// For the next question of the kind that the next line asks.
    static void expect(Kind kind, std::vector<std::wstring> answer);
    /// Returns whether there is one, and uses it up.
    [[nodiscard]] static bool take(Kind kind, std::vector<std::wstring>& answer);
    /// Whether `take` would return true.
    [[nodiscard]] static bool isExpected(Kind kind);
    /// A line has run: what it did not ask for is forgotten, but for what it has brought itself, and fails
    /// the line where somebody waits for it (TranscriptMgr::settled).
    static void lineRan();

    /// A person has answered.
    static void given(Kind kind, std::vector<std::wstring> answer);
    /// Forgets what was given: a command begins.
    static void forgetGiven();
    /// Writes what was given as lines of the running recording, for the command that is written next.
    static void writeGiven();
};

} // namespace Vu
