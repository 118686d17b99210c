#include "UI/Design/Edit/EditCmd.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandArguments.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/CommandTitles.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SelectionInputEvents.h"
#include "UI/Design/Environments.h"
#include "UI/Design/Localized.h"

#include <memory>
#include <stdexcept>

namespace Vu::Design {

EditCmdDefBase::EditCmdDefBase(Info* info) : Implements(info)
{
    joinCommandGroup(CommandGroup::VeloraSolidGroup());
}

Info EditCmdDefBase::makeInfo(const EditRow& row)
{
    const std::string key = Vs::Strings::narrow(row.key);
    return Info(row.key, CommandTitles::localized(row.key, kDomain, key.c_str(), row.title), row.icon(),
                ToolTipInfo(localized((key + "Desc").c_str(), row.tooltip)));
}

bool EditCmdDefBase::onIsApplicable(CommandContext* context) const
{
    return context->assetSession() != nullptr;
}

std::wstring EditCmdDefBase::onPreferredEnvironment()
{
    return ModellingEnvironment::kId;
}

const Vs::UniqueString* EditCmd::commitArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Commit", true);
    return name;
}

CommandInputSet* EditCmd::onCreateCommandInputs()
{
    CommandInputSet* set = CommandInputSet::make(this);
    EditInputs inputs(set);
    onMakeInputs(inputs);
    return set;
}

void EditCmd::onBegin()
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
    takeSelection();
    onInputChanged();
    m_waiting = true;
    if (commandInputSet()->valid())
        preview();
}

void EditCmd::takeArguments(Vs::Status& status)
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
void EditCmd::takeSelection()
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

std::wstring EditCmd::whyIncomplete()
{
    for (const auto& input : commandInputSet()->inputs())
        if (const std::wstring why = input->whyInvalid(); !why.empty())
            return input->info()->name() + L": " + why;
    return onWhyInvalid();
}

void EditCmd::commitAtOnce(Vs::Status& status)
{
    if (const std::wstring why = whyIncomplete(); !why.empty())
        status.addError(commandDefinition()->info()->name() + L": " + why);
    else if (execute(false, status))
        destroy(ETerminationReason::Commit);
}

bool EditCmd::execute(bool preview, Vs::Status& status)
{
    releasePreview();
    Vs::Asset* asset = commandContext()->asset();
    if (!asset)
        return false;
    struct Destroy
    {
        void operator()(Vs::Request* request) const { request->destroy(); }
    };
    const std::unique_ptr<Vs::EditRequest, Destroy> request(
        Vs::EditRequest::make(asset, commandDefinition()->info()->name(), onMakeEdit(*asset)));
    request->groupAdded(onMakesGroup());
    return executeRequest(request.get(), preview, {}, status);
}

// Nothing is wrong with what a person didn't want to wait for: it can be committed unseen.
bool EditCmd::previewed(Vs::Status& status)
{
    const Vs::Progress::CancelScope cancellable;
    m_shown = execute(true, status);
    return m_shown || Vs::Progress::cancelled();
}

void EditCmd::preview()
{
    Vs::Status status;
    m_shown = false;
    m_problem = onWhyInvalid();
    if (!m_problem.empty())
        releasePreview();
    else if (!previewed(status))
        m_problem = status.toString();
    lightParts(!m_problem.empty() || !m_shown);
    // Whoever shows the inputs may have looked while the kernel was still at work.
    CommandInputStateChangeEvent event(commandInputSet()->inputs().front().get());
    commandInputSet()->fire(&event);
    onShown();
}

// The paths of the parts that were chosen are those of the bodies as they were.
void EditCmd::lightParts(bool lit)
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

void EditCmd::point(bool atPart)
{
    if (atPart) {
        releasePreview();
        lightParts(true);
    } else if (m_problem.empty() && commandInputSet()->valid()) {
        preview();
    }
}

void EditCmd::showInputs()
{
    onInputChanged();
    m_problem.clear();
    if (commandInputSet()->valid())
        preview();
    else
        releasePreview();
}

/// What can't be changed says so when it is shown.
void EditCmd::keepStep()
{
    try {
        beginStep(true, true);
        endStep(ETerminationReason::Commit);
    } catch (const std::runtime_error&) {
    }
}

void EditCmd::commandInputSetExecute(CommandInputEvent*)
{
    if (m_waiting)
        preview();
}

void EditCmd::onCommandInputEventSink(CommandInputEvent* event)
{
    if (!m_waiting)
        return;
    if (const auto* pointing = Vs::cast<SelectionInputPreselectionEvent>(event);
        pointing && onPicksInsideBodies())
        point(pointing->selection() != nullptr);
    const auto* change = Vs::cast<CommandInputValueChangeEvent>(event);
    if (!change)
        return;
    onInputChanged();
    if (!commandInputSet()->valid()) {
        m_problem.clear();
        releasePreview();
    } else if (change->kind() == CommandInputValueChangeEvent::EKind::Entered &&
               !Vs::cast<SelectionCommandInput>(change->commandInput())) {
        keepStep();
    }
}

void EditCmd::onValidateInputs(CommandInputStatus& status, bool)
{
    if (!m_problem.empty())
        status.invalid(m_problem);
}

void EditCmd::releaseCommandPreview()
{
    releasePreview();
}

void EditCmd::onEnd(ETerminationReason reason)
{
    Vs::Status status;
    if (m_waiting && reason == ETerminationReason::Commit && !execute(false, status))
        commandManager()->GetAlertController()->addAlerts(status);
}

} // namespace Vu::Design
