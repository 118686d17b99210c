#include "UI/Commands/Transcripts/RunScriptCmd.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow RunScriptCmdDef::kRow = {
    .key = L"RunScriptCommand", .title = "Run Script...", .icon = &Resources::RunScript,
    .groups = {&CommandGroup::BaseGroup}, .arguments = {L"Path"}};
// clang-format on

namespace {

bool s_runsDirectly = false;

bool askForScript(std::wstring& path, CommandContext* context)
{
    return FileDialog::getSpecialFilenameForOpen(
        L"Python files (*.py)", path, context, Vs::PathInfo::scriptsDirectory(true).wstring(), "Scripts",
        localized("OpenScriptFilenameCaption", "Open a script file to run"));
}

} // namespace

CommandBase* RunScriptCmdDef::onCreateCommand(CommandContext* context)
{
    auto* command = new RunScriptCmd(this, context);
    command->repeatable(false);
    return command;
}

RunScriptCmd::RunScriptCmd(CommandDefinition* definition, CommandContext* context, const std::wstring& path)
    : Implements(definition, context)
{
    commandContext()->addArgument(CommandContext::pathArgumentName(), path);
    repeatable(false);
}

void RunScriptCmd::runsDirectly(bool direct)
{
    s_runsDirectly = direct;
}

void RunScriptCmd::onExecute(Vs::Status& status)
{
    std::wstring path = commandContext()->argumentAsString(CommandContext::pathArgumentName());
    if (path.empty() && !askForScript(path, commandContext()))
        FileDialog::tellMissing(status);
    if (path.empty())
        return;
    RecentPaths::scripts().add(path);
    if (s_runsDirectly)
        Vs::PythonManager::get()->runScriptFile(path, status);
    else
        Application::get()->deferredTasks()->add(new RunPythonTask(path));
}

bool RunPythonTask::run()
{
    // The command that put it here is recorded, and runs it again.
    const Vs::TranscriptMgr::Unrecorded unrecorded;
    Vs::Status status;
    if (!m_path.empty())
        Vs::PythonManager::get()->runScriptFile(m_path, status);
    // The script has said why; whoever waits for the line that queued it must not go on as if all were well.
    if (status.isError())
        Vs::TranscriptMgr::get()->lineFails(
            localizedFormat("ScriptFailed", "The script %1% failed.", m_path));
    return true;
}

} // namespace Vu::Commands
