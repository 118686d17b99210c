// The lines of the subject area "Dashboard", which web pages of the lifecycle service run.

#include "UI/Base/Command/TextRows.h"
#include "UI/Commands/Itemhub/ItemhubAuthenticateWithTokenCmd.h"
#include "UI/Commands/Itemhub/ItemhubCreateCommentIDCmd.h"
#include "UI/Commands/Itemhub/ItemhubInsertComponentCmd.h"
#include "UI/Commands/Itemhub/ItemhubNewItemCmd.h"
#include "UI/Commands/Itemhub/ItemhubOpenAttachmentCmd.h"
#include "UI/Commands/Itemhub/ItemhubSaveCmd.h"

namespace Vu::Commands {
namespace {

using Parameters = Vs::TextCommandParameters;

void token(const Parameters& parameters, CommandContext& context)
{
    using Def = ItemhubAuthenticateWithTokenCmdDef;
    if (parameters.parameters() < 2)
        return;
    context.addArgument(Def::tenantUri(), parameters[0]);
    context.addArgument(Def::token(), parameters[1]);
    if (parameters.parameters() == 3)
        context.addArgument(Def::tenant(), parameters[2]);
}

void newItem(const Parameters& parameters, CommandContext& context)
{
    using Def = ItemhubNewItemCmdDef;
    if (parameters.parameters() != 5)
        return;
    context.addArgument(Def::workspaceId(), parameters.real(0));
    context.addArgument(Def::itemName(), parameters[1]);
    context.addArgument(Def::linkedItemId(), parameters[2]);
    context.addArgument(Def::linkedItemWorkspaceId(), parameters.real(3));
    context.addArgument(Def::assetType(), parameters[4]);
}

// The commands read it under other names; the pages that run these lines rely on its being ignored.
void onePath(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        context.addArgument(CommandContext::pathArgumentName(), parameters[0]);
}

void component(const Parameters& parameters, CommandContext& context)
{
    using Def = ItemhubInsertComponentCmdDef;
    if (parameters.parameters() != 2)
        return;
    context.addArgument(Def::workspaceId(), parameters.real(0));
    context.addArgument(Def::itemId(), parameters.real(1));
}

constexpr bool kGlobal = true;
constexpr const wchar_t* kArea = L"Dashboard";

// clang-format off
constexpr WrapperRow kWrappers[] = {
    {kArea, L"AuthenticateWithTokenCmd", L"Dashboard Authenticate with token.\nUsage: Dashboard.AuthenticateWithTokenCmd <tenantUrl> <token> <tenant>", "%s%s", &ItemhubAuthenticateWithTokenCmdDef::info, token, kGlobal},
    {kArea, L"NewItemCmd", L"New dashboard item.\nUsage: Dashboard.NewItemCmd <workspaceId> <itemName> <linkedItemId> <linkedItemWorkspaceId> <assetType>", "%s%s%s%s", &ItemhubNewItemCmdDef::info, newItem, kGlobal},
    {kArea, L"SaveCmd", L"Save dashboard item.\nUsage: Dashboard.SaveCmd <filename>", "", &ItemhubSaveCmdDef::info, nullptr, kGlobal},
    {kArea, L"CreateCommentIDCmd", L"Create comment ID for the given post ID.\nUsage: Dashboard.CreateCommentIDCmd <postID>", "%s", &ItemhubCreateCommentIDCmdDef::info, onePath, kGlobal},
    {kArea, L"OpenAttachmentCmd", L"Open dashboard file.\nUsage: Dashboard.OpenAttachmentCmd <filename>", "%s", &ItemhubOpenAttachmentCmdDef::info, onePath, kGlobal},
    {kArea, L"InsertComponentCmd", L"Insert component.\nUsage: Dashboard.InsertComponentCmd <Workspace Id> <Item Id>", "%s%s", &ItemhubInsertComponentCmdDef::info, component, kGlobal},
};
// clang-format on

const Wrappers<kWrappers> theWrappers;

} // namespace
} // namespace Vu::Commands
