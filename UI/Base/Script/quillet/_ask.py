"""The answers of the area Script."""

import json
from typing import Any


def ask(question: str, *parameters: Any, **flags: bool) -> Any:
    import Script

    return json.loads(getattr(Script, question)(*parameters, **flags))
