"""What the reference of scripts shows of the lines of the lifecycle service."""

#: Itemhub.SignIn
import Itemhub
import quillet

# Given to the run: --set service=https://items.example/ --set token=...
Itemhub.SignIn(quillet.parameters["service"], quillet.parameters["token"], "acme")

#: Itemhub.Account
print(Itemhub.Account())

#: Itemhub.SignOut
Itemhub.SignOut()
assert "Nobody" in Itemhub.Account()

#: Dashboard.AuthenticateWithTokenCmd
import Dashboard

Dashboard.AuthenticateWithTokenCmd(quillet.parameters["service"], quillet.parameters["token"], "acme")

#: Itemhub.Workspaces
workspaces = [line.split("\t") for line in Itemhub.Workspaces().splitlines()]
workspace = workspaces[0][0]  # Number, name, role.

#: Dashboard.NewItemCmd
Dashboard.NewItemCmd(workspace, "Bracket", 0, 0, "VeloraAssetType")  # With a document, which is open.

#: Itemhub.Pending, Itemhub.Wait
import Design
import Document

Design.Box(10, 20, 30)
Document.Save()
print(Itemhub.Pending())
Itemhub.Wait(30)
assert not Itemhub.Pending()

#: Itemhub.Items
items = [line.split("\t") for line in Itemhub.Items(workspace).splitlines()]
bracket = next(number for number, caption, *_ in items if caption == "Bracket")

#: Dashboard.SaveCmd
import Commands

Design.Sphere(5)
try:
    Dashboard.SaveCmd()  # Asks for the label of the version.
except quillet.CommandError:  # Without a window, nobody is there to give it.
    Commands.Start("ItemhubSaveCommand", "ItemhubSaveLabel=For review")
Itemhub.Wait()

#: Itemhub.Attachments, Itemhub.Versions
attachments = Itemhub.Attachments(bracket)
versions = Itemhub.Versions(bracket).splitlines()  # The newest first.

#: Itemhub.Search
assert bracket in Itemhub.Search("Brack")

#: Itemhub.Favourite, Itemhub.Favourites
Itemhub.Favourite(bracket)
assert bracket in Itemhub.Favourites()
Itemhub.Favourite(bracket, Off=True)

#: Itemhub.Comment, Itemhub.Comments
Itemhub.Comment(bracket, "The sphere is new.")
assert "sphere" in Itemhub.Comments(bracket)

#: Dashboard.CreateCommentIDCmd
Dashboard.CreateCommentIDCmd("7")

#: Itemhub.Open
Document.CloseAll()
Itemhub.Open(bracket)

#: Itemhub.Insert
Design.New()
Itemhub.Insert(bracket)

#: Dashboard.InsertComponentCmd, Dashboard.OpenAttachmentCmd
# Pages of the service run these, once a person has asked for it there; by themselves they do nothing.
Dashboard.InsertComponentCmd(workspace, bracket)
Dashboard.OpenAttachmentCmd("Bracket")
