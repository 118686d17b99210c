#pragma once

#include "UI/Commands/Transcripts/DebugTool.h"

namespace Vu::Commands {

class StartTranscriptingCmd : public DebugTool<StartTranscriptingCmd>
{
public:
    using DebugTool::DebugTool;

protected:
    void onExecute(Vs::Status& status) override;
};

class StartPerfTranscriptingCmd : public DebugTool<StartPerfTranscriptingCmd>
{
public:
    using DebugTool::DebugTool;

protected:
    void onExecute(Vs::Status& status) override;
};

class StopTranscriptingCmd : public DebugTool<StopTranscriptingCmd>
{
public:
    using DebugTool::DebugTool;

protected:
    void onExecute(Vs::Status& status) override;
};

class ReplayTranscriptCmd : public DebugTool<ReplayTranscriptCmd>
{
public:
    using DebugTool::DebugTool;

protected:
    ECommandType onCommandType() const override { return ECommandType::Exclusive; }
    EStackingBehavior onStackingBehavior() const override { return EStackingBehavior::OverNothing; }
    void onExecute(Vs::Status& status) override;
};

class ClearAllAlertsCmd : public UnrepeatedDebugTool<ClearAllAlertsCmd>
{
public:
    ClearAllAlertsCmd(CommandDefinition* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

/// Asks for a file and starts recording into it.
class StartTranscriptingCmdDef : public DebugToolDefinition<StartTranscriptingCmdDef, StartTranscriptingCmd>
{
public:
    static const CommandRow kRow;

protected:
    void onUpdateInputControl(CommandContext* context) override;
};

/// The same, with lines that measure during replay.
class StartPerfTranscriptingCmdDef
    : public DebugToolDefinition<StartPerfTranscriptingCmdDef, StartPerfTranscriptingCmd>
{
public:
    static const CommandRow kRow;

protected:
    void onUpdateInputControl(CommandContext* context) override;
};

class StopTranscriptingCmdDef : public DebugToolDefinition<StopTranscriptingCmdDef, StopTranscriptingCmd>
{
public:
    static const CommandRow kRow;

protected:
    void onUpdateInputControl(CommandContext* context) override;
};

/// Asks for a transcript and replays it once the command has ended.
class ReplayTranscriptCmdDef : public DebugToolDefinition<ReplayTranscriptCmdDef, ReplayTranscriptCmd>
{
public:
    static const CommandRow kRow;

protected:
    void onUpdateInputControl(CommandContext*) override {}
};

/// Clears the messages beside the running command.
class ClearAllAlertsCmdDef : public DebugToolDefinition<ClearAllAlertsCmdDef, ClearAllAlertsCmd>
{
public:
    static const CommandRow kRow;
};

} // namespace Vu::Commands
