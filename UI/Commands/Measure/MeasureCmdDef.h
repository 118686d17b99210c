#pragma once

#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Commands/CommandRow.h"

namespace Vu {
class RealValueCommandInput;
}

namespace Vu::Commands {

/// Measures the selection. The field of a length or an angle of any other command offers to take a
/// measurement: the command then runs passively on top of that one, without a panel, and ends with the first
/// value it finds.
class MeasureCmdDef
    : public RowDefinition<MeasureCmdDef, CommandDefinition, CommandInputEventSite, CommandEventSite>
{
public:
    static const CommandRow kRow;

    MeasureCmdDef();
    ~MeasureCmdDef() override;

    /// "MeasureTypes", a mask of EMeasureTypeBit; "Passive", 1 for a passive run.
    static const Vs::UniqueString* measureTypesArgName();
    static const Vs::UniqueString* passiveArgName();

    /// Ends the command, which may be null, and gives the value to the waiting input, if there is one.
    void endMeasure(double value, CommandBase* command);
    /// A passive command ended without a value: the waiting input keeps its value.
    void measureEnded(const CommandBase* command);

    void onCommandInputEvent(CommandInputEvent* event) override;
    /// A passive command doesn't outlive the one it measures for.
    void commandAvailabilitiesChanged(Vs::Event*) override;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;

private:
    void measureFor(RealValueCommandInput* input);
    static void enableHostSelectionInput(bool enable);

    static RealValueCommandInput* s_pToMeasure; ///< Waiting for a measurement; null for none. Not owned.
    CommandBase* m_measuring = nullptr;         ///< The passive command; null for none. Not owned.
    const CommandBase* m_host = nullptr;        ///< Of the waiting input. Not owned.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
