#pragma once

#include <functional>
#include <string>

namespace Vs {
class Status;
}

namespace Vu {

/// Asks for the label of a version: what a person calls a state of a document. Where nobody can be asked
/// (headless and test runs) that counts as cancelled; a command then adds `tellMissing` to its status, since
/// a line of text that did nothing must not count as well done. Main thread only.
class LabelDescriptionDialog
{
public:
    /// False if the person cancelled. `label` holds a proposal, and one line afterwards, which isn't empty.
    [[nodiscard]] static bool getDescriptionForLabel(std::wstring& label);

    /// The most letters that a label has.
    static constexpr int kLongest = 200;

    /// Whether there is somebody to ask.
    [[nodiscard]] static bool canAsk();
    /// An error in `status` if nobody can be asked; nothing if a person cancelled.
    static void tellMissing(Vs::Status& status);

    /// Answers in place of a person; returns false for cancelled. Null removes it.
    using Responder = std::function<bool(std::wstring& label)>;
    static void responder(Responder responder);
};

} // namespace Vu
