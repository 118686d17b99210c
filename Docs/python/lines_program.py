"""What the reference of scripts shows of the lines about documents, views, options and transcripts."""

#: Document.Create
import Document

Document.Create("VeloraAssetType")

#: Document.SaveAs
import Design

Design.Box(10, 20, 30)
Document.SaveAs("block.vlra")

#: Document.Save
Design.Box(1, 2, 3, (20, 0, 0))
Document.Save()

#: Document.SaveCopy
Document.SaveCopy("copy.vlra")

#: Document.SaveAll
Document.SaveAll()

#: Document.Path
assert "block.vlra" in Document.Path()

#: Document.Open
Document.Open("copy.vlra")

#: Document.Activate
Document.Activate("block.vlra")

#: Document.Revert
Design.Sphere(5)
Document.Revert()  # The sphere isn't in the file.

#: Document.SoftwareVersion
print(Document.SoftwareVersion())

#: Document.Rename
Design.New()
Document.Rename("Bracket")

#: Document.UpdateRootComponentName
Document.UpdateRootComponentName("bracket.step")

#: Document.ExampleDoc
Document.ExampleDoc("VeloraAssetType")
Design.New()

#: DocumentMgt.List
import DocumentMgt

print(DocumentMgt.List(Assets=True))

#: Document.Close
import Script

Script.DiscardChanges()
Document.Close()

#: Document.CloseAll
for path in ("block.vlra", "copy.vlra"):
    Document.Activate(path)
    Document.Close()
Document.Create("VeloraAssetType")
Document.CloseAll()

#: AssetMgt.AssetTypes
import AssetMgt

assert "VeloraAssetType" in AssetMgt.AssetTypes()

#: Asset.Create
import Asset

Design.New()
Asset.Create("VeloraAssetType")

#: Asset.List
print(Asset.List())

#: Asset.Activate
Asset.Activate("Design")

#: Asset.Path
print(Asset.Path())

#: Asset.Export
Design.Box(10, 20, 30)
Asset.Export("block.stl")

#: Asset.MarkDirty
Asset.MarkDirty()

#: Asset.MarkSmudge
Asset.MarkSmudge()

#: Asset.ListDirty
print(Asset.ListDirty())

#: Asset.UseForTesting
Asset.UseForTesting()
Asset.UseForTesting(Stop=True)

#: Camera.Set
import Camera

Camera.Set((200, -200, 150), (5, 10, 15), (0, 0, 1), 1, 1000, 80, 50, 1)

#: Camera.ZoomIn
Camera.ZoomIn(2)

#: Camera.ZoomOut
Camera.ZoomOut()

#: Camera.Dump
print(Camera.Dump())

#: Camera.Turntable
Camera.Turntable("around.png", 4, "320x240")  # From around-0001.png to around-0004.png.

#: NamedView.AddNamedView
import NamedView

NamedView.AddNamedView()  # It gets the name NamedView.

#: NamedView.UpdateNamedViewCamera
Camera.ZoomIn(3)
NamedView.UpdateNamedViewCamera("NamedView")

#: NamedView.UpdateNamedViewName
NamedView.UpdateNamedViewName("NamedView", "Front Corner")

#: NamedView.RestoreCamera
NamedView.RestoreCamera("Front Corner")

#: NamedView.RemoveNamedView
NamedView.RemoveNamedView("Front Corner")

#: SplitView.ResetLayout
import SplitView

SplitView.ResetLayout("Quad")

#: SplitView.Activate
SplitView.Activate(3)

#: SplitView.ViewCount
print(SplitView.ViewCount())

#: SplitView.ShareCamera
SplitView.ShareCamera()

#: SplitView.CopyCamera
SplitView.CopyCamera()

#: SplitView.NextAsset
SplitView.NextAsset()

#: SplitView.CancelCommandInOtherView
SplitView.CancelCommandInOtherView()

#: SplitView.DefaultLayout
SplitView.DefaultLayout()

#: SplitView.NewDoc
SplitView.NewDoc("VeloraAssetType")

#: Mouse.Down, Mouse.Move, Mouse.Up
import Mouse

Mouse.Down(0, 0, "Middle")
Mouse.Move(0.1, 0.05, "Middle")
Mouse.Up(0.1, 0.05, "Middle")

#: Commands.Start
import Commands

Design.Box(10, 20, 30)
Commands.Start("MoveCommand")

#: Commands.Inputs
print(Commands.Inputs())

#: Commands.SetInput
Commands.SetInput("Components", "Box1:1")
Commands.SetInput("Dx", "12.5 mm")

#: Commands.Commit
Commands.Commit()

#: Commands.Cancel
Commands.Start("MoveCommand")
Commands.Cancel()

#: Commands.List
assert "FitCommand" in Commands.List()

#: Commands.Environments
print(Commands.Environments())

#: Options.List
import Options

print(Options.List("unit"))

#: Options.Set
Options.Set("Units.lengthUnit", "cm")

#: Options.Get
assert Options.Get("Units.lengthUnit").endswith("cm")
Options.Set("Units.lengthUnit")  # The default again.

#: Options.TourGuide
print(Options.TourGuide())

#: View.CheckPicture
import View

View.CheckPicture("block", "320x200")  # The first run keeps the picture, the following ones compare with it.

#: References.Mode
import References

References.Mode("Compare")
References.Mode("Fill")

#: References.File
print(References.File())

#: Script.Component
import json

component = json.loads(Script.Component(Deep=True))
assert component["children"]

#: Script.Body
path = component["children"][0]["path"]
print(json.loads(Script.Body(path))["volume"])

#: Script.Parts
shape = json.loads(Script.Parts(path))["shape"]

#: Script.Extents
print(json.loads(Script.Extents(path, "Faces"))[0])

#: Script.Successor
print(Script.Successor(path, "Face", 1, shape))

#: Script.Bounds
low, high = json.loads(Script.Bounds(path))

#: Script.Select
Script.Select(path)

#: Script.Selection
assert json.loads(Script.Selection()) == [path]

#: Script.Camera
print(json.loads(Script.Camera())["eye"])

#: Script.Documents
assert any(document["active"] for document in json.loads(Script.Documents()))

#: Script.Added
print(Script.Added())

#: Script.BeginTransaction, Script.CommitTransaction
Script.BeginTransaction("Two boxes")
Design.Box(1, 1, 1)
Design.Box(2, 2, 2)
Script.CommitTransaction()

#: Script.AbortTransaction
Script.BeginTransaction("Nothing")
Design.Box(1, 1, 1)
Script.AbortTransaction()

#: Script.Run
with open("hello.py", "w") as file:
    file.write("import sys\nresult = 'hello ' + sys.argv[1]\n")
assert Script.Run("hello.py", "world") == "hello world"

#: Script.Settle
Script.Settle()

#: Script.DiscardChanges
Script.DiscardChanges()

#: Transcripting.Start
import Transcripting

Transcripting.Start("boxes.txt")
Design.Box(3, 3, 3)

#: Transcripting.Stop
Transcripting.Stop()

#: Transcripting.Replay
Transcripting.Replay("boxes.txt", "length=80", KeepGoing=True)

#: Transcripting.Answer
Transcripting.Answer("1")  # To the question of the next line: the second button, not to save.
Document.Close()

#: Transcripting.AnswerFiles
import VuCommands

Design.New()
Design.Box(3, 3, 3)
Transcripting.AnswerFiles("answered.vlra")
VuCommands.SaveDocumentAsCmd()

#: Transcripting.RecordSelectMouseEvent
Transcripting.RecordSelectMouseEvent(off=True)

#: Transcripting.ClearAllAlerts
Transcripting.ClearAllAlerts()

#: Performance.StartPerformanceValidation
import Performance

Performance.StartPerformanceValidation()

#: Performance.StartMetric
Performance.StartMetric("ElapsedTime")

#: Performance.Validate
Performance.Validate("ElapsedTime", "nothing")

#: Performance.ValidateMemory
Performance.ValidateMemory("little", physical=True)

#: Performance.EndPerformanceValidation
Performance.EndPerformanceValidation()

#: Performance.Report
Performance.Report("report.json")

#: Sleeper.Sleep
import Sleeper

Sleeper.Sleep(10)

#: Debug.ShowDebugDialog
import Debug

Debug.ShowDebugDialog(off=True)

#: AutoSave.Recovery, AutoSave.NotifyAutoSavedFiles
import AutoSave

AutoSave.Recovery()
AutoSave.NotifyAutoSavedFiles()

#: Asset.Close
Design.New()
Asset.Close()  # The last one of a document closes it as well.
