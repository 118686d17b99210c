#pragma once

#include "UI/Base/Command/Command.h"
#include "UI/Design/Edit/EditInputs.h"

#include <memory>

namespace Vs {
class Asset;
class Request;
} // namespace Vs

namespace Vu::Design {

/// A command that changes a model as its inputs say. The change is shown as soon as they are complete, undone
/// and remade with each new value, and kept as one step by the commit.
///
/// The context's arguments fill the inputs with the same keys; the initial selection fills the first
/// selection input. Each entered value is a step that can be undone while the command runs; the step stores
/// the inputs, from which the change is remade. With the argument "Commit" the command doesn't wait for the
/// user: it ends with the change made, or with the error that prevented it.
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
    /// individually valid.
    virtual OwnedRequest onMakeRequest(Vs::Asset& asset) = 0;
    /// That change was made, for the duration of the preview or for good.
    virtual void onDone(const Vs::Request& /*request*/, bool /*preview*/) {}
    /// Why the inputs don't fit together; empty if they do.
    virtual std::wstring onWhyInvalid() const { return {}; }
    /// Whether the user chooses parts of bodies that the change replaces. They are picked on the original
    /// bodies, so the preview is hidden while the pointer is at one. Default false.
    virtual bool onPicksInsideBodies() const { return false; }
    /// An input has a new value.
    virtual void onInputChanged() {}
    /// The change is shown, or none is because the inputs ask for none.
    virtual void onShown() {}

private:
    void takeArguments(Vs::Status& status);
    void takeSelection();
    std::wstring whyIncomplete();
    bool execute(bool preview, Vs::Status& status);
    void preview();
    /// Whether the result is shown, or could be if it had been waited for.
    bool previewed(Vs::Status& status);
    void lightParts(bool lit);
    void point(bool atPart);
    void showInputs();
    void keepStep();
    void followTexts();
    void commitAtOnce(Vs::Status& status);

    bool m_waiting = false;   ///< For a user, who sees a preview.
    std::wstring m_problem;   ///< Why the last preview couldn't be made.
    bool m_shown = false;     ///< The preview exists.
    bool m_withdrawn = false; ///< Until an input with an invalid text has a value again.
};

} // namespace Vu::Design
