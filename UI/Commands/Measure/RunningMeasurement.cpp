#include "UI/Commands/Measure/RunningMeasurement.h"

#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Commands/Measure/MeasureCmd.h"
#include "UI/Commands/Measure/MeasureCmdDef.h"

#include <tuple>

namespace Vu::Commands {

namespace {

/// Null if none runs that a user fills.
const MeasureCmd* measuring()
{
    const CommandMgr* manager = CommandMgr::getActiveCommandManager();
    const auto* command = manager ? Vs::cast<MeasureCmd>(manager->activeCommand()) : nullptr;
    return command && !command->passive() ? command : nullptr;
}

} // namespace

RunningMeasurement::RunningMeasurement()
{
    if (const MeasureCmd* command = measuring())
        for (const SelectionCommandInput* input : command->inputs().selections)
            m_picked.push_back(input->valueAsString());
}

void RunningMeasurement::resume() const
{
    CommandMgr* const manager = CommandMgr::getActiveCommandManager();
    if (m_picked.empty() || !manager ||
        !manager->executeCommand(MeasureCmdDef::info()->key(), CommandContext::activeContext()).isOk())
        return;
    const MeasureCmd* const command = measuring();
    if (!command)
        return;
    size_t next = 0;
    for (SelectionCommandInput* input : command->inputs().selections)
        std::ignore = input->valueFromString(m_picked[next++]);
}

} // namespace Vu::Commands
