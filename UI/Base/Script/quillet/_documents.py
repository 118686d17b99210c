import os
from dataclasses import dataclass
from typing import List, Optional, Tuple, Union

from _quillet import CommandError

from ._ask import ask, line

Path = Union[str, "os.PathLike[str]"]


@dataclass(frozen=True)
class Document:
    """An open document, in its state when it was queried."""

    session: str  #: The name of its active model in lines such as VuCommands.AssetShellCmd.
    name: str
    path: str  #: Empty if it was never saved.
    changed: bool  #: Since it was last saved.
    active: bool
    assets: Tuple[str, ...]  #: The names of its visible models.

    def activate(self) -> None:
        current = active_document()
        if current is None or not self._is(current):
            line("VuCommands.AssetShellCmd")(self.session)
            current = active_document()
        if current is None or not self._is(current):
            raise CommandError(f'"{self.name}" is not open any more.')

    def save(self) -> None:
        """Saves it to its own file. A document that was never saved needs save_as."""
        self.activate()
        line("Document.Save")()

    def save_as(self, path: Path) -> "Document":
        """Saves it under another name; returns it with that name."""
        self.activate()
        line("Document.SaveAs")(path)
        return _active()

    def export(self, path: Path) -> None:
        """Writes the visible parts of its active design in the format given by the suffix: .step, .iges, .brep,
        .stl, .obj, .gltf, .glb. The line Design.Export has more options, such as units and mesh quality."""
        self.activate()
        line("Design.Export")(path)

    def close(self, discard: bool = False) -> None:
        """Closes it. Unsaved changes are asked about, or raise CommandError if there is nobody to ask;
        with `discard` they are lost."""
        self.activate()
        if discard:
            line("Script.DiscardChanges")()
        line("Document.Close")()

    def _is(self, other: "Document") -> bool:
        # Names don't tell: a foreign file that is opened twice gives two documents of the same name, without a path.
        return self.session != "" and self.session == other.session


def documents() -> List[Document]:
    """The open documents."""
    return [Document(one["session"], one["name"], one["path"], one["changed"], one["active"], tuple(one["assets"]))
            for one in ask("Documents")]


def active_document() -> Optional[Document]:
    """The document that commands work on, or None."""
    return next((one for one in documents() if one.active), None)


def open_document(path: Path) -> Document:
    """Opens a document, or a file of any supported format."""
    line("Document.Open")(path)
    return _active()


def new_document() -> Document:
    """Creates a document with an empty design."""
    line("Design.New")()
    return _active()


def _active() -> Document:
    active = active_document()
    if active is None:
        raise CommandError("There is no active document.")
    return active
