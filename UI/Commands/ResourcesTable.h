#pragma once

// The catalogue of the add-in's resources: one row per accessor of Vu::Commands::Resources, with the path
// under the resources folder. The class is declared and defined from these rows, so a name and its path meet
// nowhere else.
// clang-format off

// Folders with one picture per size.
#define QUILLET_IMAGE_SETS(ROW)                                  \
    ROW(Exit, "Application/Exit")                                \
    ROW(ActiveAsset, "Assets/Active")                            \
    ROW(NewAsset, "Assets/New")                                  \
    ROW(CloseAsset, "Assets/Close")                              \
    ROW(InactiveAsset, "Assets/Inactive")                        \
    ROW(NextAsset, "Assets/Next")                                \
    ROW(PreviousAsset, "Assets/Previous")                        \
    ROW(Export, "Assets/Export")                                 \
    ROW(SaveAsImage, "Document/Image")                           \
    ROW(SharePicture, "Document/SharePicture")                   \
    ROW(ShareMail, "Share/Mail")                                 \
    ROW(ShareCopy, "Share/Copy")                                 \
    ROW(SaveDrawing, "Common/Drawing")                           \
    ROW(Print, "Common/Print")                                   \
    ROW(ShareProgram, "Share/Program")                           \
    ROW(ShareFolder, "Share/Folder")                             \
    ROW(ShareItem, "Share/Item")                                 \
    ROW(FreeOrbit, "Camera/FreeOrbit")                           \
    ROW(ConstrainedOrbit, "Camera/ConstrainedOrbit")             \
    ROW(Pan, "Camera/Pan")                                       \
    ROW(Zoom, "Camera/Zoom")                                     \
    ROW(LookAt, "Camera/LookAt")                                 \
    ROW(Fit, "Camera/ZoomAll")                                   \
    ROW(CloudOpen, "Cloud/Open")                                 \
    ROW(CloudSave, "Cloud/Save")                                 \
    ROW(CloudLogin, "Cloud/Login")                               \
    ROW(CloudLogout, "Cloud/Logout")                             \
    ROW(CloudTest, "Cloud/Test")                                 \
    ROW(CloudManage, "Cloud/Manage")                             \
    ROW(Cloud, "Cloud/Cloud")                                    \
    ROW(CameraPivot, "Camera/Pivot")                             \
    ROW(Cancel, "Common/Cancel")                                 \
    ROW(Commit, "Common/Commit")                                 \
    ROW(Cursor, "Common/Cursor")                                 \
    ROW(FullScreen, "Common/FullScreen")                         \
    ROW(NormalScreen, "Common/NormalScreen")                     \
    ROW(RecentFile, "Common/RecentFile")                         \
    ROW(Redo, "Common/Redo")                                     \
    ROW(SnapEnable, "Common/SnapEnable")                         \
    ROW(SnapDisable, "Common/SnapDisable")                       \
    ROW(TextCommand, "Common/TextCommand")                       \
    ROW(Undo, "Common/Undo")                                     \
    ROW(Help, "Common/Help")                                     \
    ROW(EssentialVideos, "LX/EssentialVideos")                   \
    ROW(Subscription, "Common/Subscription")                     \
    ROW(CheckUpdates, "Common/CheckUpdates")                     \
    ROW(Share, "Common/Share")                                   \
    ROW(ShareLoggedIn, "Common/ShareLoggedIn")                   \
    ROW(Feedback, "Common/Feedback")                             \
    ROW(RunScript, "Common/RunScript")                           \
    ROW(ManagementShell, "Shells/Management")                    \
    ROW(WebShell, "Shells/Web")                                  \
    ROW(ViewVisibility, "View")                                  \
    ROW(AssetShell, "Shells/Asset")                              \
    ROW(New, "File/New")                                         \
    ROW(Open, "File/Open")                                       \
    ROW(Save, "File/Save")                                       \
    ROW(Close, "File/Close")                                     \
    ROW(CloseAll, "File/CloseAll")                               \
    ROW(WelcomeScreen, "File/WelcomeScreen")                     \
    ROW(TourGuide, "File/TourGuide")                             \
    ROW(DeleteMRU, "Shell/DeleteMRU")                            \
    ROW(PinnedMRU, "Shell/PinnedMRU")                            \
    ROW(UnpinnedMRU, "Shell/UnpinnedMRU")                        \
    ROW(GoForward, "Web/GoForward")                              \
    ROW(GoBackward, "Web/GoBackward")                            \
    ROW(StartTranscripting, "Transcripting/Start")               \
    ROW(StopTranscripting, "Transcripting/Stop")                 \
    ROW(ReplayTranscript, "Transcripting/Replay")                \
    ROW(Measure, "Measure/Measure")                              \
    ROW(MeasureAngle, "Measure/Angle")                           \
    ROW(MeasureArea, "Measure/Area")                             \
    ROW(MeasureVolume, "Measure/Volume")                         \
    ROW(MeasureDistance, "Measure/Distance")                     \
    ROW(MeasureLength, "Measure/Length")                         \
    ROW(MeasurePosition, "Measure/Position")                     \
    ROW(SelectFace, "Measure/SelectFace")                        \
    ROW(SelectBody, "Measure/SelectBody")                        \
    ROW(SelectComponent, "Measure/SelectComponent")              \
    ROW(RestartSelection, "Measure/RestartSelection")            \
    ROW(Return, "Return")                                        \
    ROW(SelectedListItem, "Toolbar/QAT/SelectedListItem")        \
    ROW(DeselectedListItem, "Toolbar/QAT/DeselectedListItem")    \
    ROW(ViewDisplay, "Display/ViewDisplay")                      \
    ROW(ViewGroundShadowOn, "Display/GroundShadowOn")            \
    ROW(ViewGroundShadowOff, "Display/GroundShadowOff")          \
    ROW(ViewGroundReflectionOn, "Display/GroundReflectionOn")    \
    ROW(ViewGroundReflectionOff, "Display/GroundReflectionOff")  \
    ROW(ViewAmbientOcclusionOn, "Display/AmbientOcclusionOn")    \
    ROW(ViewAmbientOcclusionOff, "Display/AmbientOcclusionOff")  \
    ROW(ViewNPREffect, "Display/NPREffect")                      \
    ROW(ViewEnvironment, "Display/Environment")                  \
    ROW(ViewMSAA, "Display/MSAA")                                \
    ROW(ViewObjectShadowOn, "Display/ObjectShadowOn")            \
    ROW(ViewObjectShadowOff, "Display/ObjectShadowOff")          \
    ROW(ViewColorCyclingOn, "Display/ColorCyclingOn")            \
    ROW(ViewColorCyclingOff, "Display/ColorCyclingOff")          \
    ROW(ViewSelectionEffect, "Display/SelectionEffect")          \
    ROW(ViewWireframe, "Display/Wireframe")                      \
    ROW(ViewWireframeHL, "Display/WireframeHL")                  \
    ROW(ViewWireframeHLR, "Display/WireframeHLR")                \
    ROW(ViewShadedWithEdges, "Display/ShadedWithEdges")          \
    ROW(ViewShaded, "Display/Shaded")                            \
    ROW(ViewShadedHL, "Display/ShadedHL")                        \
    ROW(ViewRealistic, "Display/Realistic")                      \
    ROW(ViewCameraPersp, "Display/Perspective")                  \
    ROW(ViewCameraOrtho, "Display/Orthographic")                 \
    ROW(Grid, "Display/Grid")                                    \
    ROW(NewNamedView, "NamedViews/NewNamedView")                 \
    ROW(DeleteNamedView, "NamedViews/DeleteNamedView")           \
    ROW(UpdateNamedView, "NamedViews/UpdateNamedView")           \
    ROW(AskQuestion, "Hearsay/AskQuestion")                      \
    ROW(ClipScreen, "Hearsay/ClipScreen")                        \
    ROW(MyActivity, "Hearsay/MyActivity")                        \
    ROW(CommunityGuidelines, "Hearsay/CommunityGuidelines")

// Pictures of mouse pointers with their hot spot in pixels; -1 is the middle of the picture.
#define QUILLET_CURSORS(ROW)                                    \
    ROW(FreeOrbitCursor, "Camera/FreeOrbit/32x32.png", -1, -1)  \
    ROW(OrbitXCursor, "Camera/OrbitX/32x32.png", -1, -1)        \
    ROW(OrbitYCursor, "Camera/OrbitY/32x32.png", -1, -1)        \
    ROW(OrbitZCursor, "Camera/OrbitZ/32x32.png", -1, -1)        \
    ROW(OrbitExitCursor, "Camera/OrbitExit/32x32.png", -1, -1)  \
    ROW(PanCursor, "Camera/Pan/32x32.png", -1, -1)              \
    ROW(ZoomCursor, "Camera/Zoom/32x32.png", -1, -1)            \
    ROW(MeasureCursor, "Measure/Cursor/32x32.png", 1, 1)

// Single pictures.
#define QUILLET_IMAGES(ROW)                                  \
    ROW(searchResultsExpanded, "ATB/menu_down_arrow.png")    \
    ROW(searchResultsCollapsed, "ATB/menu_up_arrow.png")     \
    ROW(searchResultsTest, "ATB/Test.png")                   \
    ROW(searchResultsInsertDesign, "ATB/insert_design.png")

// Files that are read, not shown.
#define QUILLET_FILES(ROW)                                           \
    ROW(AssetShellLayout, "Layouts/AssetShellLayout.xml")            \
    ROW(ManagementShellLayout, "Layouts/ManagementShellLayout.xml")  \
    ROW(WebShellLayout, "Layouts/WebShellLayout.xml")                \
    ROW(DefaultStyle, "CSS/DefaultStyles.css")                       \
    ROW(ToolbarXml, "Toolbar/Toolbars.xml")                          \
    ROW(HUDXml, "HUD/HUD.xml")

// clang-format on
