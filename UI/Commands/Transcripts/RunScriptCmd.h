#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/Transcripts/NamedTask.h"

#include <string>

namespace Vu::Commands {

/// Runs a Python script.
class RunScriptCmdDef : public RowDefinition<RunScriptCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext*) const override { return true; }
    bool onIsVisible(CommandContext*) const override { return true; }
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// Asks for the script unless the context names it. The script runs as a deferred task: it may start commands
/// itself, and this one must have ended by then.
class RunScriptCmd : public Vs::Implements<RunScriptCmd, SimpleCommand>
{
public:
    /// For a script that is already known.
    RunScriptCmd(CommandDefinition* definition, CommandContext* context, const std::wstring& path);

    /// Makes scripts run inside the command, with their errors in its status; off by default.
    static void runsDirectly(bool direct);

protected:
    friend class RunScriptCmdDef;
    using Implements::Implements;

    void onExecute(Vs::Status& status) override;
};

/// The interpreter reports the script's errors to the output of text lines.
class RunPythonTask : public NamedTask<RunPythonTask>
{
public:
    static constexpr const char* kName = "RunPythonTask";

    explicit RunPythonTask(std::wstring path) : m_path(std::move(path)) {}

    bool run() override;

private:
    std::wstring m_path;
};

} // namespace Vu::Commands
