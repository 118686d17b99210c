#include "UI/Commands/Text/Wrappers.h"

#include "Server/Base/SerializableObject.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/AssetType.h"
#include "UI/Base/Command/CommitRefusal.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Commands/ActiveCommand.h"
#include "UI/Commands/ActiveCommandCmds.h"
#include "UI/Commands/Camera/OrbiconCmds.h"
#include "UI/Commands/Camera/ViewCmdDefs.h"
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

void addObject(CommandContext& context, const Vs::UniqueString* key, const char* factory,
               const std::wstring& text)
{
    Vs::SerializableObjectFactory* found = Vs::SerializableObjectFactory::findFactory(factory);
    if (Vs::SerializableObject* object = found ? found->deserialize(text, false) : nullptr)
        context.addArgument(key, object);
}

namespace {

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
constexpr WrapperRow kExitApplication   = {kArea, L"ExitApplicationCmd",   L"Exit the application.", "", &ExitApplicationCmdDef::info};
constexpr WrapperRow kCloseAsset        = {kArea, L"CloseAssetCmd",        L"Exit the active asset.", "", &CloseAssetCmdDef::info};
constexpr WrapperRow kExportAs          = {kArea, L"ExportAsCmd",          L"Save the active asset as translator supported file types.", "", &ExportAsCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kExport            = {kArea, L"ExportCmd",            L"Save the active asset as translator supported file types.", "", &ExportCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kInsertAsset       = {kArea, L"InsertAssetCmd",       L"<AssetTypeId> <DocumentSession> <Uuid> Creates a new asset inside the given or active document", "%s%s%s", &InsertAssetCmdDef::info, insertedAsset};
constexpr WrapperRow kNextAsset         = {kArea, L"NextAssetCmd",         L"Active the next asset.", "", &NextAssetCmdDef::info, nullptr, false, false, noNextAsset};
constexpr WrapperRow kPreviousAsset     = {kArea, L"PreviousAssetCmd",     L"Active the previous asset.", "", &PreviousAssetCmdDef::info, nullptr, false, false, noPreviousAsset};
constexpr WrapperRow kSwitchAsset       = {kArea, L"SwitchAssetCmd",       L"<AssetSession> Switch Asset.", "", &SwitchAssetCmdDef::info, oneAssetSession};
constexpr WrapperRow kActiveViewAsset   = {kArea, L"ActiveViewAssetCmd",   L"<AssetSession> Active asset view.", "", &ActiveViewAssetCmdDef::info, assetSessionName};
constexpr WrapperRow kCancel            = {kArea, L"CancelCmd",            L"Cancel the active command.", "", &CancelCmdDef::info};
constexpr WrapperRow kCommit            = {kArea, L"CommitCmd",            L"Commit the active command.", "", &CommitCmdDef::info, nullptr, false, false, notCommitted};
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
constexpr WrapperRow kCloudListFiles    = {kArea, L"CloudListFilesCmd",    L"List Files Command.", "", &CloudListFilesCmdDef::info};
constexpr WrapperRow kCloudLogin        = {kArea, L"CloudLoginCmd",        L"<userid> <password> Log on to cloud.", "", &CloudLoginCmdDef::info, userAndPassword, kGlobal};
constexpr WrapperRow kCloudLogout       = {kArea, L"CloudLogoutCmd",       L"Log off cloud.", "", &CloudLogoutCmdDef::info};
constexpr WrapperRow kCloudManage       = {kArea, L"CloudManageCmd",       L"Call manaage from cloud.", "", &CloudManageCmdDef::info};
constexpr WrapperRow kCloudOpenDocument = {kArea, L"CloudOpenDocumentCmd", L"<filename> Log on to cloud.", "%s", &CloudOpenDocumentCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kCloudSave         = {kArea, L"CloudSaveCmd",         L"<filename> Save document to Cloud.", "%s", &CloudSaveCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kCloudSaveAs       = {kArea, L"CloudSaveAsCmd",       L"<filename> Save as document to Cloud.", "%s", &CloudSaveAsCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kCloudSaveQAT      = {kArea, L"CloudSaveQATCmd",      L"<filename> Save document to Cloud", "%s", &CloudSaveQATCmdDef::info, onePath, kGlobal};
constexpr WrapperRow kShare             = {kArea, L"ShareCmd",             L"Share menu item.", "", &ShareCmdDef::info};
constexpr WrapperRow kRunScript         = {kArea, L"RunScriptCmd",         L"<filename> Runs the specified python script.", "%s", &RunScriptCmdDef::info, firstPath, kGlobal};
constexpr WrapperRow kAssetShell        = {kArea, L"AssetShellCmd",        L"<AssetSession> Activate asset shell.", "", &AssetShellCmdDef::info, assetSession};
constexpr WrapperRow kManagementShell   = {kArea, L"ManagementShellCmd",   L"Activate management shell.", "", &ManagementShellCmdDef::info};
constexpr WrapperRow kActivateEnvironment      = {kArea, L"ActivateEnvironmentCmd",      L"<EnvironmentType> Activate environment.", "", &ActivateEnvironmentCmdDef::info, environmentType};
constexpr WrapperRow kCycleWorkspacesForward   = {kArea, L"CycleWorkspacesForwardCmd",   L"<asset_type> Cycle Workspaces Forward.", "%s%s", &CycleWorkspacesForwardCmdDef::info};
constexpr WrapperRow kCycleWorkspacesBackward  = {kArea, L"CycleWorkspacesBackwardCmd",  L"<asset_type> Cycle Workspaces Backward.", "%s%s", &CycleWorkspacesBackwardCmdDef::info};
constexpr WrapperRow kReturnToEnvironment      = {kArea, L"ReturnToEnvironmentCmd",      L"Return environment", "", &ReturnToEnvironmentCmdDef::info};
constexpr WrapperRow kViewDome             = {kArea, L"ViewDomeCmd", L"View ground dome.", "", &ViewDomeCmdDef::info, cmdId};
constexpr WrapperRow kViewGroundPlane      = {kArea, L"ViewGroundPlaneCmd", L"View ground plane.", "", &ViewGroundPlaneCmdDef::info, cmdId};
constexpr WrapperRow kViewGroundShadow     = {kArea, L"ViewGroundShadowCmd", L"View ground shadow.", "", &ViewGroundShadowCmdDef::info, cmdId};
constexpr WrapperRow kViewAmbientOcclusion = {kArea, L"ViewAmbientOcclusionCmd", L"View ambient occlusion.", "", &ViewAmbientOcclusionCmdDef::info, cmdId};
constexpr WrapperRow kViewGroundReflection = {kArea, L"ViewGroundReflectionCmd", L"View ground reflection.", "", &ViewGroundReflectionCmdDef::info, cmdId};
constexpr WrapperRow kViewNPREffect        = {kArea, L"ViewNPREffectCmd", L"View NPR effect.", "", &ViewNPREffectCmdDef::info, cmdId};
constexpr WrapperRow kViewEnvironment      = {kArea, L"ViewEnvironmentCmd", L"View environment.", "", &ViewEnvironmentCmdDef::info, cmdId};
constexpr WrapperRow kViewMSAA             = {kArea, L"ViewMSAACmd", L"View MSAA.", "", &ViewMSAACmdDef::info, cmdId};
constexpr WrapperRow kViewSelectionEffect  = {kArea, L"ViewSelectionEffectCmd", L"View selection effect", "", &ViewSelectionEffectCmdDef::info, cmdId};
constexpr WrapperRow kViewVisualStyle      = {kArea, L"ViewVisualStyleCmd", L"View visual style.", "", &ViewVisualStyleCmdDef::info, cmdId};
constexpr WrapperRow kViewCamera           = {kArea, L"ViewCameraCmd", L"View camera.", "", &ViewCameraCmdDef::info, cmdId};
constexpr WrapperRow kViewObjectShadow     = {kArea, L"ViewObjectShadowCmd", L"View object shadow.", "", &ViewObjectShadowCmdDef::info, cmdId};
constexpr WrapperRow kViewColorCycling     = {kArea, L"ViewColorCyclingCmd", L"View color cycling.", "", &ViewColorCyclingCmdDef::info, cmdId};
constexpr WrapperRow kViewLayoutGridOn     = {kArea, L"ViewLayoutGridOnCmd", L"View layout grid.", "", &ViewLayoutGridOnCmdDef::info, cmdId};
constexpr WrapperRow kShowOrbicon          = {kArea, L"ShowOrbiconCmd", L"Show Orbicon.", "", &ShowOrbiconCmdDef::info};
constexpr WrapperRow kHideOrbicon          = {kArea, L"HideOrbiconCmd", L"Hide Orbicon.", "", &HideOrbiconCmdDef::info};
constexpr WrapperRow kViewWidget           = {kArea, L"ViewWidgetCmd",  L"View menu item.", "", &ViewWidgetCmdDef::info};
constexpr WrapperRow kRename              = {kArea, L"RenameCommand",          L"<NewName> Rename the selected node.", "", &RenameCommandDef::info, newName};
constexpr WrapperRow kSelect              = {kArea, L"SelectCmd",              L"Select.", "", &SelectCmdDef::info};
constexpr WrapperRow kSelectionFilter     = {kArea, L"SelectionFilterCmd",     L"Activate Selection filters command", "", &SelectionFilterCmdDef::info, markedFilters};
constexpr WrapperRow kCut                 = {kArea, L"CutCmd",                 L"Cut the selected component.", "", &CutCmdDef::info};
constexpr WrapperRow kCopyToClipboard     = {kArea, L"CopyToClipboardCmd",     L"Copy the selected component, to be pasted.", "", &CopyToClipboardCmdDef::info};
constexpr WrapperRow kPaste               = {kArea, L"PasteCmd",               L"Paste what was cut or copied.", "", &PasteCmdDef::info};
constexpr WrapperRow kUndo         = {kArea, L"UndoCmd", L"Undo command.", "", &UndoCmdDef::info};
constexpr WrapperRow kRedo         = {kArea, L"RedoCmd", L"Redo command.", "", &RedoCmdDef::info};
constexpr WrapperRow kUndoDropDown = {kArea, L"UndoDropDown", L"<TxnIndex> Undo the selected command from the undo dropdown list.", "", &UndoRedoDropDownCommandDef::UndoDropDownInfo, oneTxnIndex};
constexpr WrapperRow kRedoDropDown = {kArea, L"RedoDropDown", L"<TxnIndex> Redo the selected command from the redo dropdown list.", "", &UndoRedoDropDownCommandDef::RedoDropDownInfo, oneTxnIndex};
constexpr WrapperRow kSetSnapValue        = {kArea, L"SetSnapValueCmd",        L"Set snap value.", "", &SetSnapValueCmdDef::info};
constexpr WrapperRow kEnableAdaptiveSnap  = {kArea, L"EnableAdaptiveSnapCmd",  L"Enable snap.", "", &EnableAdaptiveSnapCmdDef::info};
constexpr WrapperRow kDisableAdaptiveSnap = {kArea, L"DisableAdaptiveSnapCmd", L"Disable snap.", "", &DisableAdaptiveSnapCmdDef::info};
constexpr WrapperRow kCIP              = {kArea, L"CIPCmd",              L"CIP", "", &CIPCmdDef::info};
constexpr WrapperRow kSubscription     = {kArea, L"SubscriptionCmd",     L"Subscription.", "", &SubscriptionCmdDef::info};
constexpr WrapperRow kOpenWebBrowser   = {kArea, L"OpenWebBrowserCmd",   L"Activate web shell.", "", &OpenWebBrowserCmdDef::info, address};
constexpr WrapperRow kFeedback         = {kArea, L"FeedbackCmd",         L"Feedback.", "", &FeedbackCmdDef::info};
constexpr WrapperRow kHelp             = {kArea, L"HelpCmd",             L"Help.", "", &HelpCmdDef::info};
constexpr WrapperRow kSuggestbox       = {kArea, L"SuggestboxCmd",       L"Suggestbox.", "", &SuggestboxCmdDef::info};
constexpr WrapperRow kJoinDiscussion   = {kArea, L"JoinDiscussionCmd",   L"Join sDiscussion", "", &JoinDiscussionCmdDef::info};
constexpr WrapperRow kProductTourGuide = {kArea, L"ProductTourGuideCmd", L"Show the Welcome Screen.", "", &ProductTourGuideCmdDef::info};
constexpr WrapperRow kWelcomeScreen    = {kArea, L"WelcomeScreenCmd",    L"Show the Welcome Screen.", "", &WelcomeScreenCmdDef::info};
constexpr WrapperRow kVideos           = {kArea, L"VideosCmd",           L"Videos.", "", &VideosCmdDef::info};
constexpr WrapperRow kHideCommandPalette     = {kArea, L"HideCommandPaletteCmd",       L"Hide CommandPalette", "", &HideCommandPaletteCmdDef::info};
constexpr WrapperRow kResetToDefaultLayout   = {kArea, L"ResetToDefaultLayoutCommand", L"Reset Layout to default.", "", &ResetToDefaultLayoutCmdDef::info, nullptr, false, false, &ResetToDefaultLayoutCmdDef::refusal};
constexpr WrapperRow kDockToBottom           = {kArea, L"DockAssetToolbarsToBottomCmd", L"Doc assets toolbars to bottom.", "", &DockAssetToolbarsToBottomCmdDef::info};
constexpr WrapperRow kDockToTop              = {kArea, L"DockAssetToolbarsToTopCmd",   L"Doc asset toolbars to top.", "", &DockAssetToolbarsToTopCmdDef::info};
constexpr WrapperRow kShowBrowser            = {kArea, L"ShowBrowserCommand",          L"Show Browser.", "", &ShowBrowserCmdDef::info};
constexpr WrapperRow kHideBrowser            = {kArea, L"HideBrowserCommand",          L"Hide Browser.", "", &HideBrowserCmdDef::info};
constexpr WrapperRow kShowCommandToolbar     = {kArea, L"ShowCommandToolbarCmd",       L"Show Command Toolbar", "", &ShowCommandToolbarCmdDef::info};
constexpr WrapperRow kHideCommandToolbar     = {kArea, L"HideCommandToolbarCmd",       L"Hide Command Toolbar", "", &HideCommandToolbarCmdDef::info};
constexpr WrapperRow kShowNavigationToolbar  = {kArea, L"ShowNavigationToolbarCmd",    L"Show Navigation Bar.", "", &ShowNavigationToolbarCmdDef::info};
constexpr WrapperRow kHideNavigationToolbar  = {kArea, L"HideNavigationToolbarCmd",    L"Hide Navigation Bar.", "", &HideNavigationToolbarCmdDef::info};
constexpr WrapperRow kShowTextCommands       = {kArea, L"ShowTextCommandsCommand",     L"Show text commands.", "", &ShowTextCommandsCmdDef::info};
constexpr WrapperRow kHideTextCommands       = {kArea, L"HideTextCommandsCommand",     L"Hide text commands.", "", &HideTextCommandsCmdDef::info};
constexpr WrapperRow kBringAllToFront        = {kArea, L"BringAllToFrontCmd",          L"Bring All To Front.", "", &BringAllToFrontCmdDef::info};
constexpr WrapperRow kCloseWorkspace         = {kArea, L"CloseWorkspaceCmd",           L"Close the active workspace.", "", &CloseWorkspaceCmdDef::info};
constexpr WrapperRow kMinimize               = {kArea, L"MinimizeCmd",                 L"Minimize Window.", "", &MinimizeCmdDef::info};
constexpr WrapperRow kShowWorkspaceFullScreen = {kArea, L"ShowWorkspaceFullScreenCmd", L"Fullscreen the active workspace.", "", &ShowWorkspaceFullScreenCmdDef::info};
constexpr WrapperRow kShowWorkspaceNormal    = {kArea, L"ShowWorkspaceNormalCmd",      L"Normalize the active workspace.", "", &ShowWorkspaceNormalCmdDef::info};
constexpr WrapperRow kZoomWindow             = {kArea, L"ZoomWindowCmd",               L"Zoom Window", "", &ZoomWindowCmdDef::info};
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
Wrapper<kCloudListFiles> TextCmdVuCommandsCloudListFilesCmd;
Wrapper<kCloudLogin> TextCmdVuCommandsCloudLoginCmd;
Wrapper<kCloudLogout> TextCmdVuCommandsCloudLogoutCmd;
Wrapper<kCloudManage> TextCmdVuCommandsCloudManageCmd;
Wrapper<kCloudOpenDocument> TextCmdVuCommandsCloudOpenDocumentCmd;
Wrapper<kCloudSave> TextCmdVuCommandsCloudSaveCmd;
Wrapper<kCloudSaveAs> TextCmdVuCommandsCloudSaveAsCmd;
Wrapper<kCloudSaveQAT> TextCmdVuCommandsCloudSaveQATCmd;
Wrapper<kShare> TextCmdVuCommandsShareCmd;
Wrapper<kRunScript> TextCmdVuCommandsRunScriptCmd;
Wrapper<kAssetShell> TextCmdVuCommandsAssetShellCmd;
Wrapper<kManagementShell> TextCmdVuCommandsManagementShellCmd;
Wrapper<kActivateEnvironment> TextCmdVuCommandsActivateEnvironmentCmd;
Wrapper<kCycleWorkspacesForward> TextCmdVuCommandsCycleWorkspacesForwardCmd;
Wrapper<kCycleWorkspacesBackward> TextCmdVuCommandsCycleWorkspacesBackwardCmd;
Wrapper<kReturnToEnvironment> TextCmdVuCommandsReturnToEnvironmentCmd;
Wrapper<kViewDome> TextCmdVuCommandsViewDomeCmd;
Wrapper<kViewGroundPlane> TextCmdVuCommandsViewGroundPlaneCmd;
Wrapper<kViewGroundShadow> TextCmdVuCommandsViewGroundShadowCmd;
Wrapper<kViewAmbientOcclusion> TextCmdVuCommandsViewAmbientOcclusionCmd;
Wrapper<kViewGroundReflection> TextCmdVuCommandsViewGroundReflectionCmd;
Wrapper<kViewNPREffect> TextCmdVuCommandsViewNPREffectCmd;
Wrapper<kViewEnvironment> TextCmdVuCommandsViewEnvironmentCmd;
Wrapper<kViewMSAA> TextCmdVuCommandsViewMSAACmd;
Wrapper<kViewSelectionEffect> TextCmdVuCommandsViewSelectionEffectCmd;
Wrapper<kViewVisualStyle> TextCmdVuCommandsViewVisualStyleCmd;
Wrapper<kViewCamera> TextCmdVuCommandsViewCameraCmd;
Wrapper<kViewObjectShadow> TextCmdVuCommandsViewObjectShadowCmd;
Wrapper<kViewColorCycling> TextCmdVuCommandsViewColorCyclingCmd;
Wrapper<kViewLayoutGridOn> TextCmdVuCommandsViewLayoutGridOnCmd;
Wrapper<kShowOrbicon> TextCmdVuCommandsShowOrbiconCmd;
Wrapper<kHideOrbicon> TextCmdVuCommandsHideOrbiconCmd;
Wrapper<kViewWidget> TextCmdVuCommandsViewWidgetCmd;
Wrapper<kRename> TextCmdVuCommandsRenameCommand;
Wrapper<kSelect> TextCmdVuCommandsSelectCmd;
Wrapper<kSelectionFilter> TextCmdVuCommandsSelectionFilterCmd;
Wrapper<kCut> TextCmdVuCommandsCutCmd;
Wrapper<kCopyToClipboard> TextCmdVuCommandsCopyToClipboardCmd;
Wrapper<kPaste> TextCmdVuCommandsPasteCmd;
Wrapper<kUndo> TextCmdVuCommandsUndoCmd;
Wrapper<kRedo> TextCmdVuCommandsRedoCmd;
Wrapper<kUndoDropDown> TextCmdVuCommandsUndoDropDown;
Wrapper<kRedoDropDown> TextCmdVuCommandsRedoDropDown;
Wrapper<kSetSnapValue> TextCmdVuCommandsSetSnapValueCmd;
Wrapper<kEnableAdaptiveSnap> TextCmdVuCommandsEnableAdaptiveSnapCmd;
Wrapper<kDisableAdaptiveSnap> TextCmdVuCommandsDisableAdaptiveSnapCmd;
Wrapper<kCIP> TextCmdVuCommandsCIPCmd;
Wrapper<kSubscription> TextCmdVuCommandsSubscriptionCmd;
Wrapper<kOpenWebBrowser> TextCmdVuCommandsOpenWebBrowserCmd;
Wrapper<kFeedback> TextCmdVuCommandsFeedbackCmd;
Wrapper<kHelp> TextCmdVuCommandsHelpCmd;
Wrapper<kSuggestbox> TextCmdVuCommandsSuggestboxCmd;
Wrapper<kJoinDiscussion> TextCmdVuCommandsJoinDiscussionCmd;
Wrapper<kProductTourGuide> TextCmdVuCommandsProductTourGuideCmd;
Wrapper<kWelcomeScreen> TextCmdVuCommandsWelcomeScreenCmd;
Wrapper<kVideos> TextCmdVuCommandsVideosCmd;
Wrapper<kHideCommandPalette> TextCmdVuCommandsHideCommandPaletteCmd;
Wrapper<kResetToDefaultLayout> TextCmdVuCommandsResetToDefaultLayoutCommand;
Wrapper<kDockToBottom> TextCmdVuCommandsDockAssetToolbarsToBottomCmd;
Wrapper<kDockToTop> TextCmdVuCommandsDockAssetToolbarsToTopCmd;
Wrapper<kShowBrowser> TextCmdVuCommandsShowBrowserCommand;
Wrapper<kHideBrowser> TextCmdVuCommandsHideBrowserCommand;
Wrapper<kShowCommandToolbar> TextCmdVuCommandsShowCommandToolbarCmd;
Wrapper<kHideCommandToolbar> TextCmdVuCommandsHideCommandToolbarCmd;
Wrapper<kShowNavigationToolbar> TextCmdVuCommandsShowNavigationToolbarCmd;
Wrapper<kHideNavigationToolbar> TextCmdVuCommandsHideNavigationToolbarCmd;
Wrapper<kShowTextCommands> TextCmdVuCommandsShowTextCommandsCommand;
Wrapper<kHideTextCommands> TextCmdVuCommandsHideTextCommandsCommand;
Wrapper<kBringAllToFront> TextCmdVuCommandsBringAllToFrontCmd;
Wrapper<kCloseWorkspace> TextCmdVuCommandsCloseWorkspaceCmd;
Wrapper<kMinimize> TextCmdVuCommandsMinimizeCmd;
Wrapper<kShowWorkspaceFullScreen> TextCmdVuCommandsShowWorkspaceFullScreenCmd;
Wrapper<kShowWorkspaceNormal> TextCmdVuCommandsShowWorkspaceNormalCmd;
Wrapper<kZoomWindow> TextCmdVuCommandsZoomWindowCmd;

} // namespace
} // namespace Vu::Commands
