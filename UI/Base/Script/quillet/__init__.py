"""The application that this interpreter runs in.

Every text command is a function of its area's module (`import Design`). This package sees the same model as
objects. Lengths are in mm, areas in mm2, volumes in mm3, angles in radians. What fails raises CommandError with
the reason.

    import quillet
    with quillet.transaction("Two boxes"):
        Design.Box(10, 20, 30)
        Design.Box(5, 5, 5, (50, 0, 0))
    for part in quillet.model().walk():
        print(part.path, part.body.volume if part.body else "-")
"""

from _quillet import CommandError, on_closing_down, run, version

from . import measure
from ._camera import Camera
from ._documents import Document, active_document, documents, new_document, open_document
from ._model import Body, Component, Selection, component, model
from ._parameters import Parameters
from ._transactions import transaction

camera = Camera()
selection = Selection()
parameters = Parameters()

__all__ = [
    "Body", "Camera", "CommandError", "Component", "Document", "Parameters", "Selection", "active_document",
    "camera", "component", "documents", "measure", "model", "new_document", "on_closing_down", "open_document",
    "parameters", "run", "selection", "transaction", "version",
]
