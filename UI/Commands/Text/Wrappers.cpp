#include "UI/Commands/Text/Wrappers.h"

#include "Server/Base/SerializableObject.h"
#include "Server/DataModel/AssetType.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/DocumentSession.h"
#include "UI/Commands/ActiveCommandCmds.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/ExportCmd.h"
#include "UI/Commands/Documents/NewDocumentCmd.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Documents/OpenDocumentsCmds.h"
#include "UI/Commands/Documents/RecentDocumentsCmd.h"
#include "UI/Commands/Documents/SaveDocumentCmd.h"
#include "UI/Commands/ExitApplicationCmd.h"
#include "UI/Commands/Shells/ActiveViewAssetCmd.h"
#include "UI/Commands/Shells/AssetCmds.h"
#include "UI/Commands/Shells/EnvironmentCmds.h"
#include "UI/Commands/Shells/InsertAssetCmd.h"
#include "UI/Commands/Shells/ShellCmds.h"

#include <boost/lexical_cast.hpp>

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

void sessionAndPath(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 2)
        addObject(context, CloseDocumentCmdDef::documentSessionArgumentName(),
                  DocumentSessionSerializableObjectFactory::kName, parameters[0]);
    if (parameters.parameters() == 1 || parameters.parameters() == 2)
        context.addArgument(CommandContext::pathArgumentName(), parameters[parameters.parameters() - 1]);
}

void assetTypeName(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() > 0)
        addObject(context, NewDocumentCmdDef::assetTypeArgumentName(),
                  Vs::UniqueStringSerializableObjectFactory::kName, parameters[0]);
    if (parameters.parameters() > 1)
        context.addArgument(NewDocumentCmdDef::uuidArgumentName(), parameters[1]);
}

void insertedAsset(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() > 0)
        addObject(context, InsertAssetCmdDef::assetTypeArgumentName(),
                  Vs::AssetTypeSerializableObjectFactory::kName, parameters[0]);
    if (parameters.parameters() > 1)
        addObject(context, InsertAssetCmdDef::documentSessionArgumentName(),
                  DocumentSessionSerializableObjectFactory::kName, parameters[1]);
    if (parameters.parameters() > 2)
        context.addArgument(InsertAssetCmdDef::uuidArgumentName(), parameters[2]);
    // A recording has the flag of a hidden asset behind what a person writes.
    if (parameters.parameters() > 3)
        context.addArgument(InsertAssetCmdDef::hiddenArgumentName(), boost::lexical_cast<int>(parameters[3]));
}

void assetSessionName(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() > 0)
        context.addArgument(ActiveViewAssetCmdDef::assetSessionNameArgumentName(), parameters[0]);
}

constexpr bool kGlobal = true;
constexpr bool kFlush = true;
constexpr const wchar_t* kArea = L"VuCommands";

// clang-format off
constexpr WrapperRow kExitApplication   = {kArea, L"ExitApplicationCmd",   L"Exit the application.", "", &ExitApplicationCmdDef::info};
constexpr WrapperRow kCloseAsset        = {kArea, L"CloseAssetCmd",        L"Exit the active asset.", "", &CloseAssetCmdDef::info};
constexpr WrapperRow kExportAs          = {kArea, L"ExportAsCmd",          L"Save the active asset as translator supported file types.", "", &ExportAsCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kExport            = {kArea, L"ExportCmd",            L"Save the active asset as translator supported file types.", "", &ExportCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kInsertAsset       = {kArea, L"InsertAssetCmd",       L"<AssetTypeId> <DocumentSession> <Uuid> Creates a new asset inside the given or active document", "%s%s%s", &InsertAssetCmdDef::info, insertedAsset};
constexpr WrapperRow kNextAsset         = {kArea, L"NextAssetCmd",         L"Active the next asset.", "", &NextAssetCmdDef::info};
constexpr WrapperRow kPreviousAsset     = {kArea, L"PreviousAssetCmd",     L"Active the previous asset.", "", &PreviousAssetCmdDef::info};
constexpr WrapperRow kSwitchAsset       = {kArea, L"SwitchAssetCmd",       L"<AssetSession> Switch Asset.", "", &SwitchAssetCmdDef::info, oneAssetSession};
constexpr WrapperRow kActiveViewAsset   = {kArea, L"ActiveViewAssetCmd",   L"<AssetSession> Active asset view.", "", &ActiveViewAssetCmdDef::info, assetSessionName};
constexpr WrapperRow kCancel            = {kArea, L"CancelCmd",            L"Cancel the active command.", "", &CancelCmdDef::info};
constexpr WrapperRow kCommit            = {kArea, L"CommitCmd",            L"Commit the active command.", "", &CommitCmdDef::info};
constexpr WrapperRow kCloseAllDocuments = {kArea, L"CloseAllDocumentsCmd", L"Close all the active documents.", "", &CloseAllDocumentsCmdDef::info, documentSession, !kGlobal, kFlush};
constexpr WrapperRow kCloseDocument     = {kArea, L"CloseDocumentCmd",     L"Close the active document.\nUsage: VuCommands.CloseDocumentCmd", "", &CloseDocumentCmdDef::info, documentSession, !kGlobal, kFlush};
constexpr WrapperRow kCurrentlyOpen     = {kArea, L"CurrentlyOpenDocumentsCmd", L"<asset_type> Recent Documents?? or maybe CurrentlyOpenDocumentsCmd??", "%s%s", &CurrentlyOpenDocumentsCmdDef::info};
constexpr WrapperRow kCycleOpen         = {kArea, L"CycleOpenDocumentsCmd", L"<asset_type> Cycle Documents.", "%s%s", &CycleOpenDocumentsCmdDef::info};
constexpr WrapperRow kNewDocument       = {kArea, L"NewDocumentCmd",       L"<asset_type> Create a document with specified asset type.", "%s%s", &NewDocumentCmdDef::info, assetTypeName, kGlobal};
constexpr WrapperRow kNewSingleDocument = {kArea, L"NewSingleDocumentCmd", L"<asset_type> Create a document with specified asset type.", "%s%s", &NewSingleDocumentCmdDef::info, assetTypeName, kGlobal};
constexpr WrapperRow kOpenDocument      = {kArea, L"OpenDocumentCmd",      L"<filename> Open the specified document.", "", &OpenDocumentCmdDef::info, firstPath, kGlobal};
constexpr WrapperRow kRecentDocuments   = {kArea, L"RecentDocumentsCmd",   L"<asset_type> Recent Documents", "%s%s", &RecentDocumentsCmdDef::info};
constexpr WrapperRow kSaveDocumentAs    = {kArea, L"SaveDocumentAsCmd",    L"Save the active document as a new one.", "", &SaveDocumentAsCmdDef::info, sessionAndPath};
constexpr WrapperRow kSaveDocument      = {kArea, L"SaveDocumentCmd",      L"Save the active document.", "", &SaveDocumentCmdDef::info, sessionAndPath};
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
Wrapper<kInsertAsset> TextCmdVuCommandsInsertAssetCmd;
Wrapper<kNextAsset> TextCmdVuCommandsNextAssetCmd;
Wrapper<kPreviousAsset> TextCmdVuCommandsPreviousAssetCmd;
Wrapper<kSwitchAsset> TextCmdVuCommandsSwitchAssetCmd;
Wrapper<kActiveViewAsset> TextCmdVuCommandsActiveViewAssetCmd;
Wrapper<kCancel> TextCmdVuCommandsCancelCmd;
Wrapper<kCommit> TextCmdVuCommandsCommitCmd;
Wrapper<kCloseAllDocuments> TextCmdVuCommandsCloseAllDocumentsCmd;
Wrapper<kCloseDocument> TextCmdVuCommandsCloseDocumentCmd;
Wrapper<kCurrentlyOpen> TextCmdVuCommandsCurrentlyOpenDocumentsCmd;
Wrapper<kCycleOpen> TextCmdVuCommandsCycleOpenDocumentsCmd;
Wrapper<kNewDocument> TextCmdVuCommandsNewDocumentCmd;
Wrapper<kNewSingleDocument> TextCmdVuCommandsNewSingleDocumentCmd;
Wrapper<kOpenDocument> TextCmdVuCommandsOpenDocumentCmd;
Wrapper<kRecentDocuments> TextCmdVuCommandsRecentDocumentsCmd;
Wrapper<kSaveDocumentAs> TextCmdVuCommandsSaveDocumentAsCmd;
Wrapper<kSaveDocument> TextCmdVuCommandsSaveDocumentCmd;
Wrapper<kAssetShell> TextCmdVuCommandsAssetShellCmd;
Wrapper<kManagementShell> TextCmdVuCommandsManagementShellCmd;
Wrapper<kActivateEnvironment> TextCmdVuCommandsActivateEnvironmentCmd;
Wrapper<kCycleWorkspacesForward> TextCmdVuCommandsCycleWorkspacesForwardCmd;
Wrapper<kCycleWorkspacesBackward> TextCmdVuCommandsCycleWorkspacesBackwardCmd;
Wrapper<kReturnToEnvironment> TextCmdVuCommandsReturnToEnvironmentCmd;

} // namespace
} // namespace Vu::Commands
