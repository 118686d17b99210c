#include "UI/Design/Edit/PreviewedCmd.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandArguments.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Session/SelectionInputEvents.h"
#include "UI/Design/Localized.h"

#include <stdexcept>

namespace Vu::Design {

void PreviewedCmd::DestroyRequest::operator()(Vs::Request* request) const
{
    request->destroy();
}

const Vs::UniqueString* PreviewedCmd::commitArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Commit", true);
    return name;
}

CommandInputSet* PreviewedCmd::onCreateCommandInputs()
{
    CommandInputSet* set = CommandInputSet::make(this);
    EditInputs inputs(set);
    onMakeInputs(inputs);
    return set;
}

void PreviewedCmd::onBegin()
{
    if (!commandContext()->asset())
        throw std::runtime_error(Vs::Strings::narrow(
            localized("NoDesignToEdit",
                      "There is no active design to change: make one with Design.New, or open a file.")));
    Vs::Status status;
    takeArguments(status);
    const bool atOnce = commandContext()->hasArgument(commitArgumentName());
    if (atOnce && status.isOk())
        commitAtOnce(status);
    if (status.isError())
        throw std::runtime_error(Vs::Strings::narrow(status.toString()));
    if (atOnce)
        return;
    Vs::EditRequest::expectSoon(*commandContext()->asset());
    takeSelection();
    onInputChanged();
    m_waiting = true;
    if (commandInputSet()->valid())
        preview();
}

void PreviewedCmd::takeArguments(Vs::Status& status)
{
    std::vector<std::wstring> known;
    for (const auto& input : commandInputSet()->inputs())
        known.push_back(input->info()->key());
    known.push_back(commitArgumentName()->wideText());
    if (!hasOnlyKnownArguments(*commandContext(), commandDefinition()->info()->name(), known, status))
        return;
    for (const auto& input : commandInputSet()->inputs()) {
        const Vs::UniqueString* key = Vs::UniqueString::find(Vs::Strings::narrow(input->info()->key()), true);
        if (!commandContext()->hasArgument(key))
            continue;
        if (const std::wstring why = input->take(commandContext()->argumentAsString(key)); !why.empty()) {
            status.addError(input->info()->name() + L": " + why);
            return;
        }
        onInputChanged();
    }
}

// An input that has what it needs leaves the rest to the next: of several bodies the first is the target.
void PreviewedCmd::takeSelection()
{
    Vs::SelectionMgr* manager = selectionManager();
    if (!manager)
        return;
    std::vector<SelectionCommandInput*> open;
    for (const auto& input : commandInputSet()->inputs())
        if (auto* things = Vs::cast<SelectionCommandInput>(input.get());
            things && things->selectionSet().empty())
            open.push_back(things);
    size_t next = 0;
    for (const auto& selection : manager->selectionSet().selections()) {
        while (next + 1 < open.size() && open[next]->valid())
            ++next;
        if (next < open.size())
            open[next]->add(selection);
    }
}

std::wstring PreviewedCmd::whyIncomplete()
{
    for (const auto& input : commandInputSet()->inputs())
        if (const std::wstring why = input->whyInvalid(); !why.empty())
            return input->info()->name() + L": " + why;
    return onWhyInvalid();
}

void PreviewedCmd::commitAtOnce(Vs::Status& status)
{
    if (const std::wstring why = whyIncomplete(); !why.empty())
        status.addError(commandDefinition()->info()->name() + L": " + why);
    else if (execute(false, status))
        destroy(ETerminationReason::Commit);
}

bool PreviewedCmd::execute(bool preview, Vs::Status& status)
{
    releasePreview();
    Vs::Asset* asset = commandContext()->asset();
    if (!asset)
        return false;
    const OwnedRequest request = onMakeRequest(*asset);
    const bool done = executeRequest(request.get(), preview, {}, status);
    if (done)
        onDone(*request, preview);
    return done;
}

// A preview that the user didn't want to wait for isn't an error: it can be committed unseen.
bool PreviewedCmd::previewed(Vs::Status& status)
{
    const Vs::Progress::CancelScope cancellable;
    m_shown = execute(true, status);
    return m_shown || Vs::Progress::cancelled();
}

void PreviewedCmd::preview()
{
    Vs::Status status;
    m_shown = false;
    m_problem = onWhyInvalid();
    if (!m_problem.empty())
        releasePreview();
    else if (!previewed(status))
        m_problem = status.toString();
    lightParts(!m_problem.empty() || !m_shown);
    // The inputs may have been read for display while the kernel was still at work.
    CommandInputStateChangeEvent event(commandInputSet()->inputs().front().get());
    commandInputSet()->fire(&event);
    onShown();
}

// The paths of the chosen parts refer to the bodies as they were.
void PreviewedCmd::lightParts(bool lit)
{
    Vs::SelectionMgr* manager = selectionManager();
    if (!manager || !onPicksInsideBodies())
        return;
    if (!lit)
        manager->invalidate();
    for (const auto& input : commandInputSet()->inputs())
        if (const auto* things = Vs::cast<SelectionCommandInput>(input.get()))
            manager->collect(things, lit ? things->selectionSet().selections()
                                         : std::vector<Vs::StrongRef<Vs::Selection>>());
}

void PreviewedCmd::point(bool atPart)
{
    if (atPart) {
        releasePreview();
        lightParts(true);
    } else if (m_problem.empty() && commandInputSet()->valid()) {
        preview();
    }
}

void PreviewedCmd::showInputs()
{
    onInputChanged();
    m_problem.clear();
    if (commandInputSet()->valid())
        preview();
    else
        releasePreview();
}

/// What can't be changed reports so when it is shown.
void PreviewedCmd::keepStep()
{
    try {
        beginStep(true, true);
        endStep(ETerminationReason::Commit);
    } catch (const std::runtime_error&) {
    }
}

void PreviewedCmd::commandInputSetExecute(CommandInputEvent*)
{
    if (m_waiting)
        preview();
}

// An invalid text leaves the input with its old value, which should not be shown meanwhile.
void PreviewedCmd::followTexts()
{
    const bool valid = commandInputSet()->valid();
    if (m_withdrawn == !valid || (!valid && !m_shown))
        return;
    m_withdrawn = !valid;
    if (valid) {
        preview();
        return;
    }
    releasePreview();
    onShown();
}

void PreviewedCmd::onCommandInputEventSink(CommandInputEvent* event)
{
    if (!m_waiting)
        return;
    if (const auto* pointing = Vs::cast<SelectionInputPreselectionEvent>(event);
        pointing && onPicksInsideBodies())
        point(pointing->selection() != nullptr);
    if (Vs::cast<CommandInputStateChangeEvent>(event))
        followTexts();
    const auto* change = Vs::cast<CommandInputValueChangeEvent>(event);
    if (!change)
        return;
    m_withdrawn = false;
    onInputChanged();
    if (!commandInputSet()->valid()) {
        m_problem.clear();
        releasePreview();
        onShown();
    } else if (change->kind() == CommandInputValueChangeEvent::EKind::Entered &&
               !Vs::cast<SelectionCommandInput>(change->commandInput())) {
        keepStep();
    }
}

void PreviewedCmd::onValidateInputs(CommandInputStatus& status, bool)
{
    if (!m_problem.empty())
        status.invalid(m_problem);
}

void PreviewedCmd::releaseCommandPreview()
{
    releasePreview();
}

void PreviewedCmd::onEnd(ETerminationReason reason)
{
    Vs::Status status;
    if (m_waiting && reason == ETerminationReason::Commit && !execute(false, status))
        commandManager()->GetAlertController()->addAlerts(status);
}

} // namespace Vu::Design
