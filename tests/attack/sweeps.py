#!/usr/bin/env python3
"""Small disks, low limits and closed readers, step by step: no false success.

    sweeps.py PROGRAM [SWEEP...]

PROGRAM is veldmark.  A sweep plays one short session again and again, each time with a
little more of something.  A run may fail, but where its screen says that a search ended
normally, or its status is 0, both outputs must be those of an undisturbed run, byte for
byte.  The exit status is 1 where that was not so.
"""

import argparse
import os
import resource
import subprocess
import sys
import tempfile
from collections import Counter
from pathlib import Path
from typing import Callable, Dict, Iterator, List, Tuple

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "faults"))

from scene_rules import NORMAL, sparse_grid  # noqa: E402
from session_rules import search  # noqa: E402

DATA = "cru_ts4.01.1901.2016.tmp.dat.new"
OUTPUTS = (DATA + ".TSF", DATA + ".XY")
ANSWERS = search(2, (250, 257), (300, 339), "1901", "1901", "T", "1", "y", "F")
ANSWERS = [answer.replace("\x04", "") for answer in ANSWERS]  # each arrives whole
TIMEOUT_SECONDS = 600
SEARCHES = 3000
KIB = 1024


def nothing() -> None:
    """Prepares a run without a limit."""


class Stage:
    """A data file and the expected outputs of the session."""

    def __init__(self, program: str, folder: Path) -> None:
        self.program = str(Path(program).resolve())
        self.folder = folder
        self.data = folder / DATA
        self.data.write_bytes(sparse_grid(1, 250, 257))
        self.counts: Counter = Counter()
        self.faults: List[str] = []
        place = self.fresh()
        self.right: Dict[str, bytes] = {}
        status, self.screen = self.play(place)
        if status != 0 or self.screen.count(NORMAL) != 1:
            sys.exit("the undisturbed session fails")
        self.right = self.outputs(place)

    def fresh(self) -> Path:
        """Makes a folder with the data file, linked so that it takes no space."""
        place = Path(tempfile.mkdtemp(dir=self.folder))
        self.write_files(place)
        return place

    def write_files(self, place: Path) -> None:
        place.joinpath(DATA).symlink_to(self.data)

    def outputs(self, place: Path) -> Dict[str, bytes]:
        paths = [place / name for name in OUTPUTS]
        return {path.name: path.read_bytes() for path in paths if path.exists()}

    def play(
        self,
        place: Path,
        prepare: Callable[[], None] = nothing,
        answers: Tuple[str, ...] = (*ANSWERS, "F"),
        read: int = -1,
    ) -> Tuple[int, bytes]:
        """Returns the status and the first `read` bytes of the screen, -1 for all."""
        with open(self.folder / "answers", "w+", encoding="ascii") as typed:
            typed.write("".join(answer + "\n" for answer in answers))
            typed.seek(0)
            process = subprocess.Popen(
                [self.program],
                cwd=place,
                stdin=typed,
                stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL,
                env={"PATH": "/nowhere", "LC_ALL": "C"},  # no clear, no ls
                preexec_fn=prepare,
            )
        with process.stdout as screen:
            text = screen.read(read)
        return process.wait(TIMEOUT_SECONDS), text

    def judge(self, what: str, place: Path, status: int, screen: bytes) -> None:
        """Records a false success."""
        complete = self.outputs(place) == self.right
        self.counts["complete" if complete else "refused"] += 1
        claimed = status == 0 or NORMAL in screen
        if claimed and not complete:
            self.faults.append("%s: claims success, status %d" % (what, status))
        if status not in (0, 255):
            self.counts["ended by the system"] += 1


def disks(stage: Stage) -> Iterator[str]:
    """Real file systems of every size around the outputs', and with few inodes."""
    size = sum(map(len, stage.right.values()))
    options = ["size=%dk" % (4 * blocks) for blocks in range(1, size // 4096 + 4)]
    options += ["size=1m,nr_inodes=%d" % inodes for inodes in range(2, 7)]
    for option in options:
        for old in (False, True):
            place = Path(tempfile.mkdtemp(dir=stage.folder))
            mount = ["mount", "-t", "tmpfs", "-o", option, "tmpfs", str(place)]
            if subprocess.run(mount, stderr=subprocess.DEVNULL, check=False).returncode:
                sys.exit("disks: needs a user who may mount tmpfs")
            try:
                yield from on_disk(stage, place, option, old)
            finally:
                subprocess.run(["umount", str(place)], check=True)


def on_disk(stage: Stage, place: Path, option: str, old: bool) -> Iterator[str]:
    try:
        stage.write_files(place)
        if old:
            place.joinpath(OUTPUTS[0]).write_bytes(b"of an earlier search\n")
    except OSError:
        return  # no room for that
    stage.judge(option, place, *stage.play(place))
    yield option


LIMITS = {
    "AS": (resource.RLIMIT_AS, range(2048 * KIB, 24 * 1024 * KIB, 256 * KIB)),
    "DATA": (resource.RLIMIT_DATA, range(0, 8 * 1024 * KIB, 128 * KIB)),
    "NOFILE": (resource.RLIMIT_NOFILE, range(3, 12)),
    "STACK": (resource.RLIMIT_STACK, range(16 * KIB, 512 * KIB, 16 * KIB)),
    "FSIZE": (resource.RLIMIT_FSIZE, range(0, 48 * KIB, 1 * KIB)),
    "CPU": (resource.RLIMIT_CPU, range(0, 2)),
}


def limit_to(number: int, value: int) -> Callable[[], None]:
    return lambda: resource.setrlimit(number, (value, value))


def limits(stage: Stage) -> Iterator[str]:
    """Every limit of the system, from too little to enough."""
    for name, (number, values) in LIMITS.items():
        for value in values:
            place = stage.fresh()
            what = "%s %d" % (name, value)
            try:
                stage.judge(what, place, *stage.play(place, limit_to(number, value)))
            except subprocess.SubprocessError:
                stage.counts["not started"] += 1  # no memory for the new process itself
            yield what


def readers(stage: Stage) -> Iterator[str]:
    """The reader of the screen closes its pipe, after every 97th byte in turn."""
    for size in range(0, len(stage.screen), 97):
        place = stage.fresh()
        stage.judge("reader gone at %d" % size, place, *stage.play(place, read=size))
        yield str(size)


def searches(stage: Stage) -> Iterator[str]:
    """The same search very often in one run, with memory and descriptors for a few."""

    def limit() -> None:
        resource.setrlimit(resource.RLIMIT_AS, (32 * KIB * KIB, 32 * KIB * KIB))
        resource.setrlimit(resource.RLIMIT_NOFILE, (16, 16))

    again = ("T", "F", "", "2", "", "1", "y", "F")
    place = stage.fresh()
    answers = (*ANSWERS, *again * (SEARCHES - 1), "F")
    status, screen = stage.play(place, limit, answers)
    stage.judge("searches", place, status, screen)
    if screen.count(NORMAL) != SEARCHES:
        stage.faults.append("%d searches of %d" % (screen.count(NORMAL), SEARCHES))
    yield "searches"


SWEEPS = {"disks": disks, "limits": limits, "readers": readers, "searches": searches}


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("program")
    parser.add_argument("sweeps", nargs="*", metavar="SWEEP", help=", ".join(SWEEPS))
    options = parser.parse_args()
    failed = False
    for name in options.sweeps or SWEEPS:
        with tempfile.TemporaryDirectory() as folder:
            stage = Stage(options.program, Path(folder))
            runs = sum(1 for _ in SWEEPS[name](stage))
            counts = ", ".join("%s %d" % pair for pair in sorted(stage.counts.items()))
            print("%s: %d runs: %s" % (name, runs, counts), flush=True)
            for fault in stage.faults:
                print("  " + fault)
            reached = stage.counts["complete"] and (name == "searches" or stage.counts["refused"])
            failed = failed or bool(stage.faults) or not reached
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
