#pragma once

#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/InteractiveCommandBase.h"

#include <string>

namespace Vu {

/// An interactive command with a set of inputs, which the host shows in a panel. The inputs are made before
/// `onBegin`; each change of one is validated, then handed to `onCommandInputEventSink`.
class Command : public Vs::Implements<Command, InteractiveCommandBase, CommandInputSetEventSite>
{
public:
    /// The result of a validation.
    class CommandInputStatus
    {
    public:
        bool valid() const { return m_valid; }
        void valid(bool value) { m_valid = value; }
        /// Why it isn't, for the user.
        const std::wstring& message() const { return m_message; }
        void invalid(std::wstring message)
        {
            m_valid = false;
            m_message = std::move(message);
        }

    private:
        bool m_valid = true;
        std::wstring m_message;
    };

    using Implements::Implements;
    ~Command() override;

    /// Whether a change of the selection by undo is let through while the command runs: 0 yes, 1 no.
    int selectionChangeAllowMode() const { return m_selectionChangeAllowMode; }
    void selectionChangeAllowMode(int mode) { m_selectionChangeAllowMode = mode; }

    /// Validates the inputs; the answer becomes the state of the alert controller.
    bool validateInputs(bool forCommit);

    virtual void onPostPreview(bool) {}
    /// Makes the inputs, with CommandInputSet::make; null for none.
    virtual CommandInputSet* onCreateCommandInputs() = 0;
    virtual void onCommandInputEventSink(CommandInputEvent* event) = 0;
    /// Sets the status to invalid, with a reason, if the command can't run with its inputs as they are. Each
    /// input has already been checked by itself.
    virtual void onValidateInputs(CommandInputStatus& status, bool forCommit) = 0;
    virtual void onClearCommandRequests(bool) = 0;
    virtual void releaseCommandPreview() {}
    /// Whether the arguments that it adds to its context by its end say all that its inputs do, so that a
    /// recording writes the line with these alone. Default false.
    virtual bool onArgumentsSayAll() const { return false; }

    /// Makes the inputs; for CommandMgr, once, before `onBegin`.
    void createCommandInputs();

    bool onAreInputsValid() override;
    bool onAreInputsValidForCommit() override;
    void commandInputChanged(CommandInputEvent* event) override;

private:
    int m_selectionChangeAllowMode = 0;
};

} // namespace Vu
