#include "Server/Base/SerializableObject.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/AssetType.h"
#include "UI/Base/Command/CommitRefusal.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Commands/ActiveCommand.h"
#include "UI/Commands/ActiveCommandCmds.h"
#include "UI/Commands/Camera/OrbiconCmds.h"
#include "UI/Commands/Camera/ViewCmdDefs.h"
#include "UI/Commands/Camera/ViewEnvironmentFileCmd.h"
#include "UI/Commands/Cloud/CloudOpenDocumentCmd.h"
#include "UI/Commands/Cloud/CloudSaveAsCmd.h"
#include "UI/Commands/Cloud/CloudSaveCmd.h"
#include "UI/Commands/Cloud/CloudSessionCmds.h"
#include "UI/Commands/Cloud/ShareCmd.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/ExportCmd.h"
#include "UI/Commands/Documents/NewDocumentCmd.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Documents/OpenDocumentsCmds.h"
#include "UI/Commands/Documents/RecentDocumentsCmd.h"
#include "UI/Commands/Documents/SaveDocumentCmd.h"
#include "UI/Commands/ExitApplicationCmd.h"
#include "UI/Commands/Help/LinkCmds.h"
#include "UI/Commands/Help/ProgramCmds.h"
#include "UI/Commands/Help/SubscriptionCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Selection/ClipboardCmds.h"
#include "UI/Commands/Selection/RenameCommand.h"
#include "UI/Commands/Selection/SelectCmd.h"
#include "UI/Commands/Selection/SelectionFilterCmd.h"
#include "UI/Commands/Selection/SnapCmds.h"
#include "UI/Commands/Selection/UndoCmds.h"
#include "UI/Commands/Selection/UndoRedoDropDown.h"
#include "UI/Commands/Shells/ActiveViewAssetCmd.h"
#include "UI/Commands/Shells/AreaCmds.h"
#include "UI/Commands/Shells/AssetCmds.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/EnvironmentCmds.h"
#include "UI/Commands/Shells/InsertAssetCmd.h"
#include "UI/Commands/Shells/LayoutCmds.h"
#include "UI/Commands/Shells/ShellCmds.h"
#include "UI/Commands/Shells/ToolbarCmds.h"
#include "UI/Commands/Shells/WindowCmds.h"
#include "UI/Commands/Transcripts/RunScriptCmd.h"

namespace Vu::Commands {
namespace {

/// Adds the object that a factory makes of `text`; nothing if there is no such factory or it makes none.
void addObject(CommandContext& context, const Vs::UniqueString* key, const char* factory,
               const std::wstring& text)
{
    Vs::SerializableObjectFactory* found = Vs::SerializableObjectFactory::findFactory(factory);
    if (Vs::SerializableObject* object = found ? found->deserialize(text, false) : nullptr)
        context.addArgument(key, object);
}

using Parameters = Vs::TextCommandParameters;

void addPath(CommandContext& context, const std::wstring& path)
{
    context.addArgument(CommandContext::pathArgumentName(), Vs::TranscriptMgr::get()->locate(path));
}

void onePath(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        addPath(context, parameters[0]);
}

void firstPath(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() != 0)
        addPath(context, parameters[0]);
}

void userAndPassword(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() != 2)
        return;
    context.addArgument(CloudLoginCmdDef::userArgumentName(), parameters[0]);
    context.addArgument(CloudLoginCmdDef::passwordArgumentName(), parameters[1]);
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
        addPath(context, parameters[parameters.parameters() - 1]);
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
        context.addArgument(InsertAssetCmdDef::hiddenArgumentName(), parameters.integer(3));
}

void assetSessionName(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() > 0)
        context.addArgument(ActiveViewAssetCmdDef::assetSessionNameArgumentName(), parameters[0]);
}

void cmdId(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() > 0)
        context.addArgument(Vs::UniqueString::find("CmdId", true), parameters[0]);
}

void address(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() > 0)
        context.addArgument(OpenWebBrowserCmdDef::addressArgumentName(), parameters[0]);
}

void newName(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        context.addArgument(RenameCommandDef::newNameArgument(), parameters[0]);
}

// A recording has what a person chose in the menu.
void markedFilters(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        context.addArgument(SelectionFilterCmdDef::markedArgumentName(), parameters[0]);
}

void oneTxnIndex(const Parameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        context.addArgument(UndoRedoDropDownCommandDef::txnIndexArgumentName(), parameters.integer(0));
}

/// At the ends of the list the command itself would leave the workspace without an asset.
std::wstring noNextAsset(CommandContext& context)
{
    const auto* shell = Vs::cast<AssetShell>(context.shell());
    return shell && shell->nextAssetSession() ? L"" : localized("NoNextAsset", "There is no next asset.");
}

std::wstring noPreviousAsset(CommandContext& context)
{
    const auto* shell = Vs::cast<AssetShell>(context.shell());
    return shell && shell->previousAssetSession()
               ? L""
               : localized("NoPreviousAsset", "There is no previous asset.");
}

std::wstring notCommitted(CommandContext& context)
{
    CommandBase* command = activeCommandOf(context.assetSession());
    return command ? whyNotCommitted(*command) : L"";
}

constexpr bool kGlobal = true;
constexpr bool kFlush = true;
constexpr const wchar_t* kArea = L"VuCommands";

// clang-format off
constexpr WrapperRow kWrappers[] = {
    {kArea, L"ExitApplicationCmd",   L"Exit the application.", "", &ExitApplicationCmdDef::info},
    {kArea, L"CloseAssetCmd",        L"Exit the active asset.", "", &CloseAssetCmdDef::info},
    {kArea, L"ExportAsCmd",          L"Save the active asset as translator supported file types.", "", &ExportAsCmdDef::info, onePath, kGlobal},
    {kArea, L"ExportCmd",            L"Save the active asset as translator supported file types.", "", &ExportCmdDef::info, onePath, kGlobal},
    {kArea, L"InsertAssetCmd",       L"<AssetTypeId> <DocumentSession> <Uuid> Creates a new asset inside the given or active document", "%s%s%s", &InsertAssetCmdDef::info, insertedAsset},
    {kArea, L"NextAssetCmd",         L"Active the next asset.", "", &NextAssetCmdDef::info, nullptr, false, false, noNextAsset},
    {kArea, L"PreviousAssetCmd",     L"Active the previous asset.", "", &PreviousAssetCmdDef::info, nullptr, false, false, noPreviousAsset},
    {kArea, L"SwitchAssetCmd",       L"<AssetSession> Switch Asset.", "", &SwitchAssetCmdDef::info, oneAssetSession},
    {kArea, L"ActiveViewAssetCmd",   L"<AssetSession> Active asset view.", "", &ActiveViewAssetCmdDef::info, assetSessionName},
    {kArea, L"CancelCmd",            L"Cancel the active command.", "", &CancelCmdDef::info},
    {kArea, L"CommitCmd",            L"Commit the active command.", "", &CommitCmdDef::info, nullptr, false, false, notCommitted},
    {kArea, L"CloseAllDocumentsCmd", L"Close all the active documents.", "", &CloseAllDocumentsCmdDef::info, documentSession, !kGlobal, kFlush},
    {kArea, L"CloseDocumentCmd",     L"Close the active document.\nUsage: VuCommands.CloseDocumentCmd", "", &CloseDocumentCmdDef::info, documentSession, !kGlobal, kFlush},
    {kArea, L"CurrentlyOpenDocumentsCmd", L"<asset_type> Recent Documents?? or maybe CurrentlyOpenDocumentsCmd??", "%s%s", &CurrentlyOpenDocumentsCmdDef::info},
    {kArea, L"CycleOpenDocumentsCmd", L"<asset_type> Cycle Documents.", "%s%s", &CycleOpenDocumentsCmdDef::info},
    {kArea, L"NewDocumentCmd",       L"<asset_type> Create a document with specified asset type.", "%s%s", &NewDocumentCmdDef::info, assetTypeName, kGlobal},
    {kArea, L"NewSingleDocumentCmd", L"<asset_type> Create a document with specified asset type.", "%s%s", &NewSingleDocumentCmdDef::info, assetTypeName, kGlobal},
    {kArea, L"OpenDocumentCmd",      L"<filename> Open the specified document.", "", &OpenDocumentCmdDef::info, firstPath, kGlobal},
    {kArea, L"RecentDocumentsCmd",   L"<asset_type> Recent Documents", "%s%s", &RecentDocumentsCmdDef::info},
    {kArea, L"SaveDocumentAsCmd",    L"Save the active document as a new one.", "", &SaveDocumentAsCmdDef::info, sessionAndPath},
    {kArea, L"SaveDocumentCmd",      L"Save the active document.", "", &SaveDocumentCmdDef::info, sessionAndPath},
    {kArea, L"CloudListFilesCmd",    L"List Files Command.", "", &CloudListFilesCmdDef::info},
    {kArea, L"CloudLoginCmd",        L"<userid> <password> Log on to cloud.", "", &CloudLoginCmdDef::info, userAndPassword, kGlobal},
    {kArea, L"CloudLogoutCmd",       L"Log off cloud.", "", &CloudLogoutCmdDef::info},
    {kArea, L"CloudManageCmd",       L"Call manaage from cloud.", "", &CloudManageCmdDef::info},
    {kArea, L"CloudOpenDocumentCmd", L"<filename> Log on to cloud.", "%s", &CloudOpenDocumentCmdDef::info, onePath, kGlobal},
    {kArea, L"CloudSaveCmd",         L"<filename> Save document to Cloud.", "%s", &CloudSaveCmdDef::info, onePath, kGlobal},
    {kArea, L"CloudSaveAsCmd",       L"<filename> Save as document to Cloud.", "%s", &CloudSaveAsCmdDef::info, onePath, kGlobal},
    {kArea, L"CloudSaveQATCmd",      L"<filename> Save document to Cloud", "%s", &CloudSaveQATCmdDef::info, onePath, kGlobal},
    {kArea, L"ShareCmd",             L"Share menu item.", "", &ShareCmdDef::info},
    {kArea, L"RunScriptCmd",         L"<filename> Runs the specified python script.", "%s", &RunScriptCmdDef::info, firstPath, kGlobal},
    {kArea, L"AssetShellCmd",        L"<AssetSession> Activate asset shell.", "", &AssetShellCmdDef::info, assetSession},
    {kArea, L"ManagementShellCmd",   L"Activate management shell.", "", &ManagementShellCmdDef::info},
    {kArea, L"ActivateEnvironmentCmd",      L"<EnvironmentType> Activate environment.", "", &ActivateEnvironmentCmdDef::info, environmentType},
    {kArea, L"CycleWorkspacesForwardCmd",   L"<asset_type> Cycle Workspaces Forward.", "%s%s", &CycleWorkspacesForwardCmdDef::info},
    {kArea, L"CycleWorkspacesBackwardCmd",  L"<asset_type> Cycle Workspaces Backward.", "%s%s", &CycleWorkspacesBackwardCmdDef::info},
    {kArea, L"ReturnToEnvironmentCmd",      L"Return environment", "", &ReturnToEnvironmentCmdDef::info},
    {kArea, L"ViewDomeCmd", L"View ground dome.", "", &ViewDomeCmdDef::info, cmdId},
    {kArea, L"ViewGroundPlaneCmd", L"View ground plane.", "", &ViewGroundPlaneCmdDef::info, cmdId},
    {kArea, L"ViewGroundShadowCmd", L"View ground shadow.", "", &ViewGroundShadowCmdDef::info, cmdId},
    {kArea, L"ViewAmbientOcclusionCmd", L"View ambient occlusion.", "", &ViewAmbientOcclusionCmdDef::info, cmdId},
    {kArea, L"ViewGroundReflectionCmd", L"View ground reflection.", "", &ViewGroundReflectionCmdDef::info, cmdId},
    {kArea, L"ViewNPREffectCmd", L"View NPR effect.", "", &ViewNPREffectCmdDef::info, cmdId},
    {kArea, L"ViewEnvironmentCmd", L"View environment.", "", &ViewEnvironmentCmdDef::info, cmdId},
    {kArea, L"ViewMSAACmd", L"View MSAA.", "", &ViewMSAACmdDef::info, cmdId},
    {kArea, L"ViewSelectionEffectCmd", L"View selection effect", "", &ViewSelectionEffectCmdDef::info, cmdId},
    {kArea, L"ViewVisualStyleCmd", L"View visual style.", "", &ViewVisualStyleCmdDef::info, cmdId},
    {kArea, L"ViewCameraCmd", L"View camera.", "", &ViewCameraCmdDef::info, cmdId},
    {kArea, L"ViewObjectShadowCmd", L"View object shadow.", "", &ViewObjectShadowCmdDef::info, cmdId},
    {kArea, L"ViewColorCyclingCmd", L"View color cycling.", "", &ViewColorCyclingCmdDef::info, cmdId},
    {kArea, L"ViewLayoutGridOnCmd", L"View layout grid.", "", &ViewLayoutGridOnCmdDef::info, cmdId},
    {kArea, L"ViewAxisCrossCmd", L"View axis cross.", "", &ViewAxisCrossCmdDef::info, cmdId},
    {kArea, L"ViewEnvironmentFileCmd", L"<filename> Light the model by a panorama (.hdr).", "%s", &ViewEnvironmentFileCmdDef::info, firstPath},
    {kArea, L"ViewScaleBarCmd", L"View scale bar.", "", &ViewScaleBarCmdDef::info, cmdId},
    {kArea, L"ShowOrbiconCmd", L"Show Orbicon.", "", &ShowOrbiconCmdDef::info},
    {kArea, L"HideOrbiconCmd", L"Hide Orbicon.", "", &HideOrbiconCmdDef::info},
    {kArea, L"ViewWidgetCmd",  L"View menu item.", "", &ViewWidgetCmdDef::info},
    {kArea, L"RenameCommand",          L"<NewName> Rename the selected node.", "", &RenameCommandDef::info, newName},
    {kArea, L"SelectCmd",              L"Select.", "", &SelectCmdDef::info},
    {kArea, L"SelectionFilterCmd",     L"Activate Selection filters command", "", &SelectionFilterCmdDef::info, markedFilters},
    {kArea, L"CutCmd",                 L"Cut the selected component.", "", &CutCmdDef::info},
    {kArea, L"CopyToClipboardCmd",     L"Copy the selected component, to be pasted.", "", &CopyToClipboardCmdDef::info},
    {kArea, L"PasteCmd",               L"Paste what was cut or copied.", "", &PasteCmdDef::info},
    {kArea, L"UndoCmd", L"Undo command.", "", &UndoCmdDef::info},
    {kArea, L"RedoCmd", L"Redo command.", "", &RedoCmdDef::info},
    {kArea, L"UndoDropDown", L"<TxnIndex> Undo the selected command from the undo dropdown list.", "", &UndoRedoDropDownCommandDef::UndoDropDownInfo, oneTxnIndex},
    {kArea, L"RedoDropDown", L"<TxnIndex> Redo the selected command from the redo dropdown list.", "", &UndoRedoDropDownCommandDef::RedoDropDownInfo, oneTxnIndex},
    {kArea, L"SetSnapValueCmd",        L"Set snap value.", "", &SetSnapValueCmdDef::info},
    {kArea, L"EnableAdaptiveSnapCmd",  L"Enable snap.", "", &EnableAdaptiveSnapCmdDef::info},
    {kArea, L"DisableAdaptiveSnapCmd", L"Disable snap.", "", &DisableAdaptiveSnapCmdDef::info},
    {kArea, L"CIPCmd",              L"CIP", "", &CIPCmdDef::info},
    {kArea, L"SubscriptionCmd",     L"Subscription.", "", &SubscriptionCmdDef::info},
    {kArea, L"OpenWebBrowserCmd",   L"Activate web shell.", "", &OpenWebBrowserCmdDef::info, address},
    {kArea, L"FeedbackCmd",         L"Feedback.", "", &FeedbackCmdDef::info},
    {kArea, L"HelpCmd",             L"Help.", "", &HelpCmdDef::info},
    {kArea, L"SuggestboxCmd",       L"Suggestbox.", "", &SuggestboxCmdDef::info},
    {kArea, L"JoinDiscussionCmd",   L"Join sDiscussion", "", &JoinDiscussionCmdDef::info},
    {kArea, L"ProductTourGuideCmd", L"Show the Welcome Screen.", "", &ProductTourGuideCmdDef::info},
    {kArea, L"WelcomeScreenCmd",    L"Show the Welcome Screen.", "", &WelcomeScreenCmdDef::info},
    {kArea, L"VideosCmd",           L"Videos.", "", &VideosCmdDef::info},
    {kArea, L"HideCommandPaletteCmd",       L"Hide CommandPalette", "", &HideCommandPaletteCmdDef::info},
    {kArea, L"ResetToDefaultLayoutCommand", L"Reset Layout to default.", "", &ResetToDefaultLayoutCmdDef::info, nullptr, false, false, &ResetToDefaultLayoutCmdDef::refusal},
    {kArea, L"DockAssetToolbarsToBottomCmd", L"Doc assets toolbars to bottom.", "", &DockAssetToolbarsToBottomCmdDef::info},
    {kArea, L"DockAssetToolbarsToTopCmd",   L"Doc asset toolbars to top.", "", &DockAssetToolbarsToTopCmdDef::info},
    {kArea, L"ShowBrowserCommand",          L"Show Browser.", "", &ShowBrowserCmdDef::info},
    {kArea, L"HideBrowserCommand",          L"Hide Browser.", "", &HideBrowserCmdDef::info},
    {kArea, L"ShowCommandToolbarCmd",       L"Show Command Toolbar", "", &ShowCommandToolbarCmdDef::info},
    {kArea, L"HideCommandToolbarCmd",       L"Hide Command Toolbar", "", &HideCommandToolbarCmdDef::info},
    {kArea, L"ShowNavigationToolbarCmd",    L"Show Navigation Bar.", "", &ShowNavigationToolbarCmdDef::info},
    {kArea, L"HideNavigationToolbarCmd",    L"Hide Navigation Bar.", "", &HideNavigationToolbarCmdDef::info},
    {kArea, L"ShowTextCommandsCommand",     L"Show text commands.", "", &ShowTextCommandsCmdDef::info},
    {kArea, L"HideTextCommandsCommand",     L"Hide text commands.", "", &HideTextCommandsCmdDef::info},
    {kArea, L"BringAllToFrontCmd",          L"Bring All To Front.", "", &BringAllToFrontCmdDef::info},
    {kArea, L"CloseWorkspaceCmd",           L"Close the active workspace.", "", &CloseWorkspaceCmdDef::info},
    {kArea, L"MinimizeCmd",                 L"Minimize Window.", "", &MinimizeCmdDef::info},
    {kArea, L"ShowWorkspaceFullScreenCmd", L"Fullscreen the active workspace.", "", &ShowWorkspaceFullScreenCmdDef::info},
    {kArea, L"ShowWorkspaceNormalCmd",      L"Normalize the active workspace.", "", &ShowWorkspaceNormalCmdDef::info},
    {kArea, L"ZoomWindowCmd",               L"Zoom Window", "", &ZoomWindowCmdDef::info},
};
// clang-format on

const Wrappers<kWrappers> theWrappers;

} // namespace
} // namespace Vu::Commands
