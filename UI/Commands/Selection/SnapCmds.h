#pragma once

#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu {
class BoolValueCommandInput;
class RealValueCommandInput;
} // namespace Vu

namespace Vu::Commands {

/// The panel for the step of the grid that values snap to, and whether it follows the zoom.
class SetSnapValueCmdDef : public RowDefinition<SetSnapValueCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// The settings change with the commit alone.
class SetSnapValueCmd : public Vs::Implements<SetSnapValueCmd, Command>
{
protected:
    friend class SetSnapValueCmdDef;
    using Implements::Implements;

    CommandInputSet* onCreateCommandInputs() override;
    void onCommandInputEventSink(CommandInputEvent* event) override;
    void onValidateInputs(CommandInputStatus& status, bool forCommit) override;
    void onClearCommandRequests(bool) override {}
    void onEnd(ETerminationReason reason) override;

private:
    BoolValueCommandInput* m_adaptiveInput = nullptr;
    RealValueCommandInput* m_valueInput = nullptr;
    BoolValueCommandInput* m_fixedInput = nullptr; ///< On exactly if the adaptive one is off.
};

/// Lets distances snap. Offered only while they don't.
class EnableAdaptiveSnapCmdDef : public RowDefinition<EnableAdaptiveSnapCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override { return onIsApplicable(context); }
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class EnableAdaptiveSnapCmd : public Vs::Implements<EnableAdaptiveSnapCmd, SimpleCommand>
{
protected:
    friend class EnableAdaptiveSnapCmdDef;
    EnableAdaptiveSnapCmd(EnableAdaptiveSnapCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

/// Lets distances be as they are dragged. Offered only while they snap.
class DisableAdaptiveSnapCmdDef : public RowDefinition<DisableAdaptiveSnapCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override { return onIsApplicable(context); }
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class DisableAdaptiveSnapCmd : public Vs::Implements<DisableAdaptiveSnapCmd, SimpleCommand>
{
protected:
    friend class DisableAdaptiveSnapCmdDef;
    DisableAdaptiveSnapCmd(DisableAdaptiveSnapCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
