#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Asks for a file and begins to record into it.
class StartTranscriptingCmdDef : public RowDefinition<StartTranscriptingCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onIsApplicable(CommandContext*) const override { return true; }
    void onUpdateInputControl(CommandContext* context) override;
};

/// The same, with the lines that measure while it is replayed.
class StartPerfTranscriptingCmdDef : public RowDefinition<StartPerfTranscriptingCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onIsApplicable(CommandContext*) const override { return true; }
    void onUpdateInputControl(CommandContext* context) override;
};

class StopTranscriptingCmdDef : public RowDefinition<StopTranscriptingCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onIsApplicable(CommandContext*) const override { return true; }
    void onUpdateInputControl(CommandContext* context) override;
};

/// Asks for a transcript and replays it once the command has ended.
class ReplayTranscriptCmdDef : public RowDefinition<ReplayTranscriptCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onIsApplicable(CommandContext*) const override { return true; }
    void onUpdateInputControl(CommandContext*) override {}
};

/// Takes away the messages that stand beside the running command.
class ClearAllAlertsCmdDef : public RowDefinition<ClearAllAlertsCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
    bool onIsApplicable(CommandContext*) const override { return true; }
};

class StartTranscriptingCmd : public Vs::Implements<StartTranscriptingCmd, SimpleCommand>
{
protected:
    friend class StartTranscriptingCmdDef;
    StartTranscriptingCmd(StartTranscriptingCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

class StartPerfTranscriptingCmd : public Vs::Implements<StartPerfTranscriptingCmd, SimpleCommand>
{
protected:
    friend class StartPerfTranscriptingCmdDef;
    StartPerfTranscriptingCmd(StartPerfTranscriptingCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

class StopTranscriptingCmd : public Vs::Implements<StopTranscriptingCmd, SimpleCommand>
{
protected:
    friend class StopTranscriptingCmdDef;
    StopTranscriptingCmd(StopTranscriptingCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

class ReplayTranscriptCmd : public Vs::Implements<ReplayTranscriptCmd, SimpleCommand>
{
protected:
    friend class ReplayTranscriptCmdDef;
    ReplayTranscriptCmd(ReplayTranscriptCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override { return ECommandType::Exclusive; }
    EStackingBehavior onStackingBehavior() const override { return EStackingBehavior::OverNothing; }
    void onExecute(Vs::Status& status) override;
};

class ClearAllAlertsCmd : public Vs::Implements<ClearAllAlertsCmd, SimpleCommand>
{
protected:
    friend class ClearAllAlertsCmdDef;
    ClearAllAlertsCmd(ClearAllAlertsCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
