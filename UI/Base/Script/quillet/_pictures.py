import os
from dataclasses import dataclass
from typing import Union

from ._ask import line


@dataclass(frozen=True)
class Picture:
    """A picture of a view, which a notebook displays if it is the result of a cell."""

    width: int
    height: int
    png: bytes

    def save(self, path: Union[str, "os.PathLike[str]"]) -> None:
        """Writes it as a PNG file."""
        with open(path, "wb") as file:
            file.write(self.png)

    def _repr_png_(self) -> bytes:
        return self.png

    def __repr__(self) -> str:
        return f"<Picture, {self.width} x {self.height}>"


def picture(width: int = 960, height: int = 600, transparent: bool = False) -> Picture:
    """A picture of the active view, from its camera."""
    # Slow, and it imports modules whose names people give to their own scripts.
    import tempfile

    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "picture.png")
        line("Commands.Start")("SaveAsImageCommand", f"Path={path}", f"Width={int(width)}", f"Height={int(height)}",
                               f"Transparent={int(transparent)}")
        with open(path, "rb") as file:
            return Picture(int(width), int(height), file.read())


def show(width: int = 960, height: int = 600, fit: bool = True) -> Picture:
    """A picture of the whole model, for the end of a notebook cell; with `fit=False` from the present camera."""
    if fit:
        line("Commands.Start")("FitCommand")
    return picture(width, height)
