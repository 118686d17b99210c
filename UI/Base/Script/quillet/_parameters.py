from collections.abc import Mapping
from typing import Iterator

import _quillet


class Parameters(Mapping[str, str]):
    """The values passed to the run with `--set NAME=VALUE`, including `out`, and those added by the replay around
    this script. In text transcripts they are `${NAME}`."""

    def __getitem__(self, name: str) -> str:
        return _quillet.parameters()[name]

    def __iter__(self) -> Iterator[str]:
        return iter(_quillet.parameters())

    def __len__(self) -> int:
        return len(_quillet.parameters())

    def __repr__(self) -> str:
        return f"Parameters({', '.join(sorted(self))})"
