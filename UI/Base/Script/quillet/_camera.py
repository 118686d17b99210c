from typing import Any, Sequence, Tuple

from ._ask import ask, line

Triple = Tuple[float, float, float]
_PARTS = ("eye", "target", "up", "near", "far", "width", "height", "projection")


def _part(name: str, text: str) -> property:
    def get(camera: "Camera") -> Any:
        value = ask("Camera")[name]
        return tuple(value) if isinstance(value, list) else value

    def put(camera: "Camera", value: Any) -> None:
        camera.set(**{name: value})

    return property(get, put, doc=text)


class Camera:
    """The camera of the active view."""

    __slots__ = ()

    eye = _part("eye", "Where it stands.")
    target = _part("target", "What it looks at.")
    up = _part("up", "The direction that is up in the picture.")
    width = _part("width", "How much of the model's width is seen at the target.")
    height = _part("height", "How much of the model's height is seen at the target.")
    projection = _part("projection", "1 parallel, 2 perspective.")

    def set(self, **parts: Any) -> None:
        """Changes several parts at once: eye, target, up, near, far, width, height, projection."""
        unknown = set(parts) - set(_PARTS)
        if unknown:
            raise TypeError("a camera has no " + ", ".join(sorted(unknown)))
        state = {**ask("Camera"), **parts}
        line("Camera.Set")(*(tuple(v) if isinstance(v, Sequence) else v for v in (state[p] for p in _PARTS)))

    def fit(self) -> None:
        """Frames the whole model."""
        line("Commands.Start")("FitCommand")

    def zoom(self, factor: float) -> None:
        """Magnifies the view by `factor`."""
        line("Camera.ZoomIn")(factor)
