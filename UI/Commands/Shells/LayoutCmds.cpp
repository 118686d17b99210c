#include "UI/Commands/Shells/LayoutCmds.h"

#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDialog.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/LayoutStrategy.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ResetToDefaultLayoutCmdDef::kRow = {.key = L"ResetToDefaultLayoutCommand", .title = "Reset to Default Layout", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow ShowCommandPaletteCmdDef::kRow   = {.key = L"ShowCommandPaletteCommand", .title = "Show Command Palette", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow HideCommandPaletteCmdDef::kRow   = {.key = L"HideCommandPaletteCommand", .title = "Hide Command Palette", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

void showPalette(bool show)
{
    const CommandBase* active = CommandBase::getActiveCommand();
    if (CommandDialog* dialog = active ? active->commandDialog() : nullptr)
        dialog->show(show);
}

} // namespace

std::wstring ResetToDefaultLayoutCmdDef::refusal(CommandContext& context)
{
    return hasAssetSession(&context)
               ? L""
               : localized("NoLayoutToReset", "No model is open whose window could be reset.");
}

void ResetToDefaultLayoutCmd::onWindow(WorkspaceWindow& window)
{
    // A divided window starts again with one view.
    if (auto* shell = Vs::cast<AssetShell>(window.workspace()->shellManager()->activeShell()))
        shell->updateArrangement(std::wstring());
    Arrangement* arrangement = window.activeArrangement();
    if (!arrangement || !arrangement->layout())
        return;
    Layout* layout = Layout::load(Resources::AssetShellLayout()->localPath(), std::wstring());
    const bool browser = UIBaseOptionGroup::get()->wantToShowBrowser();
    LayoutStrategy::activeStrategy()->apply(arrangement, layout)->destroy();
    UIBaseOptionGroup::get()->wantToShowBrowser(browser);
}

ShowCommandPaletteCmd::ShowCommandPaletteCmd(ShowCommandPaletteCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ShowCommandPaletteCmd::onExecute(Vs::Status&)
{
    showPalette(true);
}

HideCommandPaletteCmd::HideCommandPaletteCmd(HideCommandPaletteCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void HideCommandPaletteCmd::onExecute(Vs::Status&)
{
    showPalette(false);
}

} // namespace Vu::Commands
