#pragma once

#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Commands/CommandRow.h"

namespace Vu {
class RealValueCommandInput;
}

namespace Vu::Commands {

/// Measures what is selected. The field of a length or an angle of any other command offers to be filled by a
/// measurement: then the command runs passively over that one, without a panel, and ends with the first value
/// that it finds.
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

    /// Ends the command, which may be null, and gives the value to the input that waits for it, if one does.
    void endMeasure(double value, CommandBase* command);
    /// A passive command ended without a value: the input that waits for one is left as it is.
    void measureEnded(const CommandBase* command);

    void onCommandInputEvent(CommandInputEvent* event) override;
    /// A passive command doesn't outlive the one that it measures for.
    void commandAvailabilitiesChanged(Vs::Event*) override;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;

private:
    void measureFor(RealValueCommandInput* input);
    static void enableHostSelectionInput(bool enable);

    static RealValueCommandInput* s_pToMeasure; ///< That waits for a measurement; null for none. Not owned.
    CommandBase* m_measuring = nullptr;         ///< The passive command; null for none. Not owned.
    const CommandBase* m_host = nullptr;        ///< Of the input that waits. Not owned.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
