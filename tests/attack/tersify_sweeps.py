#!/usr/bin/env python3
"""Small disks and limits for Tersify, step by step: no false success, no broken copy.

    tersify_sweeps.py PROGRAM [SWEEP...]

PROGRAM is tersify.  A sweep condenses one small text again and again, each time with a
little more of something.  A run may fail, but then an earlier copy is as it was and no part
of a new one is left; where it says "wrote", or its status is 0, the copy is that of an
undisturbed run, byte for byte.  The exit status is 1 where that was not so.
"""

import argparse
import subprocess
import sys
import tempfile
from collections import Counter
from itertools import product
from pathlib import Path
from typing import Callable, Dict, Iterator, List, Optional

from sweeps import KIB, LIMITS, TIMEOUT_SECONDS, limit_to, nothing

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "faults"))

from scenes import raw_text  # noqa: E402

TEXT = "a.dat"
COPY = TEXT + ".new"
PART = COPY + ".part"
LINES = 20
OLD = {COPY: b"an earlier copy\n" * 1000, PART: b"left by a run that was killed\n" * 1000}
LIMITED = ("AS", "DATA", "NOFILE", "STACK", "FSIZE")


def plain_text() -> bytes:
    return raw_text(LINES, 1)


def misleading_text() -> bytes:
    """Returns a text whose first lines are so long that Tersify underestimates the copy:
    the disk gets full while the copy is written."""
    lines = raw_text(LINES, 2).splitlines()
    return b"".join(b" " * (90000 if i < 3 else 0) + line + b"\n" for i, line in enumerate(lines))


class Stage:
    """A text and the expected copy."""

    def __init__(self, program: str, folder: Path, text: bytes) -> None:
        self.program = str(Path(program).resolve())
        self.folder = folder
        self.text = folder / TEXT
        self.text.write_bytes(text)
        self.right = b""
        self.counts: Counter = Counter()
        self.faults: List[str] = []
        place = self.fresh([])
        if self.condense(place).returncode != 0:
            sys.exit("the undisturbed run fails")
        self.right = (place / COPY).read_bytes()

    def fresh(self, old: List[str]) -> Path:
        """Makes a folder with the text and the named earlier files."""
        place = Path(tempfile.mkdtemp(dir=self.folder))
        self.write_files(place, old)
        return place

    def write_files(self, place: Path, old: List[str]) -> None:
        place.joinpath(TEXT).symlink_to(self.text)  # so that it takes no room
        for name in old:
            place.joinpath(name).write_bytes(OLD[name])

    def condense(
        self, place: Path, prepare: Callable[[], None] = nothing
    ) -> subprocess.CompletedProcess:
        return subprocess.run(
            [self.program, TEXT],
            cwd=place,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            env={"LC_ALL": "C"},
            preexec_fn=prepare,
            timeout=TIMEOUT_SECONDS,
            check=False,
        )

    def judge(
        self, what: str, place: Path, old: List[str], run: subprocess.CompletedProcess
    ) -> None:
        """Records a false success, and files that a failure has changed or left."""
        before = {name: OLD[name] for name in old}
        now = {name: content(place / name) for name in (COPY, PART)}
        complete = now[COPY] == self.right and now[PART] is None
        claimed = run.returncode == 0 or b"wrote '%s'" % COPY.encode() in run.stdout
        self.counts["complete" if complete else "refused"] += 1
        if b"No space left" in run.stdout:
            self.counts["full while writing"] += 1
        if claimed and not complete:
            self.faults.append("%s: claims success, status %d" % (what, run.returncode))
        if complete:
            return
        if now[COPY] != before.get(COPY):
            self.faults.append("%s: an earlier copy is broken" % what)
        if now[PART] not in (None, before.get(PART)):
            self.faults.append("%s: a part is left, status %d" % (what, run.returncode))


def content(path: Path) -> Optional[bytes]:
    return path.read_bytes() if path.exists() else None


EARLIER = [[name for name, there in zip(OLD, kept) if there] for kept in product((0, 1), repeat=2)]


def disks(stage: Stage) -> Iterator[str]:
    """Real file systems of every size around the copy's, and with few inodes."""
    most = len(stage.right) + sum(map(len, OLD.values()))
    options = ["size=%dk" % (4 * blocks) for blocks in range(1, most // 4096 + 6)]
    options += ["size=1m,nr_inodes=%d" % inodes for inodes in range(2, 7)]
    for option, old in product(options, EARLIER):
        place = Path(tempfile.mkdtemp(dir=stage.folder))
        mount = ["mount", "-t", "tmpfs", "-o", option, "tmpfs", str(place)]
        if subprocess.run(mount, stderr=subprocess.DEVNULL, check=False).returncode:
            sys.exit("disks: needs a user who may mount tmpfs")
        try:
            stage.write_files(place, old)
        except OSError:
            continue  # no room for that
        else:
            stage.judge(option + " " + " ".join(old), place, old, stage.condense(place))
            yield option
        finally:
            subprocess.run(["umount", str(place)], check=True)


def limits(stage: Stage) -> Iterator[str]:
    """Limits of the system, from too little to enough."""
    steps = {name: LIMITS[name] for name in LIMITED}
    steps["FSIZE"] = (steps["FSIZE"][0], range(0, len(stage.right) + 4 * KIB, KIB))
    for name, (number, values) in steps.items():
        for value in values:
            place = stage.fresh(list(OLD))
            what = "%s %d" % (name, value)
            try:
                run = stage.condense(place, limit_to(number, value))
                stage.judge(what, place, list(OLD), run)
            except subprocess.SubprocessError:
                stage.counts["not started"] += 1  # no memory for the new process itself
            yield what


SWEEPS = {"disks": disks, "limits": limits}
TEXTS: Dict[str, Callable[[], bytes]] = {"plain": plain_text, "misleading": misleading_text}


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("program")
    parser.add_argument("sweeps", nargs="*", metavar="SWEEP", help=", ".join(SWEEPS))
    options = parser.parse_args()
    failed = False
    for name, (kind, text) in product(options.sweeps or SWEEPS, TEXTS.items()):
        with tempfile.TemporaryDirectory() as folder:
            stage = Stage(options.program, Path(folder), text())
            runs = sum(1 for _ in SWEEPS[name](stage))
            counts = ", ".join("%s %d" % pair for pair in sorted(stage.counts.items()))
            print("%s, %s text: %d runs: %s" % (name, kind, runs, counts), flush=True)
            for fault in stage.faults:
                print("  " + fault)
            reached = stage.counts["complete"] and stage.counts["refused"]
            failed = failed or bool(stage.faults) or not reached
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
