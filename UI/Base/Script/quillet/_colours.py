"""Colours as people write them, and as models store them: as linear light."""

import math
from typing import Optional, Sequence, Tuple, Union

Colour = Tuple[int, int, int]


def _signal(light: float) -> int:
    share = light * 12.92 if light <= 0.0031308 else 1.055 * math.pow(light, 1 / 2.4) - 0.055
    return round(min(max(share, 0), 1) * 255)


def colour_of(light: Optional[Sequence[float]]) -> Optional[Colour]:
    return (_signal(light[0]), _signal(light[1]), _signal(light[2])) if light else None


def code_of(colour: Union[Colour, str, None], opacity: float = 1) -> str:
    """As the line Design.Colour takes it."""
    if colour is None:
        return "None"
    if not 0 <= opacity <= 1:
        raise ValueError("an opacity is a number from 0 to 1")
    if isinstance(colour, str):
        if not colour.startswith("#") or len(colour) != 7:
            return colour
        code = colour
    else:
        code = "#" + "".join(f"{int(part):02x}" for part in colour)
        if len(colour) != 3 or any(not 0 <= part <= 255 for part in colour):
            raise ValueError("a colour is three numbers from 0 to 255")
    return code if opacity == 1 else code + f"{round(opacity * 255):02x}"
