"""Notes what a run of tests came to, for the table of docs/testing.md.

With VELDMARK_FIGURES in the environment, a test leaves a file NAME.json in that folder;
tests/figures makes the table of all of them.
"""

import json
import os
from typing import Mapping


def note_figures(name: str, counts: Mapping[str, int]) -> None:
    """Leaves `counts` in the folder of figures, if there is one."""
    folder = os.environ.get("VELDMARK_FIGURES")
    if folder:
        with open(os.path.join(folder, name + ".json"), "w") as out:
            json.dump(dict(counts), out, sort_keys=True, indent=1)
