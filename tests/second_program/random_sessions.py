#!/usr/bin/env python3
"""Runs random sessions through Veldmark and through the second program beside it.

    random_sessions.py --program PATH [--count N] [--seed S] [--keep DIR]

Session i (from 0) of a run is the one made from seed S + i, so `--seed S+i --count 1`
repeats it.  Both programs run at the same time, each in a fresh folder with the same data
files and the same answers; screen, standard error, exit status and every file have to
agree byte for byte.  `clear` and `ls` are stand-ins that print a mark on the screen.
The exit status is 1 when anything differed, or when the sessions came to too little of
what they are for.
"""

import argparse
import collections
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
for folder in ("random_sessions", "support"):
    sys.path.insert(0, os.path.join(os.path.dirname(HERE), folder))

import least  # noqa: E402
from figures import note_figures  # noqa: E402
from grid_file_maker import GridFileMaker  # noqa: E402
from session_maker import SessionMaker  # noqa: E402

TIMEOUT_SECONDS = 120
NORMAL = b" PROGRAM TERMINATING NORMALLY\n"

STAND_INS = {
    "clear": "#!/bin/sh\nprintf '<clear %s>\\n' \"$*\"\n",
    "ls": "#!/bin/sh\nprintf '<ls %s>\\n' \"$*\"\n",
}


def visible(line):
    """Returns a line with blanks shown as dots and control characters escaped."""
    text = ""
    for code in line:
        if code == 32:
            text += "\u00b7"
        elif 33 <= code <= 126:
            text += chr(code)
        else:
            text += "\\x%02x" % code
    return text


def first_difference(what, expected, got):
    """Returns the first line and position at which two byte strings differ."""
    at = 0
    shorter = min(len(expected), len(got))
    while at < shorter and expected[at] == got[at]:
        at += 1
    start = expected.rfind(b"\n", 0, at) + 1
    number = expected.count(b"\n", 0, at) + 1

    def line_of(data):
        end = data.find(b"\n", start)
        line = data[start:] if end < 0 else data[start : end + 1]
        return visible(line[:400]) if line else "(nothing)"

    return "%s differs at line %d, column %d\n  second program: %s\n  program:        %s" % (
        what,
        number,
        at - start + 1,
        line_of(expected),
        line_of(got),
    )


class Outcome:
    """The result of a program."""

    def __init__(self, screen, errors, status, files):
        self.screen = screen
        self.errors = errors
        self.status = status
        self.files = files  # name: bytes, or a word for anything but a plain file


class Bench:
    """A work folder, the fake commands and the two programs."""

    def __init__(self, program, folder):
        self.program = os.path.abspath(program)
        self.folder = folder
        stand_ins = os.path.join(folder, "bin")
        os.mkdir(stand_ins)
        for name, text in STAND_INS.items():
            path = os.path.join(stand_ins, name)
            with open(path, "w") as out:
                out.write(text)
            os.chmod(path, 0o755)
        self.environment = dict(os.environ)
        self.environment["PATH"] = stand_ins + os.pathsep + os.environ.get("PATH", "")
        self.environment["LC_ALL"] = "C"

    def prepare(self, session):
        """Creates the folders `second` and `program`; the data files are hard links."""
        for name in ("data", "second", "program"):
            path = os.path.join(self.folder, name)
            shutil.rmtree(path, ignore_errors=True)
            os.mkdir(path)
        for name, content in session.files.items():
            inputs = name.endswith(".dat.new")
            source = os.path.join(self.folder, "data", name)
            if isinstance(content, bytes):
                with open(source, "wb") as out:
                    out.write(content)
            elif isinstance(content, tuple):
                os.link(content[1], source)
            for side in ("second", "program"):
                target = os.path.join(self.folder, side, name)
                if content == "directory":
                    os.mkdir(target)
                elif content == "full":
                    os.symlink("/dev/full", target)
                elif inputs:
                    os.link(source, target)
                else:
                    shutil.copyfile(source, target)
        with open(os.path.join(self.folder, "answers"), "wb") as out:
            out.write(session.answers)

    def run(self):
        """Runs both programs at the same time. Returns both outcomes."""
        commands = {
            "second": [sys.executable, os.path.join(HERE, "second_program.py")],
            "program": [self.program],
        }
        running = {side: self.start(side, command) for side, command in commands.items()}
        deadline = time.monotonic() + TIMEOUT_SECONDS
        return [self.finish(side, *running[side], deadline) for side in commands]

    def start(self, side, command):
        streams = []
        names = ("answers", "rb"), (side + ".out", "w+b"), (side + ".err", "w+b")
        for name, mode in names:
            streams.append(open(os.path.join(self.folder, name), mode))
        process = subprocess.Popen(
            command,
            cwd=os.path.join(self.folder, side),
            env=self.environment,
            stdin=streams[0],
            stdout=streams[1],
            stderr=streams[2],
        )
        return process, streams

    def finish(self, side, process, streams, deadline):
        try:
            status = process.wait(max(0.1, deadline - time.monotonic()))
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            status = "none after %d seconds" % TIMEOUT_SECONDS
        texts = []
        for stream in streams[1:]:
            stream.seek(0)
            texts.append(stream.read())
        for stream in streams:
            stream.close()
        return Outcome(texts[0], texts[1], status, self.files_of(side))

    def files_of(self, side):
        """Returns every file of the folder; for a linked data file only size and time."""
        found = {}
        with os.scandir(os.path.join(self.folder, side)) as entries:
            for entry in entries:
                if entry.is_symlink():
                    found[entry.name] = b"link to " + os.fsencode(os.readlink(entry.path))
                elif entry.is_dir():
                    found[entry.name] = b"directory"
                elif entry.name.endswith(".dat.new"):
                    about = entry.stat()
                    found[entry.name] = b"%d bytes, %d" % (about.st_size, about.st_mtime_ns)
                else:
                    with open(entry.path, "rb") as source:
                        found[entry.name] = source.read()
        return found


def differences(expected, got, disk_is_full):
    """Returns the first difference of each kind; empty if the outcomes agree."""
    found = []
    if expected.status != got.status:
        found.append(
            "exit status differs: second program %s, program %s" % (expected.status, got.status)
        )
    if expected.errors != got.errors:
        found.append(first_difference("standard error", expected.errors, got.errors))
    if disk_is_full and expected.status == 255:
        # The two may notice a full disk at different times, as long as no search claims
        # success after that.
        if expected.screen.count(NORMAL) != got.screen.count(NORMAL):
            found.append("searches claimed as finished differ")
        return found
    if expected.screen != got.screen:
        found.append(first_difference("screen", expected.screen, got.screen))
    for name in sorted(set(expected.files) | set(got.files)):
        if name not in got.files:
            found.append("file %s was not made" % name)
        elif name not in expected.files:
            found.append("file %s should not be there" % name)
        elif expected.files[name] != got.files[name]:
            found.append(
                first_difference("file " + name, expected.files[name], got.files[name])
            )
    return found


SUMMARY = re.compile(
    rb"\n\n PROGRAM TERMINATING NORMALLY\n ([ -]*\d+) Grids Defined\n ( *\d+) Grids Selected"
    rb" and Saved\n Output is in file (\S+) *\n"
)


def broken_promises(outcome, disk_is_full):
    """Returns what is wrong with the last search, even if both programs agree on it."""
    searches = list(SUMMARY.finditer(outcome.screen))
    if not searches or outcome.status != 0 or disk_is_full:
        return []
    last = searches[-1]
    if not outcome.screen.endswith(b" Perform another search?\n [t]rue [f]alse ==> "):
        return []  # another search was begun, or the run ended at the menu
    saved = int(last[2])
    name = last[3].decode()
    series = outcome.files[name].count(b"\n")
    cells = outcome.files[name[: -len(".TSF")] + ".XY"].count(b"\n") - 1
    years = re.findall(rb"  Saving Cell data : (\d{4}) - (\d{4})\n", outcome.screen)[-1]
    wanted = saved * (2 + int(years[1]) - int(years[0]))
    found = []
    if cells != saved:
        found.append("%d cells saved, but %d in the cell list" % (saved, cells))
    if series != wanted:
        found.append("%d lines in the time-series file, expected %d" % (series, wanted))
    return found


REACHED = {
    "finished a search": rb"PROGRAM TERMINATING NORMALLY",
    "finished two or more": rb"(?s)TERMINATING NORMALLY.*TERMINATING NORMALLY",
    "saved cells": rb" *[1-9]\d* Grids Selected",
    "saved years from 1980 on": least.LATE_YEARS,
    "had the variance test": rb"Ftest Comparison",
    "had the NaN notice": rb"Ftest Nan computed",
    "had the betai pause": rb"bad argument x",
    "missing file": rb"Does not exist|NOT FOUND",
    "bad value R1": rb"Values: R1",
    "bad value R2": rb"Values: R2",
    "end of file report": rb"End Of File Reached",
}


# The minimum per hundred sessions; see least.py.
LEAST = {
    "finished a search": 40,
    "finished two or more": 7,
    "saved cells": 25,
    "had the variance test": 18,
    "had the NaN notice": 5,
    "variance report with cells": 3,
    "missing file": 1,
    "data with CR LF": 1,
    "data that may be regular": 3,
    "data with CR LF that may be regular": 1,
    "saved years from 1980 on": 1,
    "kinds of end": 6,
}


def count_reached(reached, session, outcome):
    reached.update(least.data_kinds(session.files))
    reached["status %s" % outcome.status] += 1
    reached[least.end_of(outcome.status, outcome.screen, outcome.errors)] += 1
    for name, pattern in REACHED.items():
        if re.search(pattern, outcome.screen):
            reached[name] += 1
    for name, data in outcome.files.items():
        written = name.endswith(".ftst") and data.startswith(b" # Ftest")
        if written and data.count(b"\n") > 2:
            reached["variance report with cells"] += 1
            break


def report(seed, session, found, outcomes):
    print("DIFFERENCE in the session of seed %d" % seed)
    for name, content in sorted(session.files.items()):
        size = "%d bytes" % len(content) if isinstance(content, bytes) else content
        print("  data: %s (%s)" % (name, size))
    print("  answers:")
    for line in session.answers.splitlines(keepends=True):
        print("    " + visible(line[:200]))
    for text in found:
        print("  " + text.replace("\n", "\n  "))
    print("  standard error of the program:")
    for line in outcomes[1].errors.splitlines()[:8]:
        print("    " + visible(line[:200]))
    sys.stdout.flush()


def keep_folders(bench, keep, seed):
    target = os.path.join(keep, "seed-%d" % seed)
    shutil.rmtree(target, ignore_errors=True)
    os.makedirs(target)
    names = ["answers", "second.out", "program.out", "second.err", "program.err"]
    for name in names + ["second", "program"]:
        source = os.path.join(bench.folder, name)
        if os.path.isdir(source):
            shutil.copytree(source, os.path.join(target, name), symlinks=True)
        else:
            shutil.copyfile(source, os.path.join(target, name))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--program", required=True, help="the program to compare")
    parser.add_argument("--count", type=int, default=200, help="sessions (200)")
    parser.add_argument("--seed", type=int, default=1, help="seed of the first session (1)")
    parser.add_argument("--keep", help="folder for the files of sessions that differ")
    parser.add_argument("--stop-after", type=int, default=3, help="differences (3)")
    options = parser.parse_args()
    if not os.access(options.program, os.X_OK):
        parser.error("cannot run " + options.program)
    if options.count < 1:
        parser.error("no session to run")
    passed = failed = 0
    reached = collections.Counter()
    started = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="sessions-") as folder:
        bench = Bench(options.program, folder)
        maker = SessionMaker(GridFileMaker(folder))
        for seed in range(options.seed, options.seed + options.count):
            session = maker.make(random.Random(seed))
            bench.prepare(session)
            outcomes = bench.run()
            full = "full" in session.files.values()
            found = differences(*outcomes, full) + broken_promises(outcomes[0], full)
            count_reached(reached, session, outcomes[0])
            if not found:
                passed += 1
            else:
                failed += 1
                report(seed, session, found, outcomes)
                if options.keep:
                    keep_folders(bench, options.keep, seed)
                if failed >= options.stop_after:
                    break
    for name, count in sorted(reached.items()):
        print("%6d  %s" % (count, name))
    print("%.1f seconds" % (time.monotonic() - started))
    print("%d passed, %d failed" % (passed, failed))
    note_figures("second_program", reached + collections.Counter(sessions=passed))
    missed = [] if failed else list(least.shortfalls(reached, passed, LEAST))
    print("".join(text + "\n" for text in missed), end="")
    return 1 if failed or missed else 0


if __name__ == "__main__":
    sys.exit(main())
