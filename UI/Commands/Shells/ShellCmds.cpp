#include "UI/Commands/Shells/ShellCmds.h"

#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ManagementShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ManagementShellCmdDef::kRow = {
    .key = L"ManagementShellCommand", .title = "", .icon = &Resources::ManagementShell,
    .tooltip = "Home", .tooltipKey = "ManagementShellCommandDesc",
    .groups = {&CommandGroup::ShellGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow AssetShellCmdDef::kRow = {
    .key = L"AssetShellCommand", .title = "Asset Shell", .icon = &Resources::AssetShell,
    .groups = {&CommandGroup::ShellGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"AssetSession"}};
// clang-format on

bool ManagementShellCmdDef::onIsApplicable(CommandContext*) const
{
    return true;
}

ManagementShellCmd::ManagementShellCmd(ManagementShellCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType ManagementShellCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void ManagementShellCmd::onExecute(Vs::Status&)
{
    Workspace* workspace = commandContext()->workspace();
    if (ManagementShell* shell = workspace ? findShell<ManagementShell>(workspace->shellManager()) : nullptr)
        workspace->shellManager()->activeShell(shell);
}

const Vs::UniqueString* AssetShellCmdDef::assetSessionArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AssetSession", true);
    return name;
}

bool AssetShellCmdDef::onIsApplicable(CommandContext* context) const
{
    Workspace* workspace = context->workspace();
    AssetShell* shell = workspace ? findShell<AssetShell>(workspace->shellManager()) : nullptr;
    return shell && workspace->shellManager()->activeShell() != shell && !shell->assetSessions().empty();
}

AssetShellCmd::AssetShellCmd(AssetShellCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType AssetShellCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void AssetShellCmd::onExecute(Vs::Status&)
{
    Workspace* workspace = commandContext()->workspace();
    auto* session =
        Vs::cast<AssetSession>(commandContext()->argument(AssetShellCmdDef::assetSessionArgumentName()));
    if (!workspace || !session)
        return;
    if (Workspace* active = WorkspaceMgr::activeWorkspace())
        active->resetCounter();
    // A session may be shown before anything else has made the shell.
    findOrMakeShell<AssetShell>(workspace->shellManager());
    SharedWorkflows::setCurrentAssetSessionForWorkspace(workspace, session, true, true);
}

} // namespace Vu::Commands
