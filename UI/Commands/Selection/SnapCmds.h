#pragma once

#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu {
class BoolValueCommandInput;
class RealValueCommandInput;
} // namespace Vu

namespace Vu::Commands {

class SetSnapValueCmd;

/// The panel for the step of the snap grid, and whether it follows the zoom.
class SetSnapValueCmdDef : public CommandRowDefinition<SetSnapValueCmdDef, SetSnapValueCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

/// The settings change on commit only.
class SetSnapValueCmd : public Vs::Implements<SetSnapValueCmd, Command>
{
public:
    using Implements::Implements;

protected:
    CommandInputSet* onCreateCommandInputs() override;
    void onCommandInputEventSink(CommandInputEvent* event) override;
    void onValidateInputs(CommandInputStatus& status, bool forCommit) override;
    void onClearCommandRequests(bool) override {}
    void onEnd(ETerminationReason reason) override;

private:
    BoolValueCommandInput* m_adaptiveInput = nullptr;
    RealValueCommandInput* m_valueInput = nullptr;
    BoolValueCommandInput* m_fixedInput = nullptr; ///< On if and only if the adaptive one is off.
};

class EnableAdaptiveSnapCmd;

/// Turns snapping on. Offered only while it is off.
class EnableAdaptiveSnapCmdDef : public CommandRowDefinition<EnableAdaptiveSnapCmdDef, EnableAdaptiveSnapCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override { return onIsApplicable(context); }
};

class EnableAdaptiveSnapCmd : public Vs::Implements<EnableAdaptiveSnapCmd, SimpleCommand>
{
public:
    EnableAdaptiveSnapCmd(EnableAdaptiveSnapCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

class DisableAdaptiveSnapCmd;

/// Turns snapping off. Offered only while it is on.
class DisableAdaptiveSnapCmdDef
    : public CommandRowDefinition<DisableAdaptiveSnapCmdDef, DisableAdaptiveSnapCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override { return onIsApplicable(context); }
};

class DisableAdaptiveSnapCmd : public Vs::Implements<DisableAdaptiveSnapCmd, SimpleCommand>
{
public:
    DisableAdaptiveSnapCmd(DisableAdaptiveSnapCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
