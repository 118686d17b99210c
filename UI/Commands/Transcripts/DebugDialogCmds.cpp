#include "UI/Commands/Transcripts/DebugDialogCmds.h"

#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/ForwardedRun.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Transcripts/DebugDialog.h"
#include "UI/Commands/Transcripts/TranscriptingCmds.h"

#include <tuple>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ShowDebugDialogCmdDef::kRow    = {.key = L"ShowDebugDialogCommand", .title = "Show Debug Dialog", .icon = &Resources::FullScreen, .groups = {&CommandGroup::DebugGroup}, .scriptable = false};
constinit const CommandRow HideDebugDialogCmdDef::kRow    = {.key = L"HideDebugDialogCommand", .title = "Hide Debug Dialog", .icon = &Resources::FullScreen, .groups = {&CommandGroup::DebugGroup}, .scriptable = false};
constinit const CommandRow DestroyDebugDialogCmdDef::kRow = {.key = L"DestroyDebugDialogCommand", .title = "Destroy Debug Dialog", .groups = {&CommandGroup::DebugGroup}, .readonly = true, .scriptable = false};
// clang-format on

bool ShowDebugDialogCmdDef::onIsApplicable(CommandContext*) const
{
    return !UIBaseOptionGroup::get()->showDebugDialog();
}

void ShowDebugDialogCmd::onExecute(Vs::Status&)
{
    DebugDialog::get()->show();
    DebugDialog::saveShowState(true);
}

bool HideDebugDialogCmdDef::onIsApplicable(CommandContext*) const
{
    return UIBaseOptionGroup::get()->showDebugDialog();
}

void HideDebugDialogCmd::onExecute(Vs::Status&)
{
    DebugDialog::get()->hide();
    DebugDialog::saveShowState(false);
}

void DestroyDebugDialogCmd::onExecute(Vs::Status&)
{
    commandContext()->accessPoint(ECommandAccessPoint::Command);
    DebugDialog::get()->hide();
}

void runFromDialog(const Info* info)
{
    CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(info->key());
    CommandContext context = CommandContext::activeContext();
    context.accessPoint(ECommandAccessPoint::Command);
    if (definition)
        std::ignore = definition->executeCommand(context);
}

namespace {

constexpr DirectTextRow kShowDebugDialog = {L"Debug", L"ShowDebugDialog",
                                            L"[/on][/off] Show/hide debug dialog"};
constexpr DirectTextRow kClearAllAlerts = {L"Transcripting", L"ClearAllAlerts", L"Clear all alerts."};

Vs::TextCommandResult runNow(const Info* info, bool executeImmediately)
{
    CommandContext context = CommandContext::activeContext();
    context.executeImmediately(executeImmediately);
    const ForwardedRun forwarded;
    if (CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(info->key()))
        std::ignore = definition->executeCommand(context);
    return {0, {}};
}

class TextCmdDebugShowDebugDialog : public DirectTextCommand<kShowDebugDialog>
{
public:
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        const bool hides = parameters.hasFlag(L"off");
        return runNow(hides ? HideDebugDialogCmdDef::info() : ShowDebugDialogCmdDef::info(),
                      !parameters.viaUI());
    }
};

class TextCmdTranscriptingClearAllAlerts : public DirectTextCommand<kClearAllAlerts>
{
public:
    Vs::TextCommandResult execute(const Vs::TextCommandParameters&) override
    {
        return runNow(ClearAllAlertsCmdDef::info(), true);
    }
};

TextCmdDebugShowDebugDialog theShowDebugDialog;
TextCmdTranscriptingClearAllAlerts theClearAllAlerts;

} // namespace
} // namespace Vu::Commands
