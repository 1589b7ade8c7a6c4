"""The scenes in which every call fails once, and what must come of it in each.

A scene gives `complaint`: what is wrong with the outcome of a run with a fault, "" for
nothing.  Two kinds of rules are behind it.  Some hold whatever the fault: no signal, no
hang, no claim that isn't true, no other file changed.  The others say for every call what
a user has to be told, word for word.
"""

import errno
import os
import random
import re
import signal
from pathlib import Path
from typing import Dict, List, Optional, Sequence, Set, Tuple

from fault_runs import (
    END_OF_INPUT,
    Bench,
    Call,
    Content,
    Fault,
    Outcome,
    Scene,
    end_of,
)

COLUMNS = 720
ROWS = 360
MONTHS = 12
MEGABYTE = 1 << 20

NORMAL = b" PROGRAM TERMINATING NORMALLY\n"
NOTES = "notes.txt"
FOLDER = "folder"  # what `Scene.run` calls it

# Calls after whose failure all goes on as before: they only choose the better way.
OF_NO_CONSEQUENCE = {"fstat", "fstatat", "stat", "lstat", "statx", "access"}
OF_NO_CONSEQUENCE |= {"faccessat", "faccessat2", "unlink", "fchmod", "statfs", "lseek"}
OF_NO_CONSEQUENCE |= {"ioctl", "madvise", "munmap", "getrandom"}
STEPS_OF_PART = {"flock", "write", "fsync", "close"}
NAMING = {"rename", "link", "renameat2"}
# Calls without which a part can't be removed, or must not be.
KEEPS_PART = {"unlink", "fstat", "fstatat", "flock"}
MEMORY = {"mmap", "mremap", "brk", "malloc"}


def reason(fault: Fault) -> str:
    return os.strerror(fault.error())


def is_taken_up(fault: Fault) -> bool:
    """An interrupted call, one that would have to wait for its stream, or one that did
    only a part, is simply gone on with."""
    again = fault.error() == errno.EAGAIN and fault.file.startswith("standard-")
    return again or fault.error() == errno.EINTR or fault.what in ("count=1", "half")


def is_at_the_end(fault: Fault, call: Call) -> bool:
    """Nothing was left to read anyway."""
    return call.result == 0 and (fault.what == "end" or fault.what.startswith("shrink"))


def is_lost_message(fault: Fault) -> bool:
    """What can't be told can't be told; the status must say it all the same."""
    said = fault.file == "standard-error" and fault.name in ("write", "writev")
    return said and fault.error() is not None and not is_taken_up(fault)


def grid_line(rng: random.Random, missing: int) -> bytes:
    fields = (missing if rng.random() < 0.02 else rng.randint(0, 3100) for _ in range(COLUMNS))
    return "".join("%5d" % value for value in fields).encode()


def regular_grid(path: Path, years: int) -> Path:
    """A regular grid file from 1901 on."""
    rng = random.Random(1)
    pool = [grid_line(rng, -999) + b"\n" for _ in range(20)]
    with open(path, "wb") as out:
        for _ in range(years * MONTHS * ROWS):
            out.write(rng.choice(pool))
    return path


def loose_grid(years: int, first_row: int, last_row: int) -> bytes:
    """A grid file with nothing but line ends in the rows that are not wanted."""
    rng = random.Random(2)
    lines = []
    for _ in range(years * MONTHS):
        lines += [
            grid_line(rng, -999) if first_row <= row <= last_row else b""
            for row in range(1, ROWS + 1)
        ]
    return b"\n".join(lines) + b"\n"


def latitude(row: int) -> float:
    """The southern edge of a row."""
    return -90 + (row - 1) * 0.5


def in_two(answer: str) -> str:
    """An answer that arrives in two pieces."""
    return answer[:1] + END_OF_INPUT.decode() + answer[1:]


def second_pieces(answers: Sequence[str]) -> Set[int]:
    """Which readings get the rest of an answer, counted from 1."""
    found = set()
    readings = 0
    for answer in answers:
        pieces = 1 + answer.count(END_OF_INPUT.decode())
        found.update(range(readings + 2, readings + pieces + 1))
        readings += pieces
    return found


def search(
    variable: int, rows: Tuple[int, int], columns: Tuple[int, int], *rest: str
) -> List[str]:
    """The answers of a pass from the menu to the variance test."""
    box = [latitude(rows[1] + 1), latitude(rows[0])]
    box += [(column - 1) * 0.5 - 180 for column in (columns[1] + 1, columns[0])]
    corners = ["%.1f" % corner for corner in box]
    return ["", "", str(variable), "", "", *corners, "T", *map(in_two, rest)]


MARK = re.compile(rb"^\$ .*\n", re.MULTILINE)  # of a shell command
SAVING = rb"\n  Saving Cell data : "  # the heading of a search's table
CELL_LINE = re.compile(rb"^ {2} *\d+ +-?\d+\.\d{3} +-?\d+\.\d{3} .*\n", re.MULTILINE)


def said_before(calm: Outcome, call: Call, searches: Sequence[Sequence[str]]) -> bytes:
    """What the screen shows at the least when a call fails: a cell is in the table before
    its series goes to the file, and nothing that was said may be lost with the run."""
    if call not in calm.calls or not call.file.endswith(".TSF"):
        return b""
    size = call.size if call.name == "write" else 0
    for earlier in calm.calls[: calm.calls.index(call)]:
        if earlier.name == "write" and earlier.file == call.file:
            size += earlier.result
    _, _, content = calm.files[call.file].partition(b" ")
    cells = content[:size].count(b"RFMT=")
    number = next(i for i, names in enumerate(searches) if call.file in names)
    tables = [found.end() for found in re.finditer(SAVING, calm.screen)]
    lines = list(CELL_LINE.finditer(calm.screen, tables[number]))
    return calm.screen[: lines[cells - 1].end()] if cells else b""


class Session(Scene):
    """A conversation with veldmark.

    passes    of each pass the grid file, and its outputs' endings
    """

    CHANNELS = {".TSF": 14, ".XY": 15, ".ftst": 16}

    def __init__(
        self,
        bench: Bench,
        program: str,
        files: Dict[str, Content],
        answers: Sequence[str],
        passes: Sequence[Tuple[str, Sequence[str]]],
    ) -> None:
        streams = ["standard-input", "standard-output", "standard-error"]
        super().__init__(bench, [program], files, answers, waits_for=streams)
        self.second_pieces = second_pieces(answers)
        self.grids = [grid for grid, _ in passes]
        self.outputs = [[grid + ending for ending in endings] for grid, endings in passes]

    def complaint(self, calm: Outcome, fault: Fault, call: Call, outcome: Outcome) -> str:
        said = said_before(calm, call, self.outputs)
        if not fault.what.startswith("signal") and not outcome.screen.startswith(said):
            return "what was said before is lost: %r" % outcome.screen[-200:]
        found = self.broken_rule(calm, fault, outcome)
        return found or self.unlike_expected(calm, fault, call, outcome)

    def broken_rule(self, calm: Outcome, fault: Fault, outcome: Outcome) -> str:
        """What must never be, whatever failed."""
        allowed = (0, 255) if not fault.what.startswith("signal") else (-signal.SIGINT,)
        if outcome.status not in allowed:
            return "ended with %s" % (end_of(outcome),)
        claims = outcome.screen.count(NORMAL)
        if claims > len(self.outputs):
            return "claims too much"
        for names in self.outputs[:claims]:
            for name in names:
                if outcome.files.get(name) != calm.files[name]:
                    return "%s is claimed, but not what it should be" % name
        begun = sum(self.outputs[: claims + 1], [])
        for name in sorted(set(self.at_first) | set(outcome.files)):
            changed = outcome.files.get(name) != self.at_first.get(name)
            if changed and name not in begun:
                return "the file %s changed" % name
        return ""

    def unlike_expected(
        self, calm: Outcome, fault: Fault, call: Call, outcome: Outcome
    ) -> str:
        if fault.what.startswith("signal"):
            return "" if calm.screen.startswith(outcome.screen) else "the screen differs"
        if fault.what == "end" and fault.file == "standard-input":
            # A last line without its end is a line; what it means is the dialogue's.
            if fault.number in self.second_pieces:
                return ""
        if is_lost_message(fault):
            same = outcome.status == calm.status and outcome.screen == calm.screen
            return "" if same else "ended with %s" % (end_of(outcome),)
        if fault.name == "system":
            return self.unlike_unlisted(calm, fault, outcome)
        reports = self.reports(fault)
        if "" in reports or is_at_the_end(fault, call):
            differences = outcome.differs_from(calm)
            if not differences:
                return ""
            reports = [report for report in reports if report]
            if not reports:
                return differences
        claims = outcome.screen.count(NORMAL)
        for grid, names in list(zip(self.grids, self.outputs))[:claims]:
            if fault.file in [grid, *names]:
                return "claims success of a search after a fault in it"
        return self.unlike_reported(calm, reports, outcome)

    def unlike_reported(self, calm: Outcome, reports: List[str], outcome: Outcome) -> str:
        said = outcome.errors.decode()
        early_end = b"\n End Of File Reached Prematurely :"
        if outcome.status == 0 and early_end.decode() in reports:
            if early_end in outcome.screen and not said:
                return ""
        if said not in reports or outcome.status != 255:
            return "no report, or another one: %s" % (end_of(outcome),)
        # Nothing more was said after what failed.
        return "" if calm.screen.startswith(outcome.screen) else "the screen differs"

    def unlike_unlisted(self, calm: Outcome, fault: Fault, outcome: Outcome) -> str:
        """Without the mark that one command leaves, all must be as before."""
        mark = list(MARK.finditer(calm.screen))[fault.number - 1]
        unlisted = calm.screen[: mark.start()] + calm.screen[mark.end() :]
        rest = Outcome(calm.status, unlisted, calm.errors, calm.files)
        return outcome.differs_from(rest)

    def reports(self, fault: Fault) -> List[str]:
        """The reports on standard error that are right; "" where nothing may differ."""
        if fault.name == "fstatat" and fault.file not in self.files and not self.outputs:
            # Whether the data file is there could not be seen, and it is not.
            return ["", report("Cannot open file: " + fault.file, "OPEN", 13)]
        ending = os.path.splitext(fault.file)[1]
        if fault.name == "fstat" and ending in self.CHANNELS:
            # What a file is must be known before it is emptied.
            return [report("Cannot open file: " + fault.file, "OPEN", self.CHANNELS[ending])]
        if is_taken_up(fault) or fault.name in OF_NO_CONSEQUENCE | {"fcntl"}:
            return [""]
        if fault.name in MEMORY:
            return ["", report("Not enough memory", "READ", 13)]
        if fault.name == "flock" and fault.error() != errno.EWOULDBLOCK:
            return [""]  # a file system without locks
        if fault.file == "standard-input":
            past_end = report("Attempt to read past end of file", "READ", 5)
            if fault.what == "end":
                return [past_end]
            return [cannot("read", "standard input", fault, "READ", 5)]
        if fault.file == "standard-output":
            return [cannot("write", "standard output", fault, "WRITE", 5)]
        if fault.file in self.grids:
            return self.reports_of_grid(fault)
        channel = self.CHANNELS[ending]
        if fault.name in ("open", "openat", "ftruncate"):
            return [report("Cannot open file: " + fault.file, "OPEN", channel)]
        if fault.name == "flock":
            locked = "Cannot open file: %s: another run is writing it" % fault.file
            return [report(locked, "OPEN", channel)]
        return [cannot("write", fault.file, fault, "WRITE", channel)]

    def reports_of_grid(self, fault: Fault) -> List[str]:
        if fault.what == "end" or fault.what.startswith("shrink"):
            if fault.name == "pread" and fault.what == "end":
                return [""]  # read again, line by line
            past_end = report("Attempt to read past end of file", "READ", 13)
            return [past_end, "\n End Of File Reached Prematurely :"]
        if fault.name in ("open", "openat"):
            return [report("Cannot open file: " + fault.file, "OPEN", 13)]
        if fault.name in ("close", "pread"):
            return [""]
        return [cannot("read", fault.file, fault, "READ", 13)]


def report(message: str, operation: str, channel: int) -> str:
    return "Run-time error:\n%s\n? %s(UNIT=%d,...\n" % (message, operation, channel)


def cannot(verb: str, name: str, fault: Fault, operation: str, channel: int) -> str:
    message = "Cannot %s file: %s: %s" % (verb, name, reason(fault))
    return report(message, operation, channel)


# What is said of a file that ends early: wherever it was cut, or became shorter.
SHORTER = r"tersify: cannot read 'NAME': it has become shorter\n"
CONDENSES_NO_PART = (
    SHORTER + r"|tersify: 'NAME': line \d+, field \d+: the line ends before it; a line holds 720"
    r" integers \(the file ends in this line\)\n|tersify: 'NAME': the file is empty\n"
    r"|tersify: the list 'NAME' names no file\n"
    r"|tersify: cannot read 'a.da': No such file or directory\ntersify: not condensed: 'a.da'\n"
)
CHECK_ENDS_EARLY = (
    SHORTER + r"|'NAME': line \d+ \(year 1901, January, row \d+\), column \d+: the file ends in"
    r" this line, after \d+ of 3600 characters\n|'NAME': the file ends after \d+ of 501120 lines;"
    r" the next is line \d+ \(year 1901, January, row \d+\)\n"
)
SERIES_END_EARLY = (
    r"series_to_grid: line \d+: the line end is missing; the series may be cut short\n"
    r"|series_to_grid: line 1: the header is missing; the input is empty\n"
)
NO_LIST_NAMED = (
    "the input ended before a list file was named\n"
    "Try 'tersify --help' for more information.\n"
)


class PartFiles(Scene):
    """A companion program, which writes NAME.part and renames it.

    sources           of each output the file that it is made of
    early_end         what is said of a file that ends before its time, a pattern in which
                      NAME stands for the file
    notes             what may be said before, a pattern
    """

    notes = ""
    ORDER = "flock (write )+fsync "  # what is done to a part before it is renamed

    def __init__(
        self,
        bench: Bench,
        command: Sequence[str],
        files: Dict[str, Content],
        sources: Dict[str, str],
        early_end: str = CONDENSES_NO_PART,
        **more,
    ) -> None:
        super().__init__(bench, command, files, **more)
        self.early_end = early_end
        self.program = os.path.basename(command[0])
        self.condenses = self.program == "tersify" and "--check" not in command
        self.sources = sources

    def wrong_order(self, calm: Outcome) -> str:
        """A part is locked before it is written and until it has its name, and it is on the
        disk by then."""
        for place, call in enumerate(calm.calls):
            if call.name not in NAMING:
                continue
            names = [one.name for one in calm.calls[:place] if one.file == call.file]
            opened = len(names) - names[::-1].index("openat")
            steps = [name for name in names[opened:] if name in STEPS_OF_PART]
            if not re.fullmatch(self.ORDER, "".join(step + " " for step in steps)):
                return "%s is renamed after: %s" % (call.file, " ".join(steps))
        return ""

    def complaint(self, calm: Outcome, fault: Fault, call: Call, outcome: Outcome) -> str:
        if fault.file.endswith(".part") and fault.name in KEEPS_PART:
            outcome.files.pop(fault.file, None)  # what can't be removed stays
        for name in [name for name in self.at_first if name.endswith(".part")]:
            if outcome.files.get(name) == self.at_first[name]:
                outcome.files.pop(name)  # an abandoned one that was not reached
        found = self.broken_rule(calm, fault, outcome)
        if found or fault.what.startswith("signal"):
            return found
        if is_lost_message(fault):
            return "" if outcome.status == calm.status else "status %s" % outcome.status
        expected = self.messages(fault)
        if is_at_the_end(fault, call):
            expected = [None]
        differences = outcome.differs_from(calm)
        if None in expected and (not differences or expected == [None]):
            return differences
        said = outcome.errors.decode() or outcome.screen.decode()
        if outcome.status == 0 or "Success" in said:
            return "ended with %s" % (end_of(outcome),)
        closing = self.closing(fault)
        patterns = ["%s(%s)%s" % (self.notes, text, closing) for text in expected if text]
        if any(re.fullmatch(pattern, said) for pattern in patterns):
            return ""
        return "said %r" % said

    def closing(self, fault: Fault) -> str:
        """The last line of a run of Tersify that has failed in one of its files."""
        if fault.name in MEMORY:
            return r"(tersify: not condensed: '[ab]\.dat'\n)?"
        name = re.sub(r"(\.new)?(\.part)?$", "", fault.file)
        if self.condenses and name in self.files and name != "list":
            return "tersify: not condensed: '%s'\n" % re.escape(name)
        return ""

    def broken_rule(self, calm: Outcome, fault: Fault, outcome: Outcome) -> str:
        """What must never be, whatever failed."""
        statuses = [0, 1, 2]
        if fault.what.startswith("signal"):
            # As ever when it came too late to change anything.
            statuses = [calm.status, 128 + signal.SIGINT, -signal.SIGINT]
        if outcome.status not in statuses:
            return "ended with %s" % (end_of(outcome),)
        complete = True
        for name in sorted(set(self.at_first) | set(outcome.files)):
            content = outcome.files.get(name)
            if name.endswith(".part") and content is None:
                continue
            if name in self.sources and content == calm.files[name]:
                continue
            complete = complete and name not in self.sources
            said = outcome.screen + outcome.errors
            if name in self.sources and b"wrote '%s':" % name.encode() in said:
                return "claims to have written " + name
            if content != self.at_first.get(name):
                return "the file %s changed: %s" % (name, end_of(outcome))
        for name in self.sources:
            complete = complete and name in outcome.files
        if outcome.status == 0 and not complete and calm.status == 0:
            return "ended with %s" % (end_of(outcome),)
        return ""

    def messages(self, fault: Fault) -> List[Optional[str]]:
        """What may be said on standard error, as patterns; None where nothing differs."""
        program = self.program + ": "
        if is_taken_up(fault):
            return [None]
        if fault.name == "fcntl" or fault.file == "terminal":
            # Which is looked at again where a program reads it.
            if fault.error() is None:
                return [None, program + NO_LIST_NAMED]
            return [None, program + "cannot read the standard input: %s\n" % reason(fault)]
        if fault.file in (".", FOLDER):
            return [None]  # the file is complete whether its folder is on the disk or not
        if fault.name in MEMORY:
            # The C library makes an errno of it.
            lacks = "(not enough memory|Cannot allocate memory)"
            refused = r"(tersify: 'a\.dat': line 101, field 3: 'three' is not an integer\n)?"
            where = r"('\S+': |cannot (read|write) '\S+': )?"
            return [None, refused + program + where + lacks + "\n"]
        if fault.file == "standard-output":
            return [program + "cannot write the standard output\n"]
        if fault.name == "close":
            return [None]
        if fault.file.endswith(".part"):
            return self.messages_of_part(program, fault)
        return self.messages_of_source(program, fault)

    def messages_of_part(self, program: str, fault: Fault) -> List[Optional[str]]:
        part = re.escape(fault.file)
        output = re.escape(fault.file[: -len(".part")])
        if fault.name == "flock":
            busy = "cannot write '%s': another run is writing it\n" % output
            return [program + busy if fault.error() == errno.EWOULDBLOCK else None]
        if fault.name == "fsync" and fault.error() == errno.EINVAL:
            return [None]  # some file systems have nothing to wait for
        if fault.name == "rename":
            return [program + "cannot write '%s': %s\n" % (output, reason(fault))]
        message = program + "cannot write '%s': %s\n" % (part, reason(fault))
        if fault.name in ("fstat", "fstatat"):
            # Whether the name still stands for the part could not be seen.
            gone = "cannot write '%s': '%s' was removed or replaced meanwhile\n"
            return [None, program + gone % (output, part)]
        if fault.file in self.at_first and fault.name in ("openat", "unlink"):
            return [None, message]  # one that an earlier run left
        return [None] if fault.name in OF_NO_CONSEQUENCE else [message]

    def messages_of_source(self, program: str, fault: Fault) -> List[Optional[str]]:
        if fault.name in OF_NO_CONSEQUENCE:
            # Only a file whose kind and size are not known is not read at all.
            opened = fault.name == "fstat" and fault.number == 1
            if not (opened and fault.file in self.files):
                return [None]
        if fault.error() is None:
            return [self.early_end.replace("NAME", re.escape(fault.file))]
        name = re.escape(fault.file)
        return [program + "cannot read '%s': %s\n" % (name, reason(fault))]


def veldmark_session(bench: Bench, programs: Path) -> Session:
    """Two searches: one read by computation, thousand cells; one read line by line,
    thinned and tested for variance.  Both replace earlier files."""
    tmp = "cru_ts4.01.1901.2016.tmp.dat.new"
    frs = "cru_ts4.01.1901.2016.frs.dat.new"
    answers = search(2, (200, 223), (300, 359), "1902", "1902", "T", "1", "y", "F")
    answers += ["T", "T"]
    answers += search(9, (250, 253), (10, 15), "1901", "1903", "T", "2", "n", "2", "y")
    answers += ["T", "1902", "F"]
    files: Dict[str, Content] = {
        tmp: regular_grid(bench.folder / tmp, 2),
        frs: loose_grid(3, 250, 253),
        tmp + ".XY": b"an earlier, large file\n" * (MEGABYTE // 20),
        frs + ".TSF": b"another large one\n" * (MEGABYTE // 16),
        frs + ".ftst": b"an earlier, small file\n",
        tmp + ".ftst": b"of another day\n",
        "cru_ts4.01.1901.2016.pre.dat.new.TSF": b"of another variable\n",
        NOTES: b"not ours\n",
    }
    passes = [(tmp, (".TSF", ".XY")), (frs, (".TSF", ".XY", ".ftst"))]
    return Session(bench, str(programs / "veldmark"), files, answers, passes)


def raw_text(lines: int, seed: int) -> bytes:
    """Lines as published: blanks between the numbers."""
    rng = random.Random(seed)
    rows = [" ".join("%6d" % rng.randint(-999, 3100) for _ in range(COLUMNS)) for _ in range(20)]
    return "".join(rng.choice(rows) + "\n" for _ in range(lines)).encode()


def tersify_files(bench: Bench) -> Dict[str, Content]:
    return {
        "a.dat": raw_text(120, 1),
        "b.dat": raw_text(80, 2),
        "a.dat.new": b"an earlier copy\n",
        "b.dat.new.part": b"left by a run that was killed\n",
        "list": b"a.dat\nb.dat\n",
        NOTES: b"not ours\n",
    }


def tersify_list(bench: Bench, programs: Path) -> PartFiles:
    sources = {"a.dat.new": "a.dat", "b.dat.new": "b.dat"}
    return PartFiles(
        bench,
        [str(programs / "tersify")],
        tersify_files(bench),
        sources,
        answers=["list"],
    )


def tersify_check(bench: Bench, programs: Path) -> PartFiles:
    rng = random.Random(3)
    lines = [grid_line(rng, -999) + b"\n" for _ in range(200)]
    files: Dict[str, Content] = {"a.dat.new": b"".join(lines), NOTES: b"not ours\n"}
    command = [str(programs / "tersify"), "--check", "a.dat.new"]
    return PartFiles(bench, command, files, {}, early_end=CHECK_ENDS_EARLY)


def series_text() -> bytes:
    header = "lon,lat," + ",".join("1901-%02d" % month for month in range(1, 13))
    cells = ("%.2f,40.25," % (column * 0.5 + 0.25) for column in range(300))
    values = ",".join(str(value) for value in range(-5, 7))
    return "".join(line + "\n" for line in [header, *(cell + values for cell in cells)]).encode()


def series_to_grid(bench: Bench, programs: Path) -> PartFiles:
    command = [str(programs / "series_to_grid"), "--years", "1901-1901", "grid", "series"]
    files = {"series": series_text(), "grid": b"an earlier grid\n", NOTES: b"not ours\n"}
    return PartFiles(
        bench,
        command,
        files,
        {"grid": "series"},
        early_end=SERIES_END_EARLY,
    )


def small_session(bench: Bench, programs: Path) -> Session:
    """The same two ways of reading, four cells each."""
    tmp = "cru_ts4.01.1901.2016.tmp.dat.new"
    frs = "cru_ts4.01.1901.2016.frs.dat.new"
    answers = search(2, (200, 201), (300, 301), "1901", "1901", "T", "1", "y", "F", "T", "T")
    answers += search(9, (250, 251), (10, 11), "1901", "1902", "T", "1", "y", "T", "1902", "F")
    files: Dict[str, Content] = {
        tmp: regular_grid(bench.folder / tmp, 1),
        frs: loose_grid(2, 250, 251),
        frs + ".XY": b"an earlier one\n",
        NOTES: b"not ours\n",
    }
    passes = [(tmp, (".TSF", ".XY")), (frs, (".TSF", ".XY", ".ftst"))]
    return Session(bench, str(programs / "veldmark"), files, answers, passes)


def mistyped_session(bench: Bench, programs: Path) -> Session:
    """A data file that is not there, and then an answer that ends the run."""
    return Session(bench, str(programs / "veldmark"), {}, ["", "", "1", "", "", "3x"], [])


def tersify_refusal(bench: Bench, programs: Path) -> PartFiles:
    """A fault in the file, found after the copy was begun."""
    files: Dict[str, Content] = {
        "a.dat": raw_text(100, 3) + b"1 2 three\n",
        "a.dat.new": b"an earlier copy\n",
        NOTES: b"not ours\n",
    }
    return PartFiles(bench, [str(programs / "tersify"), "a.dat"], files, {})
