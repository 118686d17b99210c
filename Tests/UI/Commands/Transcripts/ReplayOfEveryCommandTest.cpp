// Every command that a transcript can contain: recorded in a session, replayed in an empty program, as text
// and as Python, without a window and with one. A new command needs a row here.

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Selection/Private/SelectionOptionGroup.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Types/UnitsOptionGroup.h"
#include "Server/Types/Uuid.h"
#include "Tests/UI/Commands/Recorded.h"
#include "Tests/UI/Commands/WithEdition.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/SnapManager.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <string_view>

namespace {

namespace fs = boost::filesystem;

/// A session that shows the command's effect. Lines are separated by `;`. `{}` is the folder for created
/// files, `@drag` and `@click` are the mouse. A line that begins with `?` may fail.
struct Session
{
    const wchar_t* command; ///< A definition's identifier, or a text command with a body of its own.
    std::wstring lines;
    /// What its own line of the transcript contains; empty for its own name. `-` if other lines say what it
    /// did.
    const wchar_t* written = L"";
};

const std::wstring kModel =
    L"Design.New;Design.Box 20 30 40;Design.Cylinder 5 10 50,0,0;Design.Sphere 8 0,80,0;";
/// A box in the middle of the view, whatever covers that.
const std::wstring kSeen =
    L"Design.New;Design.Box 20 30 40;Camera.Set 110,-85,120 10,15,20 0,0,1 1 1000 80 80 2;";
const std::wstring kBoth = kModel + L"Selection.Select Box1 Cylinder1;";
const std::wstring kTwo = kModel + L"Design.New;Design.Box 1 2 3;";
const std::wstring kAssets = kModel + L"Asset.Create VeloraAssetType;";
const std::wstring kOverlap = L"Design.New;Design.Box 20 20 20;Design.Box 20 20 20 10,10,10;";

// clang-format off
const Session kSessions[] = {
    // Documents
    {L"NewDocumentCommand",            L"VuCommands.NewDocumentCmd VeloraDocType"},
    {L"NewSingleDocumentCommand",      L"VuCommands.NewSingleDocumentCmd VeloraAssetType"},
    {L"OpenDocumentCommand",           kModel + L"Document.SaveAs {}/a.vlra;Design.New;VuCommands.OpenDocumentCmd {}/a.vlra"},
    {L"VeloraOpenDocumentCommand",     kModel + L"Document.SaveAs {}/a.vlra;Document.CloseAll;Commands.Start VeloraOpenDocumentCommand Path={}/a.vlra"},
    {L"VeloraImportCommand",           kModel + L"Asset.Export {}/a.step;Design.New;Commands.Start VeloraImportCommand Path={}/a.step"},
    {L"SaveDocumentCommand",           kModel + L"VuCommands.SaveDocumentCmd {}/b.vlra;Design.Box 1 1 1;VuCommands.SaveDocumentCmd"},
    {L"Document.UpdateRootComponentName", kModel + L"Document.UpdateRootComponentName Renamed"},
    {L"SaveDocumentAsCommand",         kModel + L"VuCommands.SaveDocumentAsCmd {}/c.vlra"},
    {L"SaveDocumentCopyCommand",       kModel + L"Commands.Start SaveDocumentCopyCommand Path={}/i.vlra"},
    {L"SaveAllDocumentsCommand",       kModel + L"Document.SaveAs {}/j.vlra;Design.Box 1 1 1;Commands.Start SaveAllDocumentsCommand"},
    {L"RevertDocumentCommand",         kModel + L"Document.SaveAs {}/k.vlra;Design.Box 1 1 1;Commands.Start RevertDocumentCommand"},
    {L"ExportCommand",                 kModel + L"VuCommands.ExportCmd {}/d.step"},
    {L"ExportAsCommand",               kModel + L"@file e.stl;VuCommands.ExportAsCmd"},
    {L"VeloraExportCommand",           kModel + L"Design.Export {}/f.stl 5,0.01 /Combine"},
    {L"SaveAsImageCommand",            kModel + L"Commands.Start SaveAsImageCommand Path={}/g.png Width=64 Height=48"},
    {L"ShareSheetsCommand",            kModel + L"Commands.Start ShareSheetsCommand CmdId=ShareInFolderCommand Path={}/p.png"},
    {L"SaveDrawingCommand",            kModel + L"Commands.Start SaveDrawingCommand Path={}/g.svg Scale=1:2 Hidden=1"},
    {L"PrintCommand",                  kModel + L"Commands.Start PrintCommand Path={}/q.pdf Print=Drawing Scale=1:2 Paper=A3"},
    {L"CloseDocumentCommand",          kTwo + L"!VuCommands.CloseDocumentCmd"},
    {L"CloseAllDocumentsCommand",      kTwo + L"!VuCommands.CloseAllDocumentsCmd"},
    {L"CurrentlyOpenDocumentsCommand", kTwo + L"VuCommands.CurrentlyOpenDocumentsCmd"},
    {L"CycleOpenDocumentsCommand",     kTwo + L"VuCommands.CycleOpenDocumentsCmd", L"AssetShellCmd"},
    {L"NewTabCommand",                 kModel + L"Commands.Start NewTabCommand"},
    {L"PreviousOpenDocumentCommand",   kTwo + L"Commands.Start PreviousOpenDocumentCommand", L"AssetShellCmd"},
    {L"RecentDocumentsCommand",        kModel + L"VuCommands.RecentDocumentsCmd"},
    {L"CurrentDesignCommand",          L"Document.Create SimulationAssetType;" + kModel + L"VuCommands.CycleOpenDocumentsCmd;Commands.Start CurrentDesignCommand", L"AssetShellCmd"},
    {L"CurrentDesignListCommand",      kModel + L"Commands.Start CurrentDesignListCommand"},
    {L"CurrentSimulationCommand",      L"Document.Create SimulationAssetType;Design.New;Commands.Start CurrentSimulationCommand", L"AssetShellCmd"},
    {L"CurrentSimulationListCommand",  L"Document.Create SimulationAssetType;Commands.Start CurrentSimulationListCommand"},
    {L"CurrentDocumentationCommand",   L"Document.Create DocumentationAssetType;Design.New;Commands.Start CurrentDocumentationCommand", L"AssetShellCmd"},
    {L"CurrentDocumentationListCommand", L"Document.Create DocumentationAssetType;Commands.Start CurrentDocumentationListCommand"},
    // The cloud drive, with nobody signed in
    {L"CloudCommand",                  L"Commands.Start CloudCommand"},
    {L"CloudLoginCommand",             L"VuCommands.CloudLoginCmd anna secret", L"***"},
    {L"CloudLogoutCommand",            L"VuCommands.CloudLogoutCmd"},
    {L"CloudManageCommand",            L"VuCommands.CloudManageCmd"},
    {L"CloudListFilesCommand",         L"VuCommands.CloudListFilesCmd"},
    {L"CloudUploadCommand",            kModel + L"Commands.Start CloudUploadCommand"},
    {L"CloudSaveCommand",              kModel + L"VuCommands.CloudSaveCmd"},
    {L"CloudSaveQATCommand",           kModel + L"VuCommands.CloudSaveQATCmd"},
    {L"CloudSaveAsCommand",            kModel + L"VuCommands.CloudSaveAsCmd"},
    {L"CloudOpenDocumentCommand",      L"VuCommands.CloudOpenDocumentCmd"},
    {L"ShareCommand",                  L"VuCommands.ShareCmd"},
    // The lifecycle service, with nobody signed in
    {L"ItemhubAuthenticateWithTokenCommand", L"Dashboard.AuthenticateWithTokenCmd http://127.0.0.1:1/ secret acme", L"ITEMHUB_TOKEN"},
    {L"ItemhubNewItemCommand",         L"Dashboard.NewItemCmd 1 Bracket 0 0 VeloraAssetType"},
    {L"ItemhubNewDesignCommand",       L"Commands.Start ItemhubNewDesignCommand"},
    {L"ItemhubNewDocumentationCommand", L"Commands.Start ItemhubNewDocumentationCommand", L"-"},
    {L"ItemhubSaveCommand",            kModel + L"Document.SaveAs {}/o.vlra;Design.Box 1 1 1;Commands.Start ItemhubSaveCommand ItemhubSaveLabel=\"For review\""},
    {L"ItemhubInsertComponentCommand", kModel + L"Dashboard.InsertComponentCmd 1 2"},
    {L"ItemhubOpenAttachmentCommand",  L"Dashboard.OpenAttachmentCmd wheel"},
    {L"ItemhubCreateCommentID",        kModel + L"Dashboard.CreateCommentIDCmd 7"},
    {L"ItemhubDashboardCommand",       L"Commands.Start ItemhubDashboardCommand"},
    {L"ItemhubMyFavoritesCommand",     L"Commands.Start ItemhubMyFavoritesCommand", L"-"},
    {L"ItemhubMyFavoritesChangedCommand", L"Commands.Start ItemhubMyFavoritesChangedCommand"},
    {L"ItemhubSignOutCommand",         L"Commands.Start ItemhubSignOutCommand"},
    // Shells, assets, environments
    {L"ManagementShellCommand",        kModel + L"VuCommands.ManagementShellCmd"},
    {L"AssetShellCommand",             kTwo + L"VuCommands.ManagementShellCmd;VuCommands.AssetShellCmd"},
    {L"InsertAssetCommand",            kModel + L"VuCommands.InsertAssetCmd VeloraAssetType"},
    {L"NextAssetCommand",              kAssets + L"VuCommands.PreviousAssetCmd;VuCommands.NextAssetCmd"},
    {L"PreviousAssetCommand",          kAssets + L"VuCommands.PreviousAssetCmd"},
    {L"SwitchAssetCommand",            kAssets + L"VuCommands.SwitchAssetCmd {session}"},
    {L"ActiveViewAssetCommand",        kAssets + L"VuCommands.ActiveViewAssetCmd {first}"},
    {L"CloseAssetCommand",             kAssets + L"!VuCommands.CloseAssetCmd"},
    {L"ActivateEnvironmentCommand",    kModel + L"VuCommands.ActivateEnvironmentCmd ReviewEnvironment"},
    {L"ReturnToEnvironmentCommand",    kModel + L"Design.Edit Box1;VuCommands.ReturnToEnvironmentCmd;Design.Box 1 1 1"},
    {L"CycleWorkspacesForwardCommand", kModel + L"VuCommands.CycleWorkspacesForwardCmd"},
    {L"CycleWorkspacesBackwardCommand", kModel + L"VuCommands.CycleWorkspacesBackwardCmd"},
    {L"SplitViewLayoutCommand",        kModel + L"Commands.Start SplitViewLayoutCommand Layout=Quad;Commands.Start SplitViewLayoutCommand Layout=OneView"},
    {L"AboutBoxCommand",               L"Commands.Start AboutBoxCommand"},
    {L"MinimizeCommand",               L"VuCommands.MinimizeCmd"},
    {L"ZoomWindowCommand",             L"VuCommands.ZoomWindowCmd;VuCommands.ZoomWindowCmd"},
    {L"BringAllToFrontCommand",        L"VuCommands.BringAllToFrontCmd"},
    {L"ShowWorkspaceFullScreenCommand", L"VuCommands.ShowWorkspaceFullScreenCmd;VuCommands.ShowWorkspaceNormalCmd"},
    {L"ShowWorkspaceNormalCommand",    L"VuCommands.ShowWorkspaceFullScreenCmd;VuCommands.ShowWorkspaceNormalCmd"},
    {L"ResetToDefaultLayoutCommand",   kModel + L"Commands.Start SplitViewLayoutCommand Layout=Quad;VuCommands.ResetToDefaultLayoutCommand"},
    {L"ShowBrowserCommand",            kModel + L"VuCommands.HideBrowserCommand;VuCommands.ShowBrowserCommand"},
    {L"HideBrowserCommand",            kModel + L"VuCommands.HideBrowserCommand"},
    {L"ShowDesignFeedCommand",         kModel + L"Commands.Start ShowDesignFeedCommand"},
    {L"ShowPropertiesCommand",         kModel + L"Commands.Start HidePropertiesCommand;Commands.Start ShowPropertiesCommand"},
    {L"ShowScriptPanelCommand",        kModel + L"Commands.Start ShowScriptPanelCommand"},
    {L"HideScriptPanelCommand",        kModel + L"Commands.Start ShowScriptPanelCommand;Commands.Start HideScriptPanelCommand"},
    {L"HidePropertiesCommand",         kModel + L"Commands.Start HidePropertiesCommand"},
    {L"HideDesignFeedCommand",         kModel + L"Commands.Start ShowDesignFeedCommand;Commands.Start HideDesignFeedCommand"},
    {L"ShowTextCommandsCommand",       L"VuCommands.HideTextCommandsCommand;VuCommands.ShowTextCommandsCommand"},
    {L"HideTextCommandsCommand",       kModel + L"VuCommands.HideTextCommandsCommand"},
    {L"ShowCommandToolbarCommand",     kModel + L"VuCommands.HideCommandToolbarCmd;VuCommands.ShowCommandToolbarCmd"},
    {L"HideCommandToolbarCommand",     kModel + L"VuCommands.HideCommandToolbarCmd"},
    {L"ShowNavigationToolbarCommand",  kModel + L"VuCommands.HideNavigationToolbarCmd;VuCommands.ShowNavigationToolbarCmd"},
    {L"HideNavigationToolbarCommand",  kModel + L"VuCommands.HideNavigationToolbarCmd"},
    {L"DockAssetToolbarsToBottomCommand", kModel + L"VuCommands.DockAssetToolbarsToBottomCmd"},
    {L"DockAssetToolbarsToTopCommand", kModel + L"VuCommands.DockAssetToolbarsToBottomCmd;VuCommands.DockAssetToolbarsToTopCmd"},
    {L"ToolbarsCommand",               kModel + L"Commands.Start ToolbarsCommand Toolbar=Solids Visible=0"},
    {L"ShowCommandPaletteCommand",     kModel + L"VuCommands.SetSnapValueCmd;Commands.Start ShowCommandPaletteCommand;Commands.Cancel"},
    {L"HideCommandPaletteCommand",     kModel + L"VuCommands.SetSnapValueCmd;VuCommands.HideCommandPaletteCmd;Commands.Cancel"},
    {L"CloseWndCommand",               kTwo + L"!Commands.Start CloseWndCommand"},
    {L"HelpCommand",                   L"VuCommands.HelpCmd"},
    {L"FeedbackCommand",               L"VuCommands.FeedbackCmd"},
    {L"JoinDiscussionCommand",         L"VuCommands.JoinDiscussionCmd"},
    {L"VideosCommand",                 L"Commands.Start VideosCommand Address=https://videos.example/3"},
    {L"SuggestboxCommand",             L"VuCommands.SuggestboxCmd"},
    {L"OpenWebBrowserCommand",         L"VuCommands.OpenWebBrowserCmd https://a.example/"},
    {L"SubscriptionCommand",           L"VuCommands.SubscriptionCmd"},
    {L"CIPCommand",                    L"VuCommands.CIPCmd"},
    {L"ProductTourGuideCommand",       L"VuCommands.ProductTourGuideCmd"},
    {L"SetHomeViewCommand",            kModel + L"Commands.Start TopViewCommand;Commands.Start SetHomeViewCommand;Commands.Start FrontViewCommand;Commands.Start HomeViewCommand"},
    {L"SearchCommandsCommand",         kModel + L"Commands.Start SearchCommandsCommand", L"-"},
    {L"WelcomeScreenCommand",          kModel + L"VuCommands.WelcomeScreenCmd"},
    {L"PreferencesCommand",            L"Commands.Start PreferencesCommand"},
    {L"Options.Set",                   L"Options.Set Units.generalPrecision 5"},
    {L"NotifyAutoSaveFilesCommand",    L"Commands.Start NotifyAutoSaveFilesCommand"},
    {L"RunScriptCommand",              L"VuCommands.RunScriptCmd {given}/boxes.py"},
    {L"ScriptsCommand",                L"Commands.Start ScriptsCommand"},
    // Camera and views
    {L"OrbitCommand",                  kModel + L"Commands.Start OrbitCommand orbitType=ConstrainedOrbitCommand;@drag 40 30;Commands.Cancel", L"Camera.Set"},
    {L"FreeOrbitCommand",              kModel + L"Commands.Start FreeOrbitCommand;@drag 40 30;Commands.Cancel", L"Camera.Set"},
    {L"ConstrainedOrbitCommand",       kModel + L"Commands.Start ConstrainedOrbitCommand;@drag 40 30;Commands.Cancel", L"Camera.Set"},
    {L"PanCommand",                    kModel + L"Commands.Start PanCommand;@drag 40 30;Commands.Cancel", L"Camera.Set"},
    {L"ZoomCommand",                   kModel + L"Commands.Start ZoomCommand;@drag 40 30;Commands.Cancel", L"Camera.Set"},
    {L"LookAtCommand",                 kSeen + L"Commands.Start LookAtCommand;@click 0 0", L"Camera.Set"},
    {L"FitCommand",                    kModel + L"Camera.ZoomIn 3;Commands.Start FitCommand"},
    {L"HomeViewCommand",               kModel + L"Camera.ZoomIn 3;Commands.Start HomeViewCommand"},
    {L"FitSelectionCommand",           kBoth + L"Camera.ZoomIn 3;Commands.Start FitSelectionCommand"},
    {L"FrontViewCommand",              kModel + L"Camera.ZoomIn 3;Commands.Start FrontViewCommand"},
    {L"BackViewCommand",               kModel + L"Camera.ZoomIn 3;Commands.Start BackViewCommand"},
    {L"RightViewCommand",              kModel + L"Camera.ZoomIn 3;Commands.Start RightViewCommand"},
    {L"LeftViewCommand",               kModel + L"Camera.ZoomIn 3;Commands.Start LeftViewCommand"},
    {L"TopViewCommand",                kModel + L"Camera.ZoomIn 3;Commands.Start TopViewCommand"},
    {L"BottomViewCommand",             kModel + L"Camera.ZoomIn 3;Commands.Start BottomViewCommand"},
    {L"IsometricViewCommand",          kModel + L"Camera.ZoomIn 3;Commands.Start IsometricViewCommand"},
    {L"TogglePerspectiveCommand",      kModel + L"Camera.ZoomIn 3;Commands.Start TogglePerspectiveCommand"},
    {L"SelectAllCommand",              kModel + L"Camera.ZoomIn 3;Commands.Start SelectAllCommand"},
    {L"InvertSelectionCommand",        kBoth + L"Camera.ZoomIn 3;Commands.Start InvertSelectionCommand"},
    {L"AddNamedViewCommand",           kModel + L"Commands.Start AddNamedViewCommand"},
    {L"RemoveNamedViewCommand",        kModel + L"NamedView.AddNamedView;NamedView.AddNamedView;Commands.Start RemoveNamedViewCommand NamedViewName=NamedView"},
    {L"UpdateNamedViewCameraCommand",  kModel + L"NamedView.AddNamedView;Camera.ZoomIn 3;Commands.Start UpdateNamedViewCameraCommand NamedViewName=NamedView"},
    {L"UpdateNamedViewNameCommand",    kModel + L"NamedView.AddNamedView;Commands.Start UpdateNamedViewNameCommand NamedViewName=NamedView NewNamedViewName=\"My own\""},
    {L"RestoreCameraCommand",          kModel + L"Commands.Start RestoreCameraCommand NamedViewName=Right"},
    {L"ViewDisplayCommand",            kModel + L"Commands.Start ViewDisplayCommand CmdId=ViewDomeOnCommand"},
    {L"ViewEffectCommand",             kModel + L"Commands.Start ViewEffectCommand CmdId=ViewGroundShadowOnCommand"},
    {L"ViewDomeCommand",               kModel + L"VuCommands.ViewDomeCmd ViewDomeOnCommand"},
    {L"ViewGroundPlaneCommand",        kModel + L"VuCommands.ViewGroundPlaneCmd ViewGroundPlaneOnCommand"},
    {L"ViewGroundShadowCommand",       kModel + L"VuCommands.ViewGroundShadowCmd ViewGroundReflectionOnCommand"},
    {L"ViewGroundReflectionCommand",   kModel + L"VuCommands.ViewGroundReflectionCmd ViewGroundReflectionOnCommand"},
    {L"ViewAmbientOcclusionCommand",   kModel + L"VuCommands.ViewAmbientOcclusionCmd ViewAmbientOcclusionOnCommand"},
    {L"ViewNPREffectCommand",          kModel + L"VuCommands.ViewNPREffectCmd ViewNPRGraphiteCommand"},
    {L"ViewEnvCommand",                kModel + L"VuCommands.ViewEnvironmentCmd ViewEnvPhotoBoothCommand"},
    {L"ViewMSAACommand",               kModel + L"VuCommands.ViewMSAACmd ViewMSAAOffCommand"},
    {L"ViewSelectionEffectCommand",    kModel + L"VuCommands.ViewSelectionEffectCmd ViewSelectionEffectNoCommand"},
    {L"ViewVisualStyleCommand",        kModel + L"VuCommands.ViewVisualStyleCmd ViewVisualStyleWireframe"},
    {L"ViewCameraCommand",             kModel + L"VuCommands.ViewCameraCmd ViewCameraPerspCommand;VuCommands.ViewCameraCmd ViewCameraOrthoCommand"},
    {L"ViewObjectShadowCommand",       kModel + L"VuCommands.ViewObjectShadowCmd ViewObjectShadowSharpCommand"},
    {L"ViewColorCyclingCommand",       kModel + L"VuCommands.ViewColorCyclingCmd ViewColorCyclingOnCommand"},
    {L"ViewLayoutGridOnCommand",       kModel + L"VuCommands.ViewLayoutGridOnCmd ViewLayoutGridOffCommand"},
    {L"ViewLayoutGridCommand",         kModel + L"Commands.Start ViewLayoutGridCommand CmdId=ViewLayoutGridOffCommand"},
    {L"ViewGridRefNumeralsCommand",    kModel + L"Commands.Start ViewGridRefNumeralsCommand CmdId=ViewGridNumeralsOffCommand"},
    {L"ViewAxisCrossCommand",          kModel + L"VuCommands.ViewAxisCrossCmd ViewAxisCrossOnCommand"},
    {L"ViewEnvironmentFileCommand",    kModel + L"VuCommands.ViewEnvironmentFileCmd {given}/grey.hdr"},
    {L"ViewScaleBarCommand",           kModel + L"VuCommands.ViewScaleBarCmd ViewScaleBarOnCommand"},
    {L"ShowOrbiconCommand",            kModel + L"VuCommands.HideOrbiconCmd;VuCommands.ShowOrbiconCmd"},
    {L"HideOrbiconCommand",            kModel + L"VuCommands.HideOrbiconCmd"},
    {L"ViewWidgetCommand",             kModel + L"VuCommands.ViewWidgetCmd"},
    // Selection
    {L"SelectCommand",                 kSeen + L"@click 0 0", L"Selection.Select"},
    {L"SeparateCommand",               kModel + L"Design.Pattern Box1 X 30 3;Design.Separate Box1:2"},
    {L"SelectionFilterCommand",        kModel + L"VuCommands.SelectionFilterCmd Edges,Faces"},
    {L"FindInCanvas",                  kBoth + L"Commands.Start FindInCanvas"},
    {L"FindInBrowser",                 kBoth + L"Commands.Start FindInBrowser"},
    {L"RenameCommand",                 kModel + L"Selection.Select Box1;VuCommands.RenameCommand \"An \\\"edge\\\"\""},
    {L"DeleteCommand",                 kBoth + L"Commands.Start DeleteCommand"},
    {L"CutCommand",                    kBoth + L"VuCommands.CutCmd;VuCommands.PasteCmd"},
    {L"CopyToClipboardCommand",        kBoth + L"VuCommands.CopyToClipboardCmd;VuCommands.PasteCmd"},
    {L"PasteCommand",                  kBoth + L"VuCommands.CopyToClipboardCmd;Design.New;VuCommands.PasteCmd"},
    {L"UndoCommand",                   kModel + L"VuCommands.UndoCmd;VuCommands.UndoCmd"},
    {L"RedoCommand",                   kModel + L"VuCommands.UndoCmd;VuCommands.UndoCmd;VuCommands.RedoCmd"},
    {L"UndoDropDown",                  kModel + L"VuCommands.UndoDropDown 1"},
    {L"RedoDropDown",                  kModel + L"VuCommands.UndoDropDown 2;VuCommands.RedoDropDown 1"},
    {L"RepeatCommand",                 kModel + L"NamedView.AddNamedView;Commands.Start RepeatCommand", L"AddNamedView"},
    {L"CommitCommand",                 kBoth + L"Commands.Start MoveCommand;Commands.SetInput Dx 5;VuCommands.CommitCmd", L"Commands.Commit"},
    {L"CancelCommand",                 kBoth + L"Commands.Start MoveCommand;Commands.SetInput Dx 5;VuCommands.CancelCmd", L"-"},
    {L"EnableAdaptiveSnapCmd",         kModel + L"VuCommands.DisableAdaptiveSnapCmd;VuCommands.EnableAdaptiveSnapCmd"},
    {L"DisableAdaptiveSnapCmd",        kModel + L"VuCommands.DisableAdaptiveSnapCmd"},
    {L"SetSnapValueCmd",               kModel + L"VuCommands.SetSnapValueCmd;Commands.SetInput SnapFixedInput 1;Commands.SetInput SnapAdaptiveInput 0;Commands.SetInput SnapValueInput 7;Commands.Commit"},
    {L"MeasureCommand",                kModel + L"Commands.Start MeasureCommand;Commands.SetInput SelectionInput1 Box1/Face1;Commands.Commit"},
    // Design
    {L"BoxCommand",                    kModel + L"Commands.Start BoxCommand Dx=1 Dy=2 Dz=3 Origin=4,5,6"},
    {L"CylinderCommand",               kModel + L"Commands.Start CylinderCommand Radius=5 Height=2.5"},
    {L"ConeCommand",                   kModel + L"Commands.Start ConeCommand Radius=5 TopRadius=0 Height=2.5 Origin=1,2,3 Direction=1,0,0"},
    {L"TorusCommand",                  kModel + L"Commands.Start TorusCommand Radius=5 TubeRadius=2"},
    {L"SphereCommand",                 kModel + L"Commands.Start SphereCommand Radius=5"},
    {L"MoveCommand",                   kBoth + L"Commands.Start MoveCommand;Commands.SetInput Dx \"1 cm\";Commands.SetInput Dy 1/3;Commands.Commit;Design.Move Sphere1 0.1 0 7"},
    {L"CopyCommand",                   kBoth + L"Commands.Start CopyCommand;Commands.SetInput Dz 60;Commands.Commit;Design.Copy Sphere1 30 0 0"},
    {L"RotateCommand",                 kBoth + L"Commands.Start RotateCommand;Commands.SetInput Angle \"30 deg\";Commands.Commit;Design.Rotate Sphere1 X 45 Point 1 2 3"},
    {L"MirrorCommand",                 kBoth + L"Design.Mirror Box1 X -5"},
    {L"LinearPatternCommand",          kModel + L"Design.Pattern Sphere1 X 20 3 Y 30 2"},
    {L"CircularPatternCommand",        kModel + L"Design.CircularPattern Sphere1 Z 360 5 Origin"},
    {L"JoinCommand",                   kOverlap + L"Design.Join Box1 Box2"},
    {L"SubtractCommand",               kOverlap + L"Design.Subtract Box1 Box2 /Keep"},
    {L"IntersectCommand",              kOverlap + L"Commands.Start IntersectCommand;Commands.SetInput Target Box1;Commands.SetInput Tools Box2;Commands.Commit"},
    {L"FilletCommand",                 kModel + L"Commands.Start FilletCommand;Commands.SetInput Edges Box1/Edge1;Commands.SetInput Radius 2;Commands.Commit;Design.Fillet 1 Box1/Edge5"},
    {L"ChamferCommand",                kModel + L"Design.Chamfer 1 Box1/Edge1 Box1/Edge5"},
    {L"ColourCommand",                 kModel + L"Design.Colour Red Box1;Design.Colour #102030 Sphere1"},
    {L"HideCommand",                   kBoth + L"Commands.Start HideCommand;Design.Hide Sphere1"},
    {L"ShowCommand",                   kBoth + L"Design.Hide;Design.Show Box1"},
    {L"ShowAllCommand",                kBoth + L"Design.Hide;Design.ShowAll"},
    {L"EditComponentCommand",          kModel + L"Design.Edit Box1;Design.Box 5 5 5 40,0,0;Selection.Select Cylinder1;Commands.Start EditComponentCommand"},
    {L"ToggleVisibilityCommand",       kBoth + L"Commands.Start ToggleVisibilityCommand"},
    // Lines with a body of their own
    {L"Design.New",                    L"Design.New"},
    {L"Design.Info",                   kModel + L"Design.Info 7.85 /Json"},
    {L"Design.OpenSample",             L"Design.OpenSample Flange"},
    {L"Design.Picture",                kModel + L"Design.Picture 64 {}/f.png"},
    {L"Design.Sample",                 L"Design.Sample"},
    {L"Design.Unit",                   kModel + L"Design.Unit in;Design.Box 1 1 1"},
    {L"Selection.Select",              kModel + L"Selection.Select Box1/Face2 Cylinder1"},
    {L"Selection.Add",                 kBoth + L"Selection.Add Sphere1"},
    {L"Selection.Remove",              kBoth + L"Selection.Remove Box1"},
    {L"Selection.Clear",               kBoth + L"Selection.Clear"},
    {L"Selection.Undo",                kBoth + L"Selection.Undo on;Commands.Start DeleteCommand;VuCommands.UndoCmd;Selection.Undo off"},
    {L"Camera.Set",                    kModel + L"Camera.Set 100.125,-200,300 1,2,3 0,0.6,0.8 0.1 54321.75 33.3 44.4 1"},
    {L"Camera.ZoomIn",                 kModel + L"Camera.ZoomIn 1.7"},
    {L"Camera.ZoomOut",                kModel + L"Camera.ZoomOut"},
    {L"Camera.Turntable",              kModel + L"Camera.Turntable {}/t.png 2 32x32", L"Turntable"},
    {L"NamedView.AddNamedView",        kModel + L"NamedView.AddNamedView", L"AddNamedView"},
    {L"NamedView.RemoveNamedView",     kModel + L"NamedView.AddNamedView;NamedView.RemoveNamedView NamedView", L"RemoveNamedView"},
    {L"NamedView.UpdateNamedViewCamera", kModel + L"NamedView.AddNamedView;Camera.ZoomIn 2;NamedView.UpdateNamedViewCamera NamedView", L"UpdateNamedViewCamera"},
    {L"NamedView.UpdateNamedViewName", kModel + L"NamedView.AddNamedView;NamedView.UpdateNamedViewName NamedView \"My own\"", L"UpdateNamedViewName"},
    {L"NamedView.RestoreCamera",       kModel + L"NamedView.RestoreCamera Top", L"RestoreCamera"},
    {L"Document.Open",                 kModel + L"Document.SaveAs {}/a.vlra;Document.CloseAll;Document.Open {}/a.vlra", L"OpenDocument"},
    {L"Document.Create",               L"Document.Create SimulationAssetType", L"Document"},
    {L"Document.Close",                kTwo + L"!Document.Close", L"Close"},
    {L"Document.CloseAll",             kTwo + L"!Document.CloseAll", L"CloseDocument"},
    {L"Document.Activate",             kModel + L"Document.SaveAs {}/a.vlra;Design.New;Document.Activate {}/a.vlra", L"a.vlra"},
    {L"Document.Rename",               kModel + L"Document.Rename \"Another name\""},
    {L"Document.Save",                 kModel + L"Document.Save {}/b.vlra", L"b.vlra"},
    {L"Document.SaveCopy",             kModel + L"Document.SaveCopy {}/l.vlra", L"l.vlra"},
    {L"Document.SaveAll",              kModel + L"Document.SaveAs {}/m.vlra;Design.Box 1 1 1;Document.SaveAll", L"SaveAllDocuments"},
    {L"Document.Revert",               kModel + L"Document.SaveAs {}/n.vlra;Design.Box 1 1 1;Document.Revert", L"RevertDocument"},
    {L"Document.SaveAs",               kModel + L"Document.SaveAs {}/c.vlra", L"c.vlra"},
    {L"Asset.Create",                  kModel + L"Asset.Create SimulationAssetType;Asset.Create TorvexAssetType /Hidden", L"InsertAsset"},
    {L"Asset.Close",                   kAssets + L"Asset.Close", L"CloseAsset"},
    {L"Asset.Export",                  kModel + L"Asset.Export {}/h.stl", L"h.stl"},
    {L"Asset.Activate",                kAssets + L"Asset.Activate Design"},
    {L"Asset.UseForTesting",           kModel + L"Asset.UseForTesting;Design.Sample;Asset.UseForTesting /Stop"},
    {L"Asset.MarkDirty",               kModel + L"Asset.MarkDirty"},
    {L"Asset.MarkSmudge",              kModel + L"Asset.MarkSmudge"},
    {L"SplitView.ResetLayout",         kModel + L"SplitView.ResetLayout Quad"},
    {L"SplitView.DefaultLayout",       kModel + L"SplitView.ResetLayout Quad;SplitView.DefaultLayout"},
    {L"SplitView.Activate",            kModel + L"SplitView.ResetLayout Quad;SplitView.Activate 3;Camera.ZoomIn 2;SplitView.Activate 2"},
    {L"SplitView.ShareCamera",         kModel + L"SplitView.ResetLayout Quad;SplitView.ShareCamera;Camera.ZoomIn 2"},
    {L"SplitView.CopyCamera",          kModel + L"SplitView.ResetLayout Quad;Camera.ZoomIn 2;SplitView.CopyCamera"},
    {L"SplitView.NewDoc",              kModel + L"SplitView.ResetLayout Quad;SplitView.NewDoc SimulationAssetType"},
    {L"SplitView.NextAsset",           kAssets + L"SplitView.NextAsset"},
    {L"SplitView.CancelCommandInOtherView", kModel + L"SplitView.CancelCommandInOtherView"},
    {L"Mouse.Down",                    kModel + L"Mouse.Down 0 0 Middle;Mouse.Move 0.1 0.05 Middle;Mouse.Up 0.1 0.05 Middle"},
    {L"Mouse.Move",                    kModel + L"Mouse.Down 0 0 Right;Mouse.Move +0.1 +5e-2 Right;Mouse.Up 0.1 0.05 Right"},
    {L"Mouse.Up",                      kModel + L"Mouse.Down 0 0 Left;Mouse.Up 0 0 Left"},
    {L"Script.BeginTransaction",       kModel + L"Script.BeginTransaction Two;Design.Box 1 1 1;Design.Box 2 2 2;Script.CommitTransaction;VuCommands.UndoCmd;VuCommands.RedoCmd"},
    {L"Script.CommitTransaction",      kModel + L"Script.BeginTransaction Two;Design.Box 1 1 1;Script.CommitTransaction"},
    {L"Script.AbortTransaction",       kModel + L"Script.BeginTransaction Two;Design.Box 1 1 1;Script.AbortTransaction"},
    {L"Script.DiscardChanges",         kModel + L"Script.DiscardChanges;Document.Close"},
    {L"Script.Run",                    L"Script.Run {given}/boxes.py"},
    {L"Script.Settle",                 kModel + L"Script.Settle"},
    {L"Script.Select",                 kModel + L"Script.Select Box1/Edge3"},
    {L"Transcripting.Replay",          L"Transcripting.Replay {given}/boxes.txt"},
};
// clang-format on

/// Text commands without a lasting effect: they report, wait, or concern the transcript itself. The area
/// Commands runs the others.
const std::set<std::wstring> kTelling = {
    L"Asset.List",
    L"Asset.ListDirty",
    L"Asset.Path",
    L"Body.CheckArea",
    L"Body.CheckBounds",
    L"Body.CheckCentre",
    L"Body.CheckFreeEdges",
    L"Body.CheckParts",
    L"Body.CheckVolume",
    L"Camera.Dump",
    L"Component.CheckColours",
    L"Component.CheckCount",
    L"Document.ExampleDoc",
    L"Document.Path",
    L"Document.SoftwareVersion",
    L"Model.CheckDigest",
    L"Model.CheckSelection",
    L"Model.Digest",
    L"Options.Get",
    L"Options.List",
    L"Options.TourGuide",
    L"References.File",
    L"References.Mode",
    L"Script.Added",
    L"Script.Body",
    L"Script.Bounds",
    L"Script.Camera",
    L"Script.Component",
    L"Script.Documents",
    L"Script.Extents",
    L"Script.Parts",
    L"Script.Selection",
    L"Script.Successor",
    L"Selection.List",
    L"Sleeper.Sleep",
    L"SplitView.ViewCount",
    L"Transcripting.RecordSelectMouseEvent",
    L"View.CheckPicture",
    L"View.SaveWindow",
};
// What a run finds of other runs that ended abnormally is in no transcript; items need a service and are
// tested with one.
const std::set<std::wstring> kTellingAreas = {L"AssetMgt",    L"AutoSave",     L"Browser", L"Commands",
                                              L"Debug",       L"DocumentMgt",  L"Itemhub", L"Measure",
                                              L"Performance", L"Transcripting"};

/// These end the program; a test of the program as a whole replays them.
const std::set<std::wstring> kExits = {L"ExitApplicationCommand", L"CloseWorkspaceCommand"};

std::set<std::wstring> covered()
{
    std::set<std::wstring> all = kTelling;
    for (const Session& session : kSessions)
        all.insert(session.command);
    return all;
}

void write(const fs::path& path, const std::string& text)
{
    fs::ofstream(path) << text;
}

/// The options of the program, since some commands change nothing else.
std::wstring options()
{
    std::wstring text;
    std::vector<fs::path> files(fs::directory_iterator(Vs::PathInfo::optionsDirectory()), {});
    std::sort(files.begin(), files.end());
    for (const fs::path& path : files) {
        if (path.extension() != ".json" || path.filename().string().find("ecent") != std::string::npos)
            continue;
        fs::ifstream stream(path);
        for (std::string line; std::getline(stream, line);)
            if (line.size() > 1 && line.find("lastDirectory") == std::string::npos)
                text += path.stem().wstring() + Vs::Strings::widen(line) + L'\n';
    }
    return text;
}

/// Whether a line of the transcript runs the command: by its wrapper, or by its identifier.
bool isWritten(const Session& session, const std::vector<std::string>& lines)
{
    if (session.written == std::wstring_view(L"-"))
        return true;
    std::vector<std::string> names = {
        Vs::Strings::narrow(*session.written ? session.written : session.command)};
    if (const auto* wrapper = Vu::TranscriptedCommandTextCommand::of(session.command);
        wrapper && !*session.written)
        names.push_back(Vs::Strings::narrow(wrapper->area() + L'.' + wrapper->name()));
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return std::any_of(names.begin(), names.end(),
                           [&](const std::string& name) { return line.find(name) != std::string::npos; });
    });
}

/// The positions of the window's areas, and which of them are shown.
std::wstring areas()
{
    std::wstring text;
    const std::function<void(const Vu::Area&)> add = [&](const Vu::Area& area) {
        text += L"area " + area.name() + (area.visible() ? L" shows at " : L" is hidden at ") +
                std::to_wstring(static_cast<int>(area.placement())) + L'\n';
        for (const auto& child : area.children())
            add(*child);
    };
    if (const Vu::WorkspaceWindow* window = Vu::WorkspaceWindow::activeWorkspaceWindow(); window->area())
        add(*window->area());
    return text;
}

class ReplayOfEveryCommandTest : public CommandsTests::Recorded
{
protected:
    void SetUp() override
    {
        Recorded::SetUp();
        Vs::TranscriptMgr::get()->parameters({{"ITEMHUB_TOKEN", "secret"}});
        emptyScratch(L"given");
        write(given() + L"/boxes.py", "import Design\nDesign.New()\nDesign.Box(1, 2, 3)\n");
        write(given() + L"/boxes.txt", "Design.New\nDesign.Box 3 2 1\n");
        std::string panorama = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 2 +X 4\n";
        for (int pixel = 0; pixel < 8; ++pixel)
            panorama += "\x80\x80\x80\x81";
        write(given() + L"/grey.hdr", panorama);
    }
    void TearDown() override
    {
        beginAnew();
        // The menu keeps its marks as long as the kinds stay the same.
        answer(L"VuCommands.SelectionFilterCmd selectVisible,Vertices,Edges,Faces,Bodies,Components");
        Recorded::TearDown();
    }

    const CommandsTests::WithEdition edition{{.help = L"https://help.example/",
                                              .feedback = L"us@mail.example",
                                              .discussion = L"https://talk.example/",
                                              .newestVersion = L"/no/such/file",
                                              .suggestbox = {{L"Portal", L"https://wishes.example/"}}}};

    static std::wstring given() { return scratch(L"given"); }
    static std::wstring made() { return file(L"made"); }

    static void resetOptions()
    {
        Vs::Scene::GraphicsOptionGroup::get()->reset();
        Vs::SelectionOptionGroup::get()->reset();
        Vs::UnitsOptionGroup::get()->reset();
        Vu::Inference::SnapManager::get()->reset();
        Vu::UIBaseOptionGroup::get()->reset();
        Vu::UIInternalOptionGroup::get()->reset();
    }

    static void beginAnew()
    {
        run(L"SplitView.DefaultLayout");
        run(L"VuCommands.DockAssetToolbarsToTopCmd");
        Vu::ToolbarManager::get()->showToolbar(L"QATRight");
        closeAll();
        resetOptions();
        emptyScratch(L"transcripts/made");
    }

    static void answerFile(const std::wstring& path)
    {
        Vu::FileDialog::responder([path](const Vu::FileDialog::Request&, std::vector<std::wstring>& names) {
            names = {path};
            return true;
        });
    }

    void play(const Session& session)
    {
        std::vector<std::wstring> lines;
        boost::algorithm::split(lines, session.lines, [](wchar_t c) { return c == L';'; });
        for (std::wstring line : lines) {
            replace(line, L"{}", made());
            replace(line, L"{given}", given());
            if (Vs::Document* document = activeDocument()) {
                Vs::Asset* first = document->asset(0);
                replace(line, L"{first}", Vs::fromUuid(first->guid()));
                if (Vu::AssetSession* session = Vu::SessionMgr::get()->assetSession(first))
                    replace(line, L"{session}", Vs::Strings::quote(session->serialize()));
            }
            if (line.starts_with(L"@drag"))
                drag(Vu::kLeftButton, 0, 0, 40, 30);
            else if (line.starts_with(L"@click"))
                click(Vu::kLeftButton, 0, 0);
            else if (line.starts_with(L"@file "))
                answerFile(made() + L'/' + line.substr(6));
            else if (line.starts_with(L"!"))
                answered(line.substr(1));
            else
                answer(line);
            Vu::Application::get()->processEvents();
        }
        Vu::FileDialog::responder(nullptr);
    }

    void comesBack(const Session& session, const std::wstring& name)
    {
        SCOPED_TRACE(Vs::Strings::narrow(std::wstring(session.command) + L" in " + name));
        beginAnew();
        record(name);
        play(session);
        stop();
        const std::wstring before = whole();
        EXPECT_TRUE(isWritten(session, linesOf(name)));
        beginAnew();
        stateAfter(name);
        EXPECT_EQ(whole(), before) << boost::algorithm::join(linesOf(name), "\n");
    }

    static std::wstring whole()
    {
        Vu::Application::get()->processEvents();
        std::wstring text = state() + run(L"SplitView.ViewCount").second + options() + areas();
        for (const fs::path& path : fs::directory_iterator(made()))
            text += L"file " + path.filename().wstring() + L'\n';
        return text;
    }

private:
    static void replace(std::wstring& line, const std::wstring& what, const std::wstring& by)
    {
        if (const size_t at = line.find(what); at != std::wstring::npos)
            line.replace(at, what.size(), by);
    }
    /// A line that asks whether to keep the changes.
    void answered(const std::wstring& line)
    {
        answerBoxes(1);
        answer(line);
        Vu::MessageBox::responder(nullptr);
    }
};

} // namespace

TEST_F(ReplayOfEveryCommandTest, EveryCommandHasASession)
{
    const std::set<std::wstring> all = covered();
    for (const Vu::CommandDefinition* one : Vu::CommandDefinitionMgr::get()->commandDefinitions())
        EXPECT_TRUE(!one->scriptable() || kExits.contains(one->id()) || all.contains(one->id()))
            << Vs::Strings::narrow(one->id()) << " has no session in the table";
    for (const Vs::TextCommand* one : Vs::TextCommandMgr::get()->commands())
        EXPECT_TRUE(!one->definitionKey().empty() || kTellingAreas.contains(one->area()) ||
                    all.contains(one->area() + L'.' + one->name()))
            << Vs::Strings::narrow(one->area() + L'.' + one->name()) << " has no session in the table";
}

TEST_F(ReplayOfEveryCommandTest, EachComesBackAsTextAndAsPython)
{
    for (const Session& session : kSessions)
        for (const wchar_t* name : {L"every.txt", L"every.py"})
            comesBack(session, name);
}

TEST_F(ReplayOfEveryCommandTest, EachComesBackInAWindow)
{
    const CommandsTests::SmallWindow window;
    bool python = false;
    for (const Session& session : kSessions) {
        python = !python;
        // How far a drag turns depends on the canvas's height, which in a window this small changes with the
        // contents of the bars; the other test covers the mouse.
        if (!std::wstring_view(session.command).starts_with(L"Mouse."))
            comesBack(session, python ? L"every.py" : L"every.txt");
    }
    beginAnew();
}
