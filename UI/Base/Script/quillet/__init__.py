"""The application that this interpreter runs in; outside of it, importing this starts one without a window.

Every text command is a function of its area's module (`import Design`). This package sees the same model as
objects. Lengths are in mm, areas in mm2, volumes in mm3, angles in radians. Failures raise CommandError with
the reason.

    import quillet
    from quillet import design
    quillet.new_document()
    plate = design.box(80, 50, 8, name="Plate")
    design.fillet(plate.edges.parallel_to("Z"), 5)
    print(plate.body.volume, plate.faces.by_area()[-1].normal)
"""

from _quillet import CommandError, on_closing_down, run, version

from . import design, measure
from ._camera import Camera
from ._commands import command
from ._documents import Document, active_document, documents, new_document, open_document
from ._events import off, on
from ._model import Body, Component, Selection, component, model
from ._parameters import Parameters
from ._pictures import Picture, picture, show
from ._topology import Axis, Edge, Edges, Face, Faces, Vertex, Vertices
from ._transactions import transaction

camera = Camera()
selection = Selection()
parameters = Parameters()

__all__ = [
    "Axis", "Body", "Camera", "CommandError", "Component", "Document", "Edge", "Edges", "Face", "Faces", "Parameters",
    "Picture", "Selection", "Vertex", "Vertices", "active_document", "camera", "command", "component", "design", "documents", "measure",
    "model", "new_document", "off", "on", "on_closing_down", "open_document", "parameters", "picture", "run", "selection",
    "show", "transaction", "version",
]
