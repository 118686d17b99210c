#include "UI/Commands/Transcripts/TranscriptingCmds.h"

#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Transcripts/ReplayTasks.h"
#include "UI/Commands/Transcripts/ValidationDialog.h"

#include <boost/filesystem/operations.hpp>

#include <exception>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow StartTranscriptingCmdDef::kRow     = {.key = L"StartTranscriptingCommand", .title = "Start Transcripting", .icon = &Resources::StartTranscripting, .groups = {&CommandGroup::DebugGroup}, .scriptable = false};
constinit const CommandRow StartPerfTranscriptingCmdDef::kRow = {.key = L"StartPerfTranscriptingCommand", .title = "Start Performance Transcripting", .icon = &Resources::StartTranscripting, .groups = {&CommandGroup::DebugGroup}, .scriptable = false};
constinit const CommandRow StopTranscriptingCmdDef::kRow      = {.key = L"StopTranscriptingCommand", .title = "Stop Transcripting", .icon = &Resources::StopTranscripting, .groups = {&CommandGroup::DebugGroup}, .scriptable = false};
constinit const CommandRow ReplayTranscriptCmdDef::kRow       = {.key = L"ReplayTranscriptCommand", .title = "Replay Transcript", .icon = &Resources::ReplayTranscript, .groups = {&CommandGroup::DebugGroup}, .scriptable = false};
constinit const CommandRow ClearAllAlertsCmdDef::kRow         = {.key = L"ClearAllAlertsCommand", .title = "Clear all Alerts", .tooltip = "Clear all Alerts.", .tooltipKey = "ClearAllAlertsCommandDesc", .groups = {&CommandGroup::DebugGroup}, .scriptable = false};
// clang-format on

namespace {

void enableControl(CommandDefinition& definition, bool enabled)
{
    if (InputControl* control = definition.inputControl())
        control->enabled(enabled);
}

bool recording()
{
    return Vs::TranscriptMgr::get()->recording();
}

/// Returns whether the user named a file; whether it can be written is told by the transcripts themselves.
bool startRecording()
{
    std::wstring path;
    if (!FileDialog::getFilenameForSave(L"Text Command Transcript (*.txt);;Python Transcript (*.py)", path))
        return false;
    if (Vs::TranscriptMgr::get()->startRecording(path, Vs::TranscriptMgr::typeOf(path)))
        RecentPaths::scripts().add(path);
    return true;
}

} // namespace

void StartTranscriptingCmdDef::onUpdateInputControl(CommandContext*)
{
    enableControl(*this, !recording());
}

void StartTranscriptingCmd::onExecute(Vs::Status&)
{
    if (startRecording())
        ValidationDialog::get()->startNormalValidation();
}

void StartPerfTranscriptingCmdDef::onUpdateInputControl(CommandContext*)
{
    enableControl(*this, !recording());
}

void StartPerfTranscriptingCmd::onExecute(Vs::Status&)
{
    if (startRecording())
        ValidationDialog::get()->startPerformanceValidation();
}

void StopTranscriptingCmdDef::onUpdateInputControl(CommandContext*)
{
    enableControl(*this, recording());
}

void StopTranscriptingCmd::onExecute(Vs::Status& status)
{
    // Whatever becomes of the window, the recording ends.
    try {
        ValidationDialog::get()->endValidation();
    } catch (const std::exception& fault) {
        status.addError(Vs::Strings::widen(fault.what()));
    }
    Vs::TranscriptMgr::get()->endRecording();
}

void ReplayTranscriptCmd::onExecute(Vs::Status&)
{
    std::wstring path;
    if (!FileDialog::getFilenameForOpen(L"Transcript File (*.txt; *.py)", path, {}))
        return;
    boost::system::error_code error;
    if (!boost::filesystem::exists(path, error))
        return;
    RecentPaths::scripts().add(path);
    Application::get()->deferredTasks()->add(new ReplayTranscriptTask(path));
}

ClearAllAlertsCmd::ClearAllAlertsCmd(CommandDefinition* definition, CommandContext* context)
    : UnrepeatedDebugTool(definition, context)
{
    usesCommandDialog(false);
}

void ClearAllAlertsCmd::onExecute(Vs::Status&)
{
    CommandMgr* manager = CommandMgr::get();
    AlertController* alerts = manager ? manager->GetAlertController() : nullptr;
    if (!alerts)
        return;
    alerts->clearAllAlerts();
    alerts->enabled(false);
}

} // namespace Vu::Commands
