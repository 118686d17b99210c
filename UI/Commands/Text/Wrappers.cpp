#include "UI/Commands/Text/Wrappers.h"

#include "Server/Base/SerializableObject.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/DocumentSession.h"
#include "UI/Commands/ActiveCommandCmds.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/ExportCmd.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/ExitApplicationCmd.h"
#include "UI/Commands/Shells/AssetCmds.h"
#include "UI/Commands/Shells/EnvironmentCmds.h"
#include "UI/Commands/Shells/ShellCmds.h"

namespace Vu::Commands {

void addObject(CommandContext& context, const Vs::UniqueString* key, const char* factory,
               const std::wstring& text)
{
    Vs::SerializableObjectFactory* found = Vs::SerializableObjectFactory::findFactory(factory);
    if (Vs::SerializableObject* object = found ? found->deserialize(text, false) : nullptr)
        context.addArgument(key, object);
}

namespace {

using Parameters = Vs::TextCommandParameters;

void onePath(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        context.addArgument(CommandContext::pathArgumentName(), parameters[0]);
}

void firstPath(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() != 0)
        context.addArgument(CommandContext::pathArgumentName(), parameters[0]);
}

void documentSession(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() > 0)
        addObject(context, CloseDocumentCmdDef::documentSessionArgumentName(),
                  DocumentSessionSerializableObjectFactory::kName, parameters[0]);
}

void assetSession(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() > 0)
        addObject(context, AssetShellCmdDef::assetSessionArgumentName(),
                  AssetSessionSerializableObjectFactory::kName, parameters[0]);
}

void oneAssetSession(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        assetSession(parameters, context);
}

void environmentType(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        context.addArgument(ActivateEnvironmentCmdDef::environmentTypeArgumentName(), parameters[0]);
}

constexpr bool kGlobal = true;
constexpr bool kFlush = true;
constexpr const wchar_t* kArea = L"VuCommands";

// clang-format off
constexpr WrapperRow kExitApplication   = {kArea, L"ExitApplicationCmd",   L"Exit the application.", "", &ExitApplicationCmdDef::info};
constexpr WrapperRow kCloseAsset        = {kArea, L"CloseAssetCmd",        L"Exit the active asset.", "", &CloseAssetCmdDef::info};
constexpr WrapperRow kExportAs          = {kArea, L"ExportAsCmd",          L"Save the active asset as translator supported file types.", "", &ExportAsCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kExport            = {kArea, L"ExportCmd",            L"Save the active asset as translator supported file types.", "", &ExportCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kNextAsset         = {kArea, L"NextAssetCmd",         L"Active the next asset.", "", &NextAssetCmdDef::info};
constexpr WrapperRow kPreviousAsset     = {kArea, L"PreviousAssetCmd",     L"Active the previous asset.", "", &PreviousAssetCmdDef::info};
constexpr WrapperRow kSwitchAsset       = {kArea, L"SwitchAssetCmd",       L"<AssetSession> Switch Asset.", "", &SwitchAssetCmdDef::info, oneAssetSession};
constexpr WrapperRow kCancel            = {kArea, L"CancelCmd",            L"Cancel the active command.", "", &CancelCmdDef::info};
constexpr WrapperRow kCommit            = {kArea, L"CommitCmd",            L"Commit the active command.", "", &CommitCmdDef::info};
constexpr WrapperRow kCloseAllDocuments = {kArea, L"CloseAllDocumentsCmd", L"Close all the active documents.", "", &CloseAllDocumentsCmdDef::info, documentSession, !kGlobal, kFlush};
constexpr WrapperRow kCloseDocument     = {kArea, L"CloseDocumentCmd",     L"Close the active document.\nUsage: VuCommands.CloseDocumentCmd", "", &CloseDocumentCmdDef::info, documentSession, !kGlobal, kFlush};
constexpr WrapperRow kOpenDocument      = {kArea, L"OpenDocumentCmd",      L"<filename> Open the specified document.", "", &OpenDocumentCmdDef::info, firstPath, kGlobal};
constexpr WrapperRow kAssetShell        = {kArea, L"AssetShellCmd",        L"<AssetSession> Activate asset shell.", "", &AssetShellCmdDef::info, assetSession};
constexpr WrapperRow kManagementShell   = {kArea, L"ManagementShellCmd",   L"Activate management shell.", "", &ManagementShellCmdDef::info};
constexpr WrapperRow kActivateEnvironment      = {kArea, L"ActivateEnvironmentCmd",      L"<EnvironmentType> Activate environment.", "", &ActivateEnvironmentCmdDef::info, environmentType};
constexpr WrapperRow kCycleWorkspacesForward   = {kArea, L"CycleWorkspacesForwardCmd",   L"<asset_type> Cycle Workspaces Forward.", "%s%s", &CycleWorkspacesForwardCmdDef::info};
constexpr WrapperRow kCycleWorkspacesBackward  = {kArea, L"CycleWorkspacesBackwardCmd",  L"<asset_type> Cycle Workspaces Backward.", "%s%s", &CycleWorkspacesBackwardCmdDef::info};
constexpr WrapperRow kReturnToEnvironment      = {kArea, L"ReturnToEnvironmentCmd",      L"Return environment", "", &ReturnToEnvironmentCmdDef::info};
// clang-format on

Wrapper<kExitApplication> TextCmdVuCommandsExitApplicationCmd;
Wrapper<kCloseAsset> TextCmdVuCommandsCloseAssetCmd;
Wrapper<kExportAs> TextCmdVuCommandsExportAsCmd;
Wrapper<kExport> TextCmdVuCommandsExportCmd;
Wrapper<kNextAsset> TextCmdVuCommandsNextAssetCmd;
Wrapper<kPreviousAsset> TextCmdVuCommandsPreviousAssetCmd;
Wrapper<kSwitchAsset> TextCmdVuCommandsSwitchAssetCmd;
Wrapper<kCancel> TextCmdVuCommandsCancelCmd;
Wrapper<kCommit> TextCmdVuCommandsCommitCmd;
Wrapper<kCloseAllDocuments> TextCmdVuCommandsCloseAllDocumentsCmd;
Wrapper<kCloseDocument> TextCmdVuCommandsCloseDocumentCmd;
Wrapper<kOpenDocument> TextCmdVuCommandsOpenDocumentCmd;
Wrapper<kAssetShell> TextCmdVuCommandsAssetShellCmd;
Wrapper<kManagementShell> TextCmdVuCommandsManagementShellCmd;
Wrapper<kActivateEnvironment> TextCmdVuCommandsActivateEnvironmentCmd;
Wrapper<kCycleWorkspacesForward> TextCmdVuCommandsCycleWorkspacesForwardCmd;
Wrapper<kCycleWorkspacesBackward> TextCmdVuCommandsCycleWorkspacesBackwardCmd;
Wrapper<kReturnToEnvironment> TextCmdVuCommandsReturnToEnvironmentCmd;

} // namespace
} // namespace Vu::Commands
