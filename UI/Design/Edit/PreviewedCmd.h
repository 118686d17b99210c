#pragma once

#include "UI/Base/Command/Command.h"
#include "UI/Design/Edit/EditInputs.h"

#include <memory>

namespace Vs {
class Asset;
class Request;
} // namespace Vs

namespace Vu::Design {

/// A command that changes a model as its inputs say. The change is shown as soon as they are
/// complete, taken back and made anew with each new value, and kept as one step by the commit.
///
/// The context's arguments fill the inputs of the same keys; what is selected at the start fills the first
/// selection. Each value that is entered is a step that undo takes back while the command runs; the step
/// holds the inputs, of which the change is made anew. With the argument "Commit" the command doesn't wait
/// for a person: it ends with the change made, or with the error that says why not.
class PreviewedCmd : public Vs::Implements<PreviewedCmd, Command>
{
public:
    PreviewedCmd(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}

    static const Vs::UniqueString* commitArgumentName();

    void onBegin() override;
    void onEnd(ETerminationReason reason) override;
    void commandInputSetExecute(CommandInputEvent* event) override;
    CommandInputSet* onCreateCommandInputs() final;
    void onCommandInputEventSink(CommandInputEvent* event) override;
    void onValidateInputs(CommandInputStatus& status, bool forCommit) override;
    void onClearCommandRequests(bool) override {}
    void releaseCommandPreview() override;
    void onStepUndo() override { showInputs(); }
    void onStepRedo() override { showInputs(); }

protected:
    virtual void onMakeInputs(EditInputs& inputs) = 0;
    struct DestroyRequest
    {
        void operator()(Vs::Request* request) const;
    };
    using OwnedRequest = std::unique_ptr<Vs::Request, DestroyRequest>;

    /// The change that the inputs ask for; called while the model is as it was at the start. The inputs are
    /// valid, each for itself.
    virtual OwnedRequest onMakeRequest(Vs::Asset& asset) = 0;
    /// That change was made, for as long as the preview lasts or for good.
    virtual void onDone(const Vs::Request& /*request*/, bool /*preview*/) {}
    /// Why the inputs don't go together; empty if they do.
    virtual std::wstring onWhyInvalid() const { return {}; }
    /// Whether parts of bodies are chosen that the change makes others of. They are picked on the bodies as
    /// they were, so that the preview goes out while the pointer is at one. Default false.
    virtual bool onPicksInsideBodies() const { return false; }
    /// An input has a new value.
    virtual void onInputChanged() {}
    /// The change is shown, or none is since the inputs ask for none.
    virtual void onShown() {}

private:
    void takeArguments(Vs::Status& status);
    void takeSelection();
    std::wstring whyIncomplete();
    bool execute(bool preview, Vs::Status& status);
    void preview();
    /// Whether the result shows, or could if it had been waited for.
    bool previewed(Vs::Status& status);
    void lightParts(bool lit);
    void point(bool atPart);
    void showInputs();
    void keepStep();
    void followTexts();
    void commitAtOnce(Vs::Status& status);

    bool m_waiting = false;   ///< For a person, who sees a preview.
    std::wstring m_problem;   ///< Why the last preview couldn't be made.
    bool m_shown = false;     ///< The preview is there.
    bool m_withdrawn = false; ///< Until an input has a value again in place of a text that is none.
};

} // namespace Vu::Design
