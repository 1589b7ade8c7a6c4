"""What a break is."""

from __future__ import annotations

import dataclasses
from typing import Mapping

from catchers import Catcher
from edits import Edit


@dataclasses.dataclass(frozen=True)
class Break:
    """A fault that somebody could make, and the quickest suite that must catch it.

    name           says what is wrong with the break in place
    environment    variables added to the environment of the catcher
    """

    name: str
    catcher: Catcher
    edits: tuple[Edit, ...]
    environment: Mapping[str, str] = dataclasses.field(default_factory=dict)

    def __init__(self, name: str, catcher: Catcher, *edits: Edit, **environment: str) -> None:
        object.__setattr__(self, "name", name)
        object.__setattr__(self, "catcher", catcher)
        object.__setattr__(self, "edits", edits)
        object.__setattr__(self, "environment", environment)
