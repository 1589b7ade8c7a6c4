"""The folder that ./demo leaves, for pages that show it and tests that look into it.

    top/         as the top of the project: build, data, docs and scripts are links
      demo-run/  what ./demo's own session made there

It is made once, by the script that ./demo runs; everybody else gets a copy.
"""

import os
import shutil
import subprocess
import tempfile
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]


def program_environment(programs):
    path = f"{programs}:{os.environ['PATH']}"
    return dict(os.environ, PATH=path, TERM="dumb", LC_ALL="C.UTF-8")


def link_the_project(top, programs):
    (top / "build").symlink_to(programs)
    for name in ("data", "docs", "scripts"):
        (top / name).symlink_to(TOP / name)


def make_demo_folder(top, programs):
    """Makes the project's top with the demo's folder in the empty folder `top`."""
    link_the_project(top, programs)
    folder = top / "demo-run"
    folder.mkdir()
    result = subprocess.run(
        [TOP / "scripts" / "demo_session", programs],
        cwd=folder,
        env=program_environment(programs),
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        check=False,
    )
    if result.returncode != 0:
        raise AssertionError(f"scripts/demo_session: {result.stdout}")


def copy_demo_folder(made, top, programs):
    """A copy to work in. Grid files are linked: programs replace them, none writes in them."""
    link_the_project(top, programs)
    (top / "demo-run").mkdir()
    for path in (made / "demo-run").iterdir():
        copy = os.link if path.suffix == ".new" else shutil.copy
        copy(path, top / "demo-run" / path.name)


class DemoFolders:
    """Makes the demo's folder when it is asked for the first time, and copies of it."""

    def __init__(self, programs):
        self.programs = programs
        self.scratch = None

    def copy_to(self, top):
        if self.scratch is None:
            self.scratch = tempfile.TemporaryDirectory()
            make_demo_folder(Path(self.scratch.name), self.programs)
        copy_demo_folder(Path(self.scratch.name), top, self.programs)
