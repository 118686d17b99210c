#include "UI/Commands/Measure/MeasureCmdDef.h"

#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Measure/EndMeasureTask.h"
#include "UI/Commands/Measure/MeasureCmd.h"
#include "UI/Commands/Measure/MeasureOptions.h"
#include "UI/Commands/Resources.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow MeasureCmdDef::kRow = {
    .key = L"MeasureCommand", .title = "Measure", .icon = &Resources::Measure,
    .tooltip = "Measures lengths, areas, volumes, distances and angles of what you select", .tooltipKey = "VeloraMeasureCommandToolTip",
    .hotkey = "Shift+M", .groups = {&CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"MeasureTypes", L"Passive"}};
// clang-format on

RealValueCommandInput* MeasureCmdDef::s_pToMeasure = nullptr;

MeasureCmdDef::MeasureCmdDef()
{
    CommandInputEventSource::get()->subscribe(this, nullptr);
    m_subscriptions.add(CommandEventSource::get(), this);
}

MeasureCmdDef::~MeasureCmdDef()
{
    m_subscriptions.clear();
    CommandInputEventSource::get()->unsubscribe(this, nullptr);
}

const Vs::UniqueString* MeasureCmdDef::measureTypesArgName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("MeasureTypes", true);
    return name;
}

const Vs::UniqueString* MeasureCmdDef::passiveArgName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Passive", true);
    return name;
}

CommandBase* MeasureCmdDef::onCreateCommand(CommandContext* context)
{
    auto* command = new MeasureCmd(this, context);
    if (command->passive())
        m_measuring = command;
    return command;
}

void MeasureCmdDef::onCommandInputEvent(CommandInputEvent* event)
{
    auto* input = Vs::cast<RealValueCommandInput>(event->commandInput());
    if (!input || (input->measureFilter() != kMeasureDistance && input->measureFilter() != kMeasureAngle))
        return;
    if (auto* query = Vs::cast<CommandInputQueryMRUCommandEvent>(event))
        query->addMruCommand(info());
    else if (const auto* trigger = Vs::cast<CommandInputTriggerMRUCommandEvent>(event);
             trigger && trigger->key() == info()->key())
        measureFor(input);
}

void MeasureCmdDef::measureFor(RealValueCommandInput* input)
{
    // The one before would give its value to the new input.
    if (m_measuring)
        m_measuring->destroy(ETerminationReason::Cancel);
    s_pToMeasure = input;
    m_host = input->commandInputSet()->command();
    CommandContext context;
    context.assetSession(m_host->assetSession());
    context.addArgument(measureTypesArgName(), input->measureFilter());
    context.addArgument(passiveArgName(), 1);
    context.accessPoint(ECommandAccessPoint::Command);
    enableHostSelectionInput(false);
    // The types of this one use aren't those that the user wants the next time.
    MeasureOptions::make();
    std::ignore = executeCommand(context);
    if (!m_measuring)
        measureEnded(nullptr);
}

void MeasureCmdDef::enableHostSelectionInput(bool enable)
{
    for (const auto& input : s_pToMeasure->commandInputSet()->inputs()) {
        auto* selection = Vs::cast<SelectionCommandInput>(input.get());
        if (!selection)
            continue;
        selection->state(enable ? SelectionCommandInput::EState::Collecting
                                : SelectionCommandInput::EState::Idle);
        selection->enabled(enable);
    }
    // What lies under the pointer is lit for another command now.
    if (const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView())
        view->restartHighlighting();
}

void MeasureCmdDef::endMeasure(double value, CommandBase* command)
{
    // The end of the command must not undo what it has found.
    m_measuring = nullptr;
    if (command)
        command->destroy(ETerminationReason::Commit);
    if (!s_pToMeasure)
        return;
    enableHostSelectionInput(true);
    RealValueCommandInput* const filled = std::exchange(s_pToMeasure, nullptr);
    m_host = nullptr;
    filled->value(value);
}

void MeasureCmdDef::measureEnded(const CommandBase* command)
{
    if (command != m_measuring)
        return;
    m_measuring = nullptr;
    m_host = nullptr;
    if (s_pToMeasure)
        enableHostSelectionInput(true);
    s_pToMeasure = nullptr;
}

void MeasureCmdDef::commandAvailabilitiesChanged(Vs::Event*)
{
    if (!m_measuring || !m_host || !m_measuring->commandManager())
        return;
    const std::vector<CommandBase*>& running = m_measuring->commandManager()->commandStack();
    if (std::find(running.begin(), running.end(), m_host) != running.end())
        return;
    // Its inputs are gone with it.
    s_pToMeasure = nullptr;
    m_host = nullptr;
    m_measuring->destroy(ETerminationReason::Cancel);
}

} // namespace Vu::Commands
