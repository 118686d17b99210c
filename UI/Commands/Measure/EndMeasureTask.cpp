#include "UI/Commands/Measure/EndMeasureTask.h"

#include "UI/Commands/Measure/MeasureCmd.h"
#include "UI/Commands/Measure/MeasureCmdDef.h"

bool EndMeasureTask::run()
{
    if (auto* definition = Vs::cast<Vu::Commands::MeasureCmdDef>(m_command->commandDefinition())) {
        Vs::cast<Vu::Commands::MeasureCmd>(m_command)->endTaskRuns();
        definition->endMeasure(m_value, m_command);
    }
    return true;
}
