#include "Server/AddInMgr/IUIAddIn.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Warning.h"
#include "Server/DataModel/Asset.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ExtendedInfoLoader.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SpaceMouseEventSite.h"
#include "UI/Base/Workspace/HUDPersister.h"
#include "UI/Base/Workspace/MenuBar.h"
#include "UI/Base/Workspace/ToolbarPersister.h"
#include "UI/Commands/ActiveCommandCmds.h"
#include "UI/Commands/AutoSave/NotifyAutoSaveFilesCmd.h"
#include "UI/Commands/Camera/FitCmd.h"
#include "UI/Commands/Camera/LookAtCmd.h"
#include "UI/Commands/Camera/NamedViewCmds.h"
#include "UI/Commands/Camera/OrbiconCmds.h"
#include "UI/Commands/Camera/OrbitCmdDef.h"
#include "UI/Commands/Camera/PanCmd.h"
#include "UI/Commands/Camera/PassiveCameraCmdAgent.h"
#include "UI/Commands/Camera/SetHomeViewCmd.h"
#include "UI/Commands/Camera/StandardViewCmds.h"
#include "UI/Commands/Camera/ViewCmdDefs.h"
#include "UI/Commands/Camera/ViewEnvironmentFileCmd.h"
#include "UI/Commands/Camera/ViewMenus.h"
#include "UI/Commands/Camera/ZoomCmd.h"
#include "UI/Commands/Cloud/CloudDocuments.h"
#include "UI/Commands/Cloud/CloudOpenDocumentCmd.h"
#include "UI/Commands/Cloud/CloudSaveAsCmd.h"
#include "UI/Commands/Cloud/CloudSaveCmd.h"
#include "UI/Commands/Cloud/CloudSessionCmds.h"
#include "UI/Commands/Cloud/ShareCmd.h"
#include "UI/Commands/CommandsAddInIdentifier.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/CurrentDocumentCmds.h"
#include "UI/Commands/Documents/ExportCmd.h"
#include "UI/Commands/Documents/MoreSaveCmds.h"
#include "UI/Commands/Documents/NewDocumentCmd.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Documents/OpenDocumentsCmds.h"
#include "UI/Commands/Documents/PrintCmd.h"
#include "UI/Commands/Documents/RecentDocumentsCmd.h"
#include "UI/Commands/Documents/SaveAsImageCmd.h"
#include "UI/Commands/Documents/SaveDocumentCmd.h"
#include "UI/Commands/Documents/SaveDrawingCmd.h"
#include "UI/Commands/Documents/TabCmds.h"
#include "UI/Commands/ExitApplicationCmd.h"
#include "UI/Commands/Help/AboutBoxCmd.h"
#include "UI/Commands/Help/LinkCmds.h"
#include "UI/Commands/Help/ProgramCmds.h"
#include "UI/Commands/Help/SubscriptionCmd.h"
#include "UI/Commands/Itemhub/ItemhubAuthenticateWithTokenCmd.h"
#include "UI/Commands/Itemhub/ItemhubCreateCommentIDCmd.h"
#include "UI/Commands/Itemhub/ItemhubDocuments.h"
#include "UI/Commands/Itemhub/ItemhubInsertComponentCmd.h"
#include "UI/Commands/Itemhub/ItemhubMyFavoritesCmds.h"
#include "UI/Commands/Itemhub/ItemhubNewItemCmd.h"
#include "UI/Commands/Itemhub/ItemhubNotifyMessageCmd.h"
#include "UI/Commands/Itemhub/ItemhubOpenAttachmentCmd.h"
#include "UI/Commands/Itemhub/ItemhubSaveCmd.h"
#include "UI/Commands/Itemhub/ItemhubSessionCmds.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Measure/MeasureCmdDef.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Selection/ClipboardCmds.h"
#include "UI/Commands/Selection/DeleteCmd.h"
#include "UI/Commands/Selection/FindCmds.h"
#include "UI/Commands/Selection/RenameCommand.h"
#include "UI/Commands/Selection/RepeatCmd.h"
#include "UI/Commands/Selection/SelectAllCmds.h"
#include "UI/Commands/Selection/SelectCmd.h"
#include "UI/Commands/Selection/SelectionFilterCmd.h"
#include "UI/Commands/Selection/SnapCmds.h"
#include "UI/Commands/Selection/UndoCmds.h"
#include "UI/Commands/Selection/UndoRedoDropDown.h"
#include "UI/Commands/Share/ShareSheetsCmd.h"
#include "UI/Commands/Shells/ActiveViewAssetCmd.h"
#include "UI/Commands/Shells/AreaCmds.h"
#include "UI/Commands/Shells/AssetCmds.h"
#include "UI/Commands/Shells/DefaultShellFactory.h"
#include "UI/Commands/Shells/EnvironmentCmds.h"
#include "UI/Commands/Shells/InsertAssetCmd.h"
#include "UI/Commands/Shells/LayoutCmds.h"
#include "UI/Commands/Shells/ShellCmds.h"
#include "UI/Commands/Shells/SplitViewLayoutCmd.h"
#include "UI/Commands/Shells/ToolbarCmds.h"
#include "UI/Commands/Shells/ToolbarsCmd.h"
#include "UI/Commands/Shells/WindowCmds.h"
#include "UI/Commands/Transcripts/DebugDialogCmds.h"
#include "UI/Commands/Transcripts/MacroCmds.h"
#include "UI/Commands/Transcripts/Macros.h"
#include "UI/Commands/Transcripts/RunScriptCmd.h"
#include "UI/Commands/Transcripts/ScriptsCmd.h"
#include "UI/Commands/Transcripts/TranscriptingCmds.h"

#include <boost/filesystem/operations.hpp>

namespace Vu::Commands {
namespace {

/// The add-in's root object. Constructing it constructs its members, which is what makes the commands known;
/// their order is the order in which the host lists them.
class CommandsAddIn : public Vs::IUIAddIn, public CommandEventSite
{
public:
    CommandsAddIn() : Vs::IUIAddIn(L"Commands")
    {
        ActiveViewAssetCmdDef::createCommandDef();
        CopyToClipboardCmdDef::createCommandDef();
        HidePropertiesCmdDef::createCommandDef();
        HideScriptPanelCmdDef::createCommandDef();
        InvertSelectionCmdDef::createCommandDef();
        ItemhubDashboardCmdDef::createCommandDef();
        ItemhubSignInCmdDef::createCommandDef();
        ItemhubSignOutCmdDef::createCommandDef();
        NewTabCmdDef::createCommandDef();
        PasteCmdDef::createCommandDef();
        PreviousOpenDocumentCmdDef::createCommandDef();
        RevertDocumentCmdDef::createCommandDef();
        SaveAllDocumentsCmdDef::createCommandDef();
        SaveDocumentCopyCmdDef::createCommandDef();
        ScriptsCmdDef::createCommandDef();
        createMacroCommandDefs();
        SearchCommandsCmdDef::createCommandDef();
        SelectAllCmdDef::createCommandDef();
        ShowPropertiesCmdDef::createCommandDef();
        ShowScriptPanelCmdDef::createCommandDef();
        SetHomeViewCmdDef::createCommandDef();
        SplitViewLayoutCmdDef::createCommandDef();
        StandardViewCmdDef::createCommandDefs();
        ToolbarsCmdDef::createCommandDef();
        WelcomeScreenCmdDef::createCommandDef();
        UndoRedoDropDownCommandDef::createCommandDefs();
    }

    /// It is no longer subscribed if it was unloaded; a start that fails unloads nothing.
    ~CommandsAddIn() override { CommandEventSource::get()->unsubscribe(this); }

    void load() override;
    void unload(bool last) override;
    void commandManagerCreated(CommandManagerEvent* event) override;

private:
    DefaultShellFactory m_defaultShellFactory;
    Vs::NotificationsEventSite* m_notifications = nullptr; ///< Owned; deleted by unload(true).
    DebugEnvironmentDef m_debugEnvironmentDef;

    ManagementShellCmdDef m_managementShellCmdDef;
    AssetShellCmdDef m_assetShellCmdDef;
    ExitApplicationCmdDef m_exitApplicationCmdDef;
    CloseAssetCmdDef m_closeAssetCmdDef;
    PreviousAssetCmdDef m_previousAssetCmdDef;
    NextAssetCmdDef m_nextAssetCmdDef;
    SwitchAssetCmdDef m_switchAssetCmdDef;
    InsertAssetCmdDef m_insertAssetCmdDef;
    ExportCmdDef m_exportCmdDef;
    ExportAsCmdDef m_exportAsCmdDef;
    SaveDocumentAsCmdDef m_saveDocumentAsCmdDef;
    SaveAsImageCmdDef m_saveAsImageCmdDef;
    NewDocumentCmdDef m_newDocumentCmdDef;
    NewSingleDocumentCmdDef m_newSingleDocumentCmdDef;
    RenameCommandDef m_renameCommandDef;
    OpenDocumentCmdDef m_openDocumentCmdDef;
    SaveDocumentCmdDef m_saveDocumentCmdDef;
    CloseDocumentCmdDef m_closeDocumentCmdDef;
    CloseWndCmdDef m_closeWndCmdDef;
    CloseAllDocumentsCmdDef m_closeAllDocumentsCmdDef;
    CurrentlyOpenDocumentsCmdDef m_currentlyOpenDocumentsCmdDef;
    CycleOpenDocumentsCmdDef m_cycleOpenDocumentsCmdDef;
    RecentDocumentsCmdDef m_recentDocumentsCmdDef;
    ItemhubOpenAttachmentCmdDef m_itemhubOpenAttachmentCmdDef;
    ItemhubCreateCommentIDCmdDef m_itemhubCreateCommentIDCmdDef;
    ItemhubSaveCmdDef m_itemhubSaveCmdDef;
    ItemhubAuthenticateWithTokenCmdDef m_itemhubAuthenticateWithTokenCmdDef;
    ItemhubNewItemCmdDef m_itemhubNewItemCmdDef;
    ItemhubInsertComponentCmdDef m_itemhubInsertComponentCmdDef;
    ItemhubNotifyMessageCmdDef m_itemhubNotifyMessageCmdDef;
    ItemhubNewDesignCmdDef m_itemhubNewDesignCmdDef;
    ItemhubNewDocumentationCmdDef m_itemhubNewDocumentationCmdDef;
    ItemhubCurrentDesignCmdDef m_currentDesignCmdDef;
    ItemhubCurrentDesignListCmdDef m_currentDesignListCmdDef;
    ItemhubCurrentSimulationCmdDef m_currentSimulationCmdDef;
    ItemhubCurrentSimulationListCmdDef m_currentSimulationListCmdDef;
    ItemhubCurrentDocumentationCmdDef m_currentDocumentationCmdDef;
    ItemhubCurrentDocumentationListCmdDef m_currentDocumentationListCmdDef;
    ItemhubMyFavoritesCmdDef m_itemhubMyFavoritesCmdDef;
    ItemhubMyFavoritesChangedCmdDef m_itemhubMyFavoritesChangedCmdDef;
    CloudLoginCmdDef m_cloudLoginCmdDef;
    CloudLogoutCmdDef m_cloudLogoutCmdDef;
    CloudUploadCmdDef m_cloudUploadCmdDef;
    CloudListFilesCmdDef m_cloudListFilesCmdDef;
    CloudSaveCmdDef m_cloudSaveCmdDef;
    CloudOpenDocumentCmdDef m_cloudOpenDocumentCmdDef;
    CloudSaveAsCmdDef m_cloudSaveAsCmdDef;
    CloudManageCmdDef m_cloudManageCmdDef;
    CloudCmdDef m_cloudCmdDef;
    CloudSaveQATCmdDef m_cloudSaveQATCmdDef;
    AboutBoxCmdDef m_aboutBoxCmdDef;
    CancelCmdDef m_cancelCmdDef;
    CommitCmdDef m_commitCmdDef;
    CutCmdDef m_cutCmdDef;
    DeleteCmdDef m_deleteCmdDef;
    UndoCmdDef m_undoCmdDef;
    RedoCmdDef m_redoCmdDef;
    RepeatCmdDef m_repeatCmdDef;
    HideTextCommandsCmdDef m_hideTextCommandsCmdDef;
    ShowTextCommandsCmdDef m_showTextCommandsCmdDef;
    HideDesignFeedCmdDef m_hideDesignFeedCmdDef;
    ShowDesignFeedCmdDef m_showDesignFeedCmdDef;
    ProductTourGuideCmdDef m_productTourGuideCmdDef;
    ShareCmdDef m_shareCmdDef;
    ShowCommandToolbarCmdDef m_showCommandToolbarCmdDef;
    HideCommandToolbarCmdDef m_hideCommandToolbarCmdDef;
    ShowNavigationToolbarCmdDef m_showNavigationToolbarCmdDef;
    HideNavigationToolbarCmdDef m_hideNavigationToolbarCmdDef;
    ShowBrowserCmdDef m_showBrowserCmdDef;
    HideBrowserCmdDef m_hideBrowserCmdDef;
    HelpCmdDef m_helpCmdDef;
    SubscriptionCmdDef m_subscriptionCmdDef;
    VideosCmdDef m_videosCmdDef;
    FeedbackCmdDef m_feedbackCmdDef;
    JoinDiscussionCmdDef m_joinDiscussionCmdDef;
    SuggestboxCmdDef m_suggestboxCmdDef;
    MinimizeCmdDef m_minimizeCmdDef;
    ZoomWindowCmdDef m_zoomWindowCmdDef;
    BringAllToFrontCmdDef m_bringAllToFrontCmdDef;
    EnableAdaptiveSnapCmdDef m_enableAdaptiveSnapCmdDef;
    DisableAdaptiveSnapCmdDef m_disableAdaptiveSnapCmdDef;
    SetSnapValueCmdDef m_setSnapValueCmdDef;
    OpenWebBrowserCmdDef m_openWebBrowserCmdDef;
    CIPCmdDef m_cipCmdDef;
    ResetToDefaultLayoutCmdDef m_resetToDefaultLayoutCmdDef;
    MeasureCmdDef m_measureCmdDef;
    PreferencesCmdDef m_preferencesCmdDef;
    RunScriptCmdDef m_runScriptCmdDef;
    OrbitCmdDef m_orbitCmdDef;
    FreeOrbitCmdDef m_freeOrbitCmdDef;
    ConstrainedOrbitCmdDef m_constrainedOrbitCmdDef;
    LookAtCmdDef m_lookAtCmdDef;
    PanCmdDef m_panCmdDef;
    ZoomCmdDef m_zoomCmdDef;
    FitCmdDef m_fitCmdDef;
    SelectCmdDef m_selectCmdDef;
    SelectionFilterCmdDef m_selectionFilterCmdDef;
    ViewWidgetCmdDef m_viewWidgetCmdDef;
    ShowOrbiconCmdDef m_showOrbiconCmdDef;
    HideOrbiconCmdDef m_hideOrbiconCmdDef;
    FindInCanvasCmdDef m_findInCanvasCmdDef;
    FindInBrowserCmdDef m_findInBrowserCmdDef;
    CloseWorkspaceCmdDef m_closeWorkspaceCmdDef;
    ShowWorkspaceFullScreenCmdDef m_showWorkspaceFullScreenCmdDef;
    ShowWorkspaceNormalCmdDef m_showWorkspaceNormalCmdDef;
    DockAssetToolbarsToTopCmdDef m_dockAssetToolbarsToTopCmdDef;
    DockAssetToolbarsToBottomCmdDef m_dockAssetToolbarsToBottomCmdDef;
    ActivateEnvironmentCmdDef m_activateEnvironmentCmdDef;
    ReturnToEnvironmentCmdDef m_returnToEnvironmentCmdDef;
    CycleWorkspacesForwardCmdDef m_cycleWorkspacesForwardCmdDef;
    CycleWorkspacesBackwardCmdDef m_cycleWorkspacesBackwardCmdDef;
    StartTranscriptingCmdDef m_startTranscriptingCmdDef;
    StartPerfTranscriptingCmdDef m_startPerfTranscriptingCmdDef;
    StopTranscriptingCmdDef m_stopTranscriptingCmdDef;
    ReplayTranscriptCmdDef m_replayTranscriptCmdDef;
    ClearAllAlertsCmdDef m_clearAllAlertsCmdDef;
    ShowDebugDialogCmdDef m_showDebugDialogCmdDef;
    HideDebugDialogCmdDef m_hideDebugDialogCmdDef;
    ShowCommandPaletteCmdDef m_showCommandPaletteCmdDef;
    HideCommandPaletteCmdDef m_hideCommandPaletteCmdDef;
    DestroyDebugDialogCmdDef m_destroyDebugDialogCmdDef;
    ShareSheetsCmdDef m_shareSheetsCmdDef;
    ViewDisplayCmdDef m_viewDisplayCmdDef;
    ViewEffectCmdDef m_viewEffectCmdDef;
    ViewDomeCmdDef m_viewDomeCmdDef;
    ViewGroundPlaneCmdDef m_viewGroundPlaneCmdDef;
    ViewGroundShadowCmdDef m_viewGroundShadowCmdDef;
    ViewGroundReflectionCmdDef m_viewGroundReflectionCmdDef;
    ViewAmbientOcclusionCmdDef m_viewAmbientOcclusionCmdDef;
    ViewNPREffectCmdDef m_viewNPREffectCmdDef;
    ViewEnvironmentCmdDef m_viewEnvironmentCmdDef;
    ViewMSAACmdDef m_viewMSAACmdDef;
    ViewSelectionEffectCmdDef m_viewSelectionEffectCmdDef;
    ViewVisualStyleCmdDef m_viewVisualStyleCmdDef;
    ViewCameraCmdDef m_viewCameraCmdDef;
    ViewObjectShadowCmdDef m_viewObjectShadowCmdDef;
    ViewColorCyclingCmdDef m_viewColorCyclingCmdDef;
    ViewLayoutGridOnCmdDef m_viewLayoutGridOnCmdDef;
    ViewGridRefNumbersCmdDef m_viewGridRefNumbersCmdDef;
    ViewLayoutGridCmdDef m_viewLayoutGridCmdDef;
    ViewAxisCrossCmdDef m_viewAxisCrossCmdDef;
    ViewScaleBarCmdDef m_viewScaleBarCmdDef;
    ViewEnvironmentFileCmdDef m_viewEnvironmentFileCmdDef;
    SaveDrawingCmdDef m_saveDrawingCmdDef;
    PrintCmdDef m_printCmdDef;
    AddNamedViewCmdDef m_addNamedViewCmdDef;
    RemoveNamedViewCmdDef m_removeNamedViewCmdDef;
    UpdateNamedViewCameraCmdDef m_updateNamedViewCameraCmdDef;
    UpdateNamedViewNameCmdDef m_updateNamedViewNameCmdDef;
    RestoreCameraCmdDef m_restoreCameraCmdDef;
    NotifyAutoSaveFilesCmdDef m_notifyAutoSaveFilesCmdDef;
};

const boost::filesystem::path& resourceDirectory()
{
    static const boost::filesystem::path directory =
        Vs::PathInfo::localizationDirectory(true) / "UI" / "Commands" / "Resources";
    return directory;
}

// Missing or broken files don't stop the add-in: the commands work without toolbars.
void CommandsAddIn::load()
{
    if (boost::filesystem::exists(resourceDirectory())) {
        static ExtendedInfoLoader extendedInfo(resourceDirectory(), kDomain);
        extendedInfo.load();
    }
    m_notifications = NotificationsEventSiteFactory::buildEventSite();
    Vs::Status status;
    ToolbarPersister::get()->loadToolbars(Resources::ToolbarXml()->localPath(), kDomain, status);
    MenuBar::get()->addFile((resourceDirectory() / "Toolbar" / "Menus.xml").wstring(), kDomain);
    HUDPersister::get()->loadHUDs(Resources::HUDXml()->localPath(), status);
    if (status.isError())
        Vs::warn(status.toString());
    Macros::defineAll();
    CommandEventSource::get()->subscribe(this);
    CloudDocuments::install();
    ItemhubDocuments::install();
    Application::get()->addWindowPart("libVuCommandsQT10.so");
}

void CommandsAddIn::unload(bool last)
{
    if (!last) {
        CommandEventSource::get()->unsubscribe(this);
        CloudDocuments::uninstall();
        ItemhubDocuments::uninstall();
        return;
    }
    delete m_notifications;
    m_notifications = nullptr;
}

void CommandsAddIn::commandManagerCreated(CommandManagerEvent* event)
{
    AssetSession* session = event->commandManager()->assetSession();
    if (!session || !Vs::cast<Vs::Scene::SceneAssetAdapter>(session->asset()->adapter()))
        return;
    PassiveCameraCmdAgent::get();
    SpaceMouseEventSite::get();
}

} // namespace
} // namespace Vu::Commands

/// The library's one export.
extern "C" Vs::IAddIn* GetIAddIn()
{
    static Vu::Commands::CommandsAddIn addIn;
    return &addIn;
}
