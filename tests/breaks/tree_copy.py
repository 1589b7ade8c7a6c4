"""A copy of the tree in which breaks are applied, built and tested."""

from __future__ import annotations

import os
import signal
import subprocess
from pathlib import Path
from typing import Mapping, Sequence

from catchers import Catcher
from edits import Edit

PRESET = "check"
TIMEOUT_SECONDS = 900  # after which the catcher counts as failed


class NotBuilt(Exception):
    """The tree can't be built, with or without a break."""


def tracked_files(top: Path) -> list[str]:
    listed = subprocess.run(["git", "ls-files", "-z"], cwd=top, check=True, capture_output=True)
    names = listed.stdout.decode().split("\0")
    return [name for name in names if name and os.path.lexists(top / name)]


class TreeCopy:
    """The copy, in a git checkout of its own, and its build folder."""

    def __init__(self, folder: Path, jobs: int) -> None:
        self.tree = folder / "tree"
        self.build = self.tree / f"build-{PRESET}"
        self._jobs = jobs
        self._environment = {**os.environ, "PYTHONDONTWRITEBYTECODE": "1"}
        for name in ("CI", "CDPATH", "VELDMARK_FIGURES", "VELDMARK_WRITE_TRANSCRIPTS"):
            self._environment.pop(name, None)

    def fill(self, top: Path) -> None:
        """Makes the copy, or updates an earlier one so that unchanged files are not built
        again."""
        self.tree.mkdir(parents=True, exist_ok=True)
        if (self.tree / ".git").is_dir():
            self._git("clean", "--quiet", "-d", "--force")
        else:
            self._git("init", "--quiet")
        names = tracked_files(top)
        for name in set(tracked_files(self.tree)) - set(names):
            (self.tree / name).unlink()
        for name in names:
            source, copy = top / name, self.tree / name
            if not copy.is_file() or copy.read_bytes() != source.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_bytes(source.read_bytes())
            copy.chmod(source.stat().st_mode)
        self._git("add", "--all")
        self._git("-c", "user.name=breaks", "-c", "user.email=", "commit", "--quiet",
                  "--allow-empty", "--message=The tree as it is")

    def apply(self, edits: Sequence[Edit]) -> None:
        for edit in edits:
            edit.apply(self.tree)

    def restore(self) -> None:
        self._git("checkout", "--quiet", "--", ".")
        self._git("clean", "--quiet", "-d", "--force")

    def _git(self, *words: str) -> None:
        subprocess.run(["git", *words], cwd=self.tree, check=True)

    def prepare(self, targets: Sequence[str]) -> None:
        """Builds targets. Raises NotBuilt."""
        if not (self.build / "build.ninja").is_file():
            self._run_checked("scripts/configure", PRESET, "-DVELDMARK_BENCH=OFF")
        if targets:
            self._run_checked("cmake", "--build", str(self.build), "--parallel", str(self._jobs),
                       "--target", *targets)

    def _run_checked(self, *words: str) -> None:
        done = subprocess.run(words, cwd=self.tree, env=self._environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        if done.returncode != 0:
            raise NotBuilt(done.stdout[-3000:])

    def run_catcher(self, catcher: Catcher, environment: Mapping[str, str]) -> tuple[bool, str]:
        """Runs a catcher, which must be built. Returns whether it passes, and its output."""
        words = [word.replace("{build}", str(self.build)) for word in catcher.command]
        with subprocess.Popen(words, cwd=self.tree, env={**self._environment, **environment},
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, start_new_session=True) as process:
            try:
                output, _ = process.communicate(timeout=TIMEOUT_SECONDS)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                return False, f"took more than {TIMEOUT_SECONDS} s"
        return process.returncode in catcher.passes, output.decode("utf-8", "replace")
