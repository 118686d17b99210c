#include "UI/Commands/Shells/WindowCmds.h"

#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow MinimizeCmdDef::kRow                = {.key = L"MinimizeCommand", .title = "Minimize", .icon = &Resources::FullScreen, .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ZoomWindowCmdDef::kRow              = {.key = L"ZoomWindowCommand", .title = "Zoom Window", .icon = &Resources::FullScreen, .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow BringAllToFrontCmdDef::kRow         = {.key = L"BringAllToFrontCommand", .title = "Bring All to Front", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ShowWorkspaceFullScreenCmdDef::kRow = {
    .key = L"ShowWorkspaceFullScreenCommand", .title = "Full Screen",
    .tooltip = "Enter Full Screen", .tooltipKey = "ShowWorkspaceFullScreenCommandDesc", .hotkey = "Ctrl+Shift+F",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ShowWorkspaceNormalCmdDef::kRow = {
    .key = L"ShowWorkspaceNormalCommand", .title = "Normal Screen",
    .tooltip = "Exit Full Screen", .tooltipKey = "ShowWorkspaceNormalCommandDesc", .hotkey = "Ctrl+Shift+F",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

enum WindowState { kNormal = 0, kMinimized = 1, kZoomed = 2 };

bool isFullScreen()
{
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    return window && window->fullScreen();
}

} // namespace

OnWindowCmd::OnWindowCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void OnWindowCmd::onExecute(Vs::Status&)
{
    if (WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow())
        onWindow(*window);
}

void MinimizeCmd::onWindow(WorkspaceWindow& window)
{
    window.windowState(kMinimized);
}

void ZoomWindowCmd::onWindow(WorkspaceWindow& window)
{
    if (window.windowState() == kZoomed)
        window.windowState(kNormal);
    else if (window.windowState() == kNormal)
        window.windowState(kZoomed);
}

void BringAllToFrontCmd::onWindow(WorkspaceWindow& window)
{
    window.activateWindow();
}

bool ShowWorkspaceFullScreenCmdDef::onIsApplicable(CommandContext*) const
{
    return !isFullScreen();
}

void ShowWorkspaceFullScreenCmd::onWindow(WorkspaceWindow& window)
{
    window.fullScreen(true);
    ToolbarManager::get()->hideToolbar(L"QATRight");
}

bool ShowWorkspaceNormalCmdDef::onIsApplicable(CommandContext*) const
{
    return isFullScreen();
}

void ShowWorkspaceNormalCmd::onWindow(WorkspaceWindow& window)
{
    window.fullScreen(false);
}

} // namespace Vu::Commands
