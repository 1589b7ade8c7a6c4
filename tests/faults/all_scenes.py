"""All scenes by name, and the loop that plays them."""

import tempfile
from collections import Counter
from pathlib import Path
from typing import Callable, Sequence

import extract_scenes
import gzip_scenes
from fault_runs import Bench, Scene, expect_signals
from scenes import (
    mistyped_session,
    series_to_grid,
    small_session,
    tersify_check,
    tersify_list,
    tersify_refusal,
    veldmark_session,
)


SCENES = {
    "veldmark": veldmark_session,
    "veldmark-small": small_session,
    "veldmark-mistyped": mistyped_session,
    "tersify": tersify_list,
    "tersify-refusal": tersify_refusal,
    "tersify-check": tersify_check,
    "series_to_grid": series_to_grid,
    **gzip_scenes.SCENES,
    **extract_scenes.SCENES,
}


def play_scenes(
    shim: str, programs: Path, names: Sequence[str], try_all: Callable[[str, Scene], Counter]
) -> Counter:
    """Calls `try_all` with the name and the scene of each of `names`, under the shim. Returns
    the sum of its counts."""
    expect_signals()
    sums: Counter = Counter()
    for name in names:
        with tempfile.TemporaryDirectory() as folder:
            scene = SCENES[name](Bench(shim, folder), programs.resolve())
            print(name, flush=True)
            sums.update(try_all(name, scene))
    return sums
