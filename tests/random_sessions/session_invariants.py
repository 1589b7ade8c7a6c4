#!/usr/bin/env python3
"""Runs random sessions through Veldmark and checks the invariants of every run.

    session_invariants.py --program PATH [--count N] [--seed S]

No second program is run.  Of each session: the exit status is 0 or 255, with a report on
standard error exactly when it is 255; every output file has its documented format, and holds
the data file's values of exactly those selected cells that have data; every count equals
what was written.  The same answers give the same bytes when repeated, and on an equivalent
data file that is read in another way.  A prefix of the answers gives a prefix of the screen.

Session i (from 0) of a run is the one made from seed S + i, so `--seed S+i --count 1`
repeats it.  The exit status is 1 when anything failed, or when the sessions reached less than
the required counts.
"""

from __future__ import annotations

import argparse
import collections
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time
from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent / "second_program"), str(HERE.parent / "support")]

import least  # noqa: E402
import same_meaning  # noqa: E402
from conversation import Conversation, Search  # noqa: E402
from figures import note_figures  # noqa: E402
from grid_file_maker import GridFileMaker  # noqa: E402
from grid_rules import DataFile  # noqa: E402
from output_files import VARIABLES, data_file_name, first_difference, search_faults  # noqa: E402
from random_sessions import STAND_INS, visible  # noqa: E402
from session_maker import Session, SessionDraft, TooDear  # noqa: E402

TIMEOUT_SECONDS = 60
REPORT = re.compile(rb"Run-time error:\n[^\n]+\n\? (OPEN|READ|WRITE)\(UNIT=\d+,\.\.\.\n")
# The minimum per hundred sessions; see least.py.
LEAST = {
    "searches finished": 60,
    "sessions of several finished searches": 10,
    "cells saved": 1000,
    "values compared": 20_000,
    "report lines checked": 4,
    "runs on carriage returns": 20,
    "runs on full lines": 4,
    "runs on the first lines of the answers": 20,
    "data with CR LF": 1,
    "data that may be regular": 3,
    "data with CR LF that may be regular": 2,
    "sessions that saved years from 1980 on": 1,
    "kinds of end": 5,
}


class Draft(SessionDraft):
    """Makes sessions as for the second program, but with more regular files and early ends."""

    def plan(self) -> list:
        self.regular = self.regular or (not self.late and self.chance(0.2))
        return super().plan()

    def joined(self) -> bytes:
        text = super().joined()
        if self.chance(0.05):
            text = text[: self.rng.randrange(len(text) + 1)]
        return text


def make_session(rng: random.Random, maker: GridFileMaker) -> Session:
    while True:
        try:
            return Draft(rng, maker).session()
        except TooDear:
            continue


@dataclass
class Outcome:
    """The result of a run."""

    status: int
    screen: bytes
    errors: bytes
    files: dict[str, bytes]  # without the data files, unless they were changed

    def differences(self, other: Outcome) -> list[str]:
        found = []
        if self.status != other.status:
            found.append(f"exit status {self.status}, then {other.status}")
        pairs = {"standard error": (self.errors, other.errors)}
        pairs["screen"] = self.screen, other.screen
        for name in sorted(self.files.keys() | other.files.keys()):
            pairs[name] = self.files.get(name, b"(none)"), other.files.get(name, b"(none)")
        for what, (one, two) in pairs.items():
            found += first_difference(what, one.decode("latin-1"), two.decode("latin-1"))
        return found


class Runner:
    """Runs the program, each time in a new folder."""

    def __init__(self, program: str, folder: Path) -> None:
        self.program = os.path.abspath(program)
        self.folder = folder
        stand_ins = folder / "bin"
        stand_ins.mkdir()
        for name, text in STAND_INS.items():
            (stand_ins / name).write_text(text)
            (stand_ins / name).chmod(0o755)
        self.environment = dict(os.environ, LC_ALL="C")
        self.environment["PATH"] = f"{stand_ins}{os.pathsep}{os.environ.get('PATH', '')}"

    def run(self, files: dict, answers: bytes) -> Outcome:
        folder = self.folder / "run"
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        before = {}
        for name, content in files.items():
            self.put(folder / name, content)
            if name.endswith(".dat.new") and content != "directory":
                before[name] = os.stat(folder / name).st_mtime_ns
        (self.folder / "answers").write_bytes(answers)
        with (
            open(self.folder / "answers", "rb") as typed,
            open(self.folder / "screen", "wb") as screen,
            open(self.folder / "errors", "wb") as errors,
        ):
            process = subprocess.Popen(
                [self.program],
                stdin=typed,
                stdout=screen,
                stderr=errors,
                cwd=folder,
                env=self.environment,
            )
            # wait() with a time limit would poll and sleep.
            limit = threading.Timer(TIMEOUT_SECONDS, process.kill)
            limit.start()
            status = process.wait()
            limit.cancel()
        found = {}
        for path in sorted(folder.iterdir()):
            if before.get(path.name) != path.stat().st_mtime_ns:
                found[path.name] = path.read_bytes() if path.is_file() else b"no file"
        texts = [(self.folder / name).read_bytes() for name in ("screen", "errors")]
        return Outcome(status, *texts, found)

    @staticmethod
    def put(path: Path, content: bytes | str | tuple) -> None:
        if content == "directory":
            path.mkdir()
        elif content == "full":
            path.symlink_to("/dev/full")
        elif isinstance(content, tuple):
            os.link(content[1], path)
        else:
            path.write_bytes(content)


def lines_of(answers: bytes) -> list[bytes]:
    """Returns the lines with their newlines; a carriage return alone does not end a line."""
    return re.findall(rb"[^\n]*\n|[^\n]+", answers)


def owners(searches: list[Search]) -> dict[str, Search]:
    """Returns which search opened each output file last."""
    found = {}
    for one in searches:
        stem = data_file_name(one.entry)[:40] if one.entry else ""
        found[stem + ".TSF"] = found[stem + ".XY"] = one
        if one.periods is not None:
            found[stem + ".ftst"] = one
    return found


def ending_of(name: str) -> str:
    """Returns the extension, such as ".TSF", even if that is the whole name."""
    return name[name.rindex(".") :]


class DataFiles:
    """The data files of sessions, split into lines; shared files only once."""

    def __init__(self) -> None:
        self.shared: dict[str, DataFile] = {}

    def of(self, content: bytes | tuple) -> DataFile:
        if isinstance(content, bytes):
            return DataFile(content)
        path = content[1]
        if path not in self.shared:
            self.shared[path] = DataFile(Path(path).read_bytes())
        return self.shared[path]


def end_faults(outcome: Outcome) -> list[str]:
    """Returns what is wrong with the way a run ended."""
    if outcome.status not in (0, 255):
        return [f"exit status {outcome.status}: {outcome.errors[:2000].decode('latin-1')}"]
    if outcome.status == 255 and not REPORT.fullmatch(outcome.errors):
        return [f"status 255 with {outcome.errors!r} on standard error"]
    if outcome.status == 0 and outcome.errors:
        return [f"status 0 with {outcome.errors!r} on standard error"]
    if outcome.status == 0 and not outcome.screen.endswith(tuple(least.QUIET_ENDS.values())):
        return [f"status 0, but the screen ends with {outcome.screen[-80:]!r}"]
    return []


def faults_of(outcome: Outcome, files: dict, answers: bytes, data: DataFiles) -> list[str]:
    """Returns what is wrong with a single run."""
    faults = end_faults(outcome)
    if faults or "directory" in files.values() or "full" in files.values():
        return faults  # everything else depends on when the failed write is noticed
    try:
        searches = Conversation(outcome.screen, answers).searches
    except (AttributeError, IndexError) as error:
        return [f"impossible order of prompts: {error!r}"]
    owner = owners(searches)
    rest = dict(outcome.files)
    for number, one in enumerate(searches, 1):
        kept = {name: rest.pop(name, None) for name in owner if owner[name] is one}
        faults += [f"search {number} made no {name}" for name in kept if kept[name] is None]
        own = {
            ending_of(name): text for name, text in kept.items() if text is not None
        }
        if one.saved_years is None:  # nothing is written before the first cell is saved
            faults += [
                f"search {number} wrote {end} without saving a cell"
                for end in (".TSF", ".XY")
                if own.get(end)
            ]
        if one.theoretical is None:
            continue
        source = data_file_name(one.variable) if one.variable in VARIABLES else None
        if source not in files:
            faults.append(f"search {number} read a file that doesn't exist")
            continue
        found = search_faults(one, data.of(files[source]), own)
        faults += [f"search {number}: {fault}" for fault in found]
    for name, text in rest.items():
        if name.endswith(".dat.new"):
            faults.append(f"{name} was changed")
        elif files.get(name) != text:
            faults.append(f"{name} was created or changed")
    return faults


def beginning_faults(whole: Outcome, part: Outcome) -> list[str]:
    """Returns what is wrong with a run that gets only the first lines of the answers."""
    if part.status == 255 and whole.screen.startswith(part.screen):
        return []
    return whole.differences(part)


class Check:
    """Checks sessions one after another, and counts what they reached."""

    def __init__(self, program: str, folder: Path) -> None:
        self.runner = Runner(program, folder)
        self.maker = GridFileMaker(str(folder))
        self.changes = same_meaning.Changes(folder)
        self.data = DataFiles()
        self.counts: collections.Counter[str] = collections.Counter()

    def session(self, seed: int) -> tuple[Session, list[str]]:
        """Makes and runs a session. Returns what is wrong with it."""
        session = make_session(random.Random(seed), self.maker)
        rng = random.Random(f"changes {seed}")
        outcome = self.runner.run(session.files, session.answers)
        faults = faults_of(outcome, session.files, session.answers, self.data)
        again = self.runner.run(session.files, session.answers)
        faults += [f"again: {text}" for text in outcome.differences(again)]
        name, files = self.changes.changed(rng, session.files)
        if files:
            other = self.runner.run(files, session.answers)
            faults += [f"{name}: {text}" for text in outcome.differences(other)]
            self.counts["runs on " + name] += 1
        if rng.random() < 0.3:
            lines = lines_of(session.answers)
            answers = b"".join(lines[: rng.randrange(len(lines) + 1)])
            part = self.runner.run(session.files, answers)
            faults += [f"part: {text}" for text in beginning_faults(outcome, part)]
            faults += [
                f"part: {text}"
                for text in faults_of(part, session.files, answers, self.data)
            ]
            self.counts["runs on the first lines of the answers"] += 1
        self.count(session, outcome)
        return session, faults

    def count(self, session: Session, outcome: Outcome) -> None:
        self.counts.update(least.data_kinds(session.files))
        self.counts[least.end_of(outcome.status, outcome.screen, outcome.errors)] += 1
        saved = re.findall(rb"\n +(\d+) Grids Selected and Saved\n", outcome.screen)
        self.counts[f"status {outcome.status}"] += 1
        self.counts["searches finished"] += len(saved)
        self.counts["cells saved"] += sum(map(int, saved))
        self.counts["sessions of several finished searches"] += len(saved) > 1
        late = re.search(least.LATE_YEARS, outcome.screen)
        self.counts["sessions that saved years from 1980 on"] += bool(late)
        for name, text in outcome.files.items():
            if name.endswith(".TSF"):
                self.counts["values compared"] += 12 * len(re.findall(rb"(?m)^ \d", text))
            if name.endswith(".ftst") and text.startswith(b" #"):
                self.counts["report lines checked"] += text.count(b"\n") - 2


def report(program: str, seed: int, session: Session, faults: list[str]) -> None:
    print(f"FAULT in the session of seed {seed}; to repeat it:")
    print(f"  {sys.argv[0]} --program {program} --seed {seed} --count 1")
    for name, content in sorted(session.files.items()):
        size = f"{len(content)} bytes" if isinstance(content, bytes) else content
        print(f"  data: {name} ({size})")
    print("  answers:")
    for line in lines_of(session.answers):
        print("    " + visible(line[:200]))
    for text in faults[:10]:
        print("  " + text.replace("\n", "\n  "))
    sys.stdout.flush()


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--program", required=True, help="the program to run")
    parser.add_argument("--count", type=int, default=200, help="sessions (200)")
    parser.add_argument("--seed", type=int, default=1, help="seed of the first session (1)")
    parser.add_argument("--stop-after", type=int, default=3, help="failed sessions (3)")
    options = parser.parse_args()
    if not os.access(options.program, os.X_OK):
        parser.error("cannot run " + options.program)
    if options.count < 1:
        parser.error("--count: at least 1")
    passed = failed = 0
    started = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="invariants-") as folder:
        check = Check(options.program, Path(folder))
        for seed in range(options.seed, options.seed + options.count):
            session, faults = check.session(seed)
            if not faults:
                passed += 1
                continue
            failed += 1
            report(options.program, seed, session, faults)
            if failed >= options.stop_after:
                break
    for name, count in sorted(check.counts.items()):
        print(f"{count:9}  {name}")
    print(f"{time.monotonic() - started:.1f} seconds")
    print(f"{passed} passed, {failed} failed")
    note_figures("random_sessions", check.counts + collections.Counter(sessions=passed))
    missed = [] if failed else list(least.shortfalls(check.counts, passed, LEAST))
    print("".join(text + "\n" for text in missed), end="")
    return 1 if failed or missed else 0


if __name__ == "__main__":
    sys.exit(main())
