#include "UI/Commands/Help/ProgramCmds.h"

#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Session/WelcomeScreen.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Resources.h"

#include <tuple>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow CIPCmdDef::kRow              = {.key = L"CIPCommand", .title = "Customer Involvement Program", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow PreferencesCmdDef::kRow      = {.key = L"PreferencesCommand", .title = "Preferences", .hotkey = "Ctrl+,", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ProductTourGuideCmdDef::kRow = {.key = L"ProductTourGuideCommand", .title = "Tour the Interface", .icon = &Resources::TourGuide, .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow SearchCommandsCmdDef::kRow   = {.key = L"SearchCommandsCommand", .title = "Search Commands", .hotkey = "Ctrl+Shift+P", .groups = {&CommandGroup::BaseGroup}, .readonly = true, .scriptable = false};
constinit const CommandRow WelcomeScreenCmdDef::kRow    = {.key = L"WelcomeScreenCommand", .title = "Welcome Screen", .icon = &Resources::WelcomeScreen, .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

CommandBase* CIPCmdDef::onCreateCommand(CommandContext* context)
{
    ProgressBar::get()->enable(false);
    return new CIPCmd(this, context);
}

void PreferencesCmd::onExecute(Vs::Status&)
{
    Application::get()->showPreferences();
}

void ProductTourGuideCmd::onExecute(Vs::Status&)
{
    std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"Options.TourGuide");
}

void SearchCommandsCmdDef::createCommandDef()
{
    static SearchCommandsCmdDef definition;
}

void SearchCommandsCmd::onExecute(Vs::Status&)
{
    if (WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow())
        window->toggleSearch();
}

void WelcomeScreenCmdDef::createCommandDef()
{
    static WelcomeScreenCmdDef definition;
}

void WelcomeScreenCmd::onExecute(Vs::Status&)
{
    WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    if (window && window->minimized())
        window->activateWindow();
    WelcomeScreen::get()->show();
}

} // namespace Vu::Commands
