"""What the reference of scripts shows of the lines of the menus' commands, where they need no drive and no browser."""

#: VuCommands.NewDocumentCmd
import VuCommands

VuCommands.NewDocumentCmd("VeloraAssetType")

#: VuCommands.InsertAssetCmd
VuCommands.InsertAssetCmd("VeloraAssetType")  # A second model in the document.

#: VuCommands.PreviousAssetCmd, VuCommands.NextAssetCmd
VuCommands.PreviousAssetCmd()
VuCommands.NextAssetCmd()

#: VuCommands.SwitchAssetCmd, VuCommands.ActiveViewAssetCmd
VuCommands.SwitchAssetCmd()
VuCommands.ActiveViewAssetCmd()

#: VuCommands.CloseAssetCmd
import Transcripting

Transcripting.Answer("1")  # Not to save the document, which goes with what is shown of it.
VuCommands.CloseAssetCmd()

#: VuCommands.SelectCmd
import Design
import Selection

Design.New()
Design.Box(10, 20, 30)
VuCommands.SelectCmd()  # No other tool runs any more.
Selection.Select("Box1:1")

#: VuCommands.SelectionFilterCmd
VuCommands.SelectionFilterCmd("Edges,Faces")  # What a click takes.
VuCommands.SelectionFilterCmd("selectVisible,Vertices,Edges,Faces,Solids,Bodies,Components")

#: VuCommands.RenameCommand
VuCommands.RenameCommand("Plate")
Selection.Select("Plate:1")

#: VuCommands.CopyToClipboardCmd, VuCommands.CutCmd, VuCommands.PasteCmd
VuCommands.CopyToClipboardCmd()
VuCommands.PasteCmd()
VuCommands.CutCmd()  # What was pasted is what is selected.

#: VuCommands.UndoCmd, VuCommands.RedoCmd
VuCommands.UndoCmd()
VuCommands.RedoCmd()

#: VuCommands.UndoDropDown, VuCommands.RedoDropDown
VuCommands.UndoDropDown(1)  # Two steps, as the second entry of the button's list.
VuCommands.RedoDropDown(1)

#: VuCommands.SaveDocumentAsCmd
Transcripting.AnswerFiles("plate.vlra")  # To the file dialog of the next line.
VuCommands.SaveDocumentAsCmd()

#: VuCommands.SaveDocumentCmd
Design.Sphere(5)
VuCommands.SaveDocumentCmd()

#: VuCommands.ExportCmd
VuCommands.ExportCmd("plate.step")

#: VuCommands.ExportAsCmd
Transcripting.AnswerFiles("plate.stl")
VuCommands.ExportAsCmd()

#: VuCommands.RunScriptCmd
with open("sphere.py", "w") as script:
    script.write("import Design\nDesign.Sphere(7)\n")
VuCommands.RunScriptCmd("sphere.py")

#: VuCommands.ActivateEnvironmentCmd, VuCommands.ReturnToEnvironmentCmd
VuCommands.ActivateEnvironmentCmd("ReviewEnvironment")
VuCommands.ReturnToEnvironmentCmd()

#: VuCommands.CancelCmd
VuCommands.SetSnapValueCmd()
VuCommands.CancelCmd()

#: VuCommands.SetSnapValueCmd, VuCommands.CommitCmd
import Commands

VuCommands.SetSnapValueCmd()
Commands.SetInput("SnapFixedInput", 1)
Commands.SetInput("SnapAdaptiveInput", 0)
Commands.SetInput("SnapValueInput", 7)
VuCommands.CommitCmd()

#: VuCommands.EnableAdaptiveSnapCmd, VuCommands.DisableAdaptiveSnapCmd
VuCommands.EnableAdaptiveSnapCmd()
VuCommands.DisableAdaptiveSnapCmd()

#: VuCommands.HideCommandPaletteCmd
VuCommands.SetSnapValueCmd()
VuCommands.HideCommandPaletteCmd()
VuCommands.CancelCmd()

#: VuCommands.ShowOrbiconCmd, VuCommands.HideOrbiconCmd
VuCommands.HideOrbiconCmd()
VuCommands.ShowOrbiconCmd()

#: VuCommands.ShowBrowserCommand, VuCommands.HideBrowserCommand
VuCommands.HideBrowserCommand()
VuCommands.ShowBrowserCommand()

#: VuCommands.ShowCommandToolbarCmd, VuCommands.HideCommandToolbarCmd
VuCommands.HideCommandToolbarCmd()
VuCommands.ShowCommandToolbarCmd()

#: VuCommands.ShowNavigationToolbarCmd, VuCommands.HideNavigationToolbarCmd
VuCommands.HideNavigationToolbarCmd()
VuCommands.ShowNavigationToolbarCmd()

#: VuCommands.ShowTextCommandsCommand, VuCommands.HideTextCommandsCommand
VuCommands.HideTextCommandsCommand()
VuCommands.ShowTextCommandsCommand()

#: VuCommands.DockAssetToolbarsToBottomCmd, VuCommands.DockAssetToolbarsToTopCmd
VuCommands.DockAssetToolbarsToBottomCmd()
VuCommands.DockAssetToolbarsToTopCmd()

#: VuCommands.ViewVisualStyleCmd
VuCommands.ViewVisualStyleCmd("ViewVisualStyleWireframe")  # By the key of an entry of the menu, as all lines of this kind.

#: VuCommands.ViewCameraCmd
VuCommands.ViewCameraCmd("ViewCameraPerspCommand")

#: VuCommands.ViewEnvironmentCmd
VuCommands.ViewEnvironmentCmd("ViewEnvPhotoBoothCommand")

#: VuCommands.ViewEnvironmentFileCmd
with open("evening.hdr", "wb") as panorama:  # Eight by four pixels of dim light.
    panorama.write(b"#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 4 +X 8\n" + b"\x80\x70\x60\x80" * 32)
VuCommands.ViewEnvironmentFileCmd("evening.hdr")

#: VuCommands.ViewDomeCmd, VuCommands.ViewGroundPlaneCmd, VuCommands.ViewGroundShadowCmd, VuCommands.ViewGroundReflectionCmd
VuCommands.ViewDomeCmd("ViewDomeOnCommand")
VuCommands.ViewGroundPlaneCmd("ViewGroundPlaneOnCommand")
VuCommands.ViewGroundShadowCmd("ViewGroundShadowOnCommand")
VuCommands.ViewGroundReflectionCmd("ViewGroundReflectionOnCommand")

#: VuCommands.ViewAmbientOcclusionCmd, VuCommands.ViewObjectShadowCmd, VuCommands.ViewMSAACmd
VuCommands.ViewAmbientOcclusionCmd("ViewAmbientOcclusionOnCommand")
VuCommands.ViewObjectShadowCmd("ViewObjectShadowSharpCommand")
VuCommands.ViewMSAACmd("ViewMSAAOffCommand")

#: VuCommands.ViewNPREffectCmd
VuCommands.ViewNPREffectCmd("ViewNPRGraphiteCommand")  # As a drawing with a pencil.

#: VuCommands.ViewSelectionEffectCmd, VuCommands.ViewColorCyclingCmd
VuCommands.ViewSelectionEffectCmd("ViewSelectionEffectNoCommand")
VuCommands.ViewColorCyclingCmd("ViewColorCyclingOnCommand")

#: VuCommands.ViewLayoutGridOnCmd, VuCommands.ViewAxisCrossCmd, VuCommands.ViewScaleBarCmd
VuCommands.ViewLayoutGridOnCmd("ViewLayoutGridOffCommand")
VuCommands.ViewAxisCrossCmd("ViewAxisCrossOnCommand")
VuCommands.ViewScaleBarCmd("ViewScaleBarOnCommand")

#: VuCommands.ViewWidgetCmd
VuCommands.ViewWidgetCmd()

#: VuCommands.ShowWorkspaceFullScreenCmd, VuCommands.ShowWorkspaceNormalCmd, VuCommands.MinimizeCmd, VuCommands.ZoomWindowCmd
VuCommands.ShowWorkspaceFullScreenCmd()
VuCommands.ShowWorkspaceNormalCmd()
VuCommands.ZoomWindowCmd()
VuCommands.MinimizeCmd()

#: VuCommands.BringAllToFrontCmd, VuCommands.CycleWorkspacesForwardCmd, VuCommands.CycleWorkspacesBackwardCmd
VuCommands.BringAllToFrontCmd()
VuCommands.CycleWorkspacesForwardCmd()
VuCommands.CycleWorkspacesBackwardCmd()

#: VuCommands.CurrentlyOpenDocumentsCmd, VuCommands.RecentDocumentsCmd
VuCommands.CurrentlyOpenDocumentsCmd()  # The lists of the menus, which these open.
VuCommands.RecentDocumentsCmd()

#: VuCommands.ResetToDefaultLayoutCommand
VuCommands.ResetToDefaultLayoutCommand()

#: VuCommands.ManagementShellCmd, VuCommands.AssetShellCmd
VuCommands.ManagementShellCmd()  # The home screen.
VuCommands.AssetShellCmd()  # Back to the model.

#: VuCommands.OpenDocumentCmd
VuCommands.OpenDocumentCmd("plate.step")

#: VuCommands.CycleOpenDocumentsCmd
VuCommands.CycleOpenDocumentsCmd()

#: VuCommands.NewSingleDocumentCmd
VuCommands.NewSingleDocumentCmd("VeloraAssetType")

#: VuCommands.CloseDocumentCmd
VuCommands.CloseDocumentCmd()

#: VuCommands.CloseAllDocumentsCmd
for changed in ("plate", "a new one"):
    Transcripting.Answer("1")  # Not to save it.
VuCommands.CloseAllDocumentsCmd()

#: VuCommands.ExitApplicationCmd
VuCommands.ExitApplicationCmd()
