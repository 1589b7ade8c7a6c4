"""What must follow a fault in a session with veldmark."""

import errno
import os
import re
import signal
from typing import Dict, List, Sequence, Set, Tuple

from fault_runs import END_OF_INPUT, Bench, Call, Content, Fault, Outcome, Scene, end_of
from scene_rules import (
    MEMORY_CALLS,
    NORMAL,
    HARMLESS_CALLS,
    is_at_the_end,
    is_failed_message,
    is_retried,
    reason,
)


def latitude(row: int) -> float:
    """Returns the southern edge of a row."""
    return -90 + (row - 1) * 0.5


def in_two(answer: str) -> str:
    """Returns an answer that arrives in two reads."""
    return answer[:1] + END_OF_INPUT.decode() + answer[1:]


def second_pieces(answers: Sequence[str]) -> Set[int]:
    """Returns which reads get the rest of an answer, counted from 1."""
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
    """Returns the answers of a search from the menu to the variance test."""
    box = [latitude(rows[1] + 1), latitude(rows[0])]
    box += [(column - 1) * 0.5 - 180 for column in (columns[1] + 1, columns[0])]
    corners = ["%.1f" % corner for corner in box]
    return ["", "", str(variable), "", "", *corners, "T", *map(in_two, rest)]


MARK = re.compile(rb"^\$ .*\n", re.MULTILINE)  # of a shell command
SAVING = rb"\n  Saving Cell data : "  # the heading of a search's table
CELL_LINE = re.compile(rb"^ {2} *\d+ +-?\d+\.\d{3} +-?\d+\.\d{3} .*\n", re.MULTILINE)


def shown_before(baseline: Outcome, call: Call, searches: Sequence[Sequence[str]]) -> bytes:
    """Returns what the screen must show at least when a call fails: a cell appears in the
    table before its series is written, and no output to the screen may be lost."""
    if call not in baseline.calls or not call.file.endswith(".TSF"):
        return b""
    size = call.size if call.name == "write" else 0
    for earlier in baseline.calls[: baseline.calls.index(call)]:
        if earlier.name == "write" and earlier.file == call.file:
            size += earlier.result
    _, _, content = baseline.files[call.file].partition(b" ")
    cells = content[:size].count(b"RFMT=")
    number = next(i for i, names in enumerate(searches) if call.file in names)
    tables = [found.end() for found in re.finditer(SAVING, baseline.screen)]
    lines = list(CELL_LINE.finditer(baseline.screen, tables[number]))
    return baseline.screen[: lines[cells - 1].end()] if cells else b""


class Session(Scene):
    """A session with veldmark.

    searches    the grid file of each search, and the endings of its outputs
    """

    CHANNELS = {".TSF": 14, ".XY": 15, ".ftst": 16}

    def __init__(
        self,
        bench: Bench,
        program: str,
        files: Dict[str, Content],
        answers: Sequence[str],
        searches: Sequence[Tuple[str, Sequence[str]]],
    ) -> None:
        streams = ["standard-input", "standard-output", "standard-error"]
        super().__init__(bench, [program], files, answers, waits_for=streams)
        self.second_pieces = second_pieces(answers)
        self.grids = [grid for grid, _ in searches]
        self.outputs = [[grid + ending for ending in endings] for grid, endings in searches]

    def complaint(self, baseline: Outcome, fault: Fault, call: Call, outcome: Outcome) -> str:
        said = shown_before(baseline, call, self.outputs)
        if not fault.what.startswith("signal") and not outcome.screen.startswith(said):
            return "what was said before is lost: %r" % outcome.screen[-200:]
        found = self.broken_rule(baseline, fault, outcome)
        return found or self.difference_from_expected(baseline, fault, call, outcome)

    def broken_rule(self, baseline: Outcome, fault: Fault, outcome: Outcome) -> str:
        """Returns which rule is broken that holds for every fault, "" if none is."""
        allowed = (0, 255) if not fault.what.startswith("signal") else (-signal.SIGINT,)
        if outcome.status not in allowed:
            return "ended with %s" % (end_of(outcome),)
        claims = outcome.screen.count(NORMAL)
        if claims > len(self.outputs):
            return "claims too much"
        for names in self.outputs[:claims]:
            for name in names:
                if outcome.files.get(name) != baseline.files[name]:
                    return "%s is claimed, but not what it should be" % name
        begun = sum(self.outputs[: claims + 1], [])
        for name in sorted(set(self.at_first) | set(outcome.files)):
            changed = outcome.files.get(name) != self.at_first.get(name)
            if changed and name not in begun:
                return "the file %s changed" % name
        return ""

    def difference_from_expected(
        self, baseline: Outcome, fault: Fault, call: Call, outcome: Outcome
    ) -> str:
        if fault.what.startswith("signal"):
            return "" if baseline.screen.startswith(outcome.screen) else "the screen differs"
        if fault.what == "end" and fault.file == "standard-input":
            # A last line without its end counts as a line; the dialogue decides about it.
            if fault.number in self.second_pieces:
                return ""
        if is_failed_message(fault):
            same = outcome.status == baseline.status and outcome.screen == baseline.screen
            return "" if same else "ended with %s" % (end_of(outcome),)
        if fault.name == "system":
            return self.difference_without_command(baseline, fault, outcome)
        reports = self.reports(fault)
        if "" in reports or is_at_the_end(fault, call):
            differences = outcome.differs_from(baseline)
            if not differences:
                return ""
            reports = [report for report in reports if report]
            if not reports:
                return differences
        claims = outcome.screen.count(NORMAL)
        for grid, names in list(zip(self.grids, self.outputs))[:claims]:
            if fault.file in [grid, *names]:
                return "claims success of a search after a fault in it"
        return self.difference_from_report(baseline, reports, outcome)

    def difference_from_report(
        self, baseline: Outcome, reports: List[str], outcome: Outcome
    ) -> str:
        said = outcome.errors.decode()
        early_end = b"\n End Of File Reached Prematurely :"
        if outcome.status == 0 and early_end.decode() in reports:
            if early_end in outcome.screen and not said:
                return ""
        if said not in reports or outcome.status != 255:
            return "no report, or another one: %s" % (end_of(outcome),)
        # Nothing may be shown after the failure.
        return "" if baseline.screen.startswith(outcome.screen) else "the screen differs"

    def difference_without_command(self, baseline: Outcome, fault: Fault, outcome: Outcome) -> str:
        """Without the line that the failed command prints, all must be as before."""
        mark = list(MARK.finditer(baseline.screen))[fault.number - 1]
        unlisted = baseline.screen[: mark.start()] + baseline.screen[mark.end() :]
        rest = Outcome(baseline.status, unlisted, baseline.errors, baseline.files)
        return outcome.differs_from(rest)

    def reports(self, fault: Fault) -> List[str]:
        """Returns the reports allowed on standard error; "" in the list allows a run like the
        one without a fault."""
        if fault.name == "fstatat" and fault.file not in self.files and not self.outputs:
            # The program could not see whether the data file exists; it does not.
            return ["", report("Cannot open file: " + fault.file, "OPEN", 13)]
        ending = os.path.splitext(fault.file)[1]
        if fault.name == "fstat" and ending in self.CHANNELS:
            # The kind of a file must be known before it is truncated.
            return [report("Cannot open file: " + fault.file, "OPEN", self.CHANNELS[ending])]
        if is_retried(fault) or fault.name in HARMLESS_CALLS | {"fcntl"}:
            return [""]
        if fault.name in MEMORY_CALLS:
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
