"""The scenes of veldmark-extract, and what must follow a fault in each."""

import errno
import random
import re
import signal
from pathlib import Path
from typing import Dict, List, Optional, Sequence

from fault_runs import Bench, Call, Content, Fault, Outcome, end_of
from part_file_rules import PartFiles
from scene_rules import (
    COLUMNS,
    REMOVING_CALLS,
    MONTHS,
    NOTES,
    HARMLESS_CALLS,
    ROWS,
    is_retried,
    reason,
)

GRID = "cru_ts4.01.1901.1901.tmp.dat.new"
SITES = "sites.csv"
PROGRAM = "veldmark-extract: "
# Allocations before `main`, by the library that parses the command line; if one fails, the
# program aborts.
REQUESTS_BEFORE_MAIN = 10
SECONDS = re.compile(rb", \d+\.\d\d s\n")


def grid_file(path: Path) -> Path:
    """A year in which the first ten columns have no data, and the others always have."""
    rng = random.Random(4)

    def line() -> bytes:
        land = ("%5d" % rng.randint(-200, 300) for _ in range(COLUMNS - 10))
        return b" -999" * 10 + "".join(land).encode() + b"\n"

    pool = [line() for _ in range(20)]
    path.write_bytes(b"".join(rng.choice(pool) for _ in range(MONTHS * ROWS)))
    return path


class Extraction(PartFiles):
    """Either all outputs are replaced, or none is.

    outputs    the names of the files that are written
    """

    def __init__(
        self,
        bench: Bench,
        programs: Path,
        words: Sequence[str],
        files: Dict[str, Content],
        outputs: Sequence[str],
    ) -> None:
        command = [str(programs / "veldmark-extract"), GRID, *words]
        grid = grid_file(bench.folder / GRID)
        files = {GRID: grid, NOTES: b"not ours\n", **files}
        super().__init__(bench, command, files, {name: GRID for name in outputs})

    # No fsync: closing a duplicate of the descriptor reports lost writes.
    ORDER = "flock (write )+(close )+"
    FOLDER_IS_SYNCED = False

    def run(self, fault: Optional[Fault] = None) -> Outcome:
        outcome = super().run(fault)
        outcome.errors = SECONDS.sub(b", 0.00 s\n", outcome.errors)
        return outcome

    def broken_rule(self, baseline: Outcome, fault: Fault, outcome: Outcome) -> str:
        new = [outcome.files.get(name) == baseline.files.get(name) for name in self.sources]
        if any(new) and not all(new):
            return "one output is replaced, and another isn't: %s" % (end_of(outcome),)
        if not baseline.screen.startswith(outcome.screen):
            return "standard output differs"
        if outcome.status == 0 and outcome.screen != baseline.screen:
            return "claims success of a part of the output"
        if b" saved to " in outcome.errors and not all(new):
            return "claims to have saved: %s" % (end_of(outcome),)
        return super().broken_rule(baseline, fault, outcome)

    def messages(self, fault: Fault) -> List[Optional[str]]:
        if fault.file == "standard-output" and fault.name == "write" and not is_retried(fault):
            return [PROGRAM + "cannot write to standard output: %s\n" % reason(fault)]
        if fault.name == "poll" or fault.file == "online":
            return [None]  # a read that need not wait, or the number of processors
        if fault.name in ("fcntl", "close") and fault.file.endswith(".part"):
            reported = self.messages_of_part(PROGRAM, fault)
            # The first close is that of the duplicate. After the last one the file has its name.
            return reported if fault.number == 1 and not is_retried(fault) else [None, *reported]
        if fault.file == "standard-output" and fault.name in HARMLESS_CALLS:
            return [None]
        return super().messages(fault)

    def complaint(self, baseline: Outcome, fault: Fault, call: Call, outcome: Outcome) -> str:
        early = fault.name == "malloc" and fault.number <= REQUESTS_BEFORE_MAIN
        if early and outcome.status == -signal.SIGABRT and b"bad_alloc" in outcome.errors:
            return "" if outcome.files == self.at_first else "the files changed"
        return super().complaint(baseline, fault, call, outcome)

    def messages_of_part(self, program: str, fault: Fault) -> List[Optional[str]]:
        output = re.escape(fault.file[: -len(".part")])
        if fault.name == "link":
            if fault.error() == errno.EPERM:
                return [None]  # a file system without hard links
            taken = "another file has got this name meanwhile"
            why = taken if fault.error() == errno.EEXIST else reason(fault)
            return [PROGRAM + "cannot write '%s': %s\n" % (output, why)]
        if fault.name == "renameat2":
            return [None]  # a plain rename is used instead
        return super().messages_of_part(program, fault)

    def messages_of_source(self, program: str, fault: Fault) -> List[Optional[str]]:
        if fault.name == "fstat" and fault.file == GRID and fault.number > 1:
            return [None]
        name = re.escape(fault.file)
        if fault.error() is None:
            return [PROGRAM + "cannot read '%s': it became shorter\n" % name]
        if fault.name == "openat" and fault.file == GRID:
            return [PROGRAM + "cannot open '%s': %s\n" % (name, reason(fault))]
        return super().messages_of_source(program, fault)


class TwoFiles(Extraction):
    """The part of each file is opened, locked and closed a second time for writing."""

    def messages_of_part(self, program: str, fault: Fault) -> List[Optional[str]]:
        part = re.escape(fault.file)
        expected = super().messages_of_part(program, fault)
        if fault.name == "fstat":
            expected.append(PROGRAM + "cannot write '%s': %s\n" % (part, reason(fault)))
        if fault.name == "flock" and fault.error() in (errno.EWOULDBLOCK, errno.ENOLCK):
            # If the first lock is not released, the second one fails.
            expected.append(PROGRAM + "cannot write '%s': another run is writing it\n" % part)
        return expected


def is_in_nc_close(baseline: Outcome, fault: Fault) -> bool:
    """Whether it is the last write to the file, or a close; nc_sync does all others."""
    writes = [call.number for call in baseline.calls if call.name == "pwrite"]
    return fault.name == "close" or (fault.name == "pwrite" and fault.number == writes[-1])


def crashed_in_library(outcome: Outcome) -> bool:
    """Whether nc_close crashed, as it does if it can't write or close its file."""
    sanitizer_report = b" in nc_close "
    return outcome.status == -signal.SIGSEGV or sanitizer_report in outcome.errors


class Netcdf(Extraction):
    """The library makes the calls on the part, and others on files of its own. However it
    handles a fault, no message is false and no file is left."""

    def complaint(self, baseline: Outcome, fault: Fault, call: Call, outcome: Outcome) -> str:
        if fault.file in (GRID, "standard-error") or fault.what.startswith("signal"):
            return super().complaint(baseline, fault, call, outcome)
        if is_in_nc_close(baseline, fault) and crashed_in_library(outcome):
            # The part stays, and the next run removes it.
            outcome.files.pop("x.nc.part", None)
            return "" if outcome.files == self.at_first else "the files changed"
        if fault.file.endswith(".part") and fault.name in REMOVING_CALLS:
            outcome.files.pop(fault.file, None)  # a part that can't be removed stays
        found = self.broken_rule(baseline, fault, outcome)
        if found or outcome.status == 0 or outcome.errors:
            return found
        return "no message: %s" % (end_of(outcome),)

    def leaves_out(self, call: Call) -> bool:
        # Dozens of libraries are loaded in the same way; one is enough.
        is_library = ".so." in call.file or call.file.endswith(".so")
        return is_library and not call.file.startswith("libnetcdf.")

    def wrong_order(self, baseline: Outcome) -> str:
        del baseline
        return ""


BOX = ["--lat", "40:60", "--lon", "-170:-140"]
SMALL_BOX = ["--lat", "40:41", "--lon", "-170:-169"]


def csv(bench: Bench, programs: Path) -> Extraction:
    """A box of several hundred kilobytes; an abandoned part exists."""
    files: Dict[str, Content] = {"x.csv.part": b"left by a run that was killed\n"}
    return Extraction(bench, programs, [*BOX, "-o", "x.csv"], files, ["x.csv"])


def standard_output(bench: Bench, programs: Path) -> Extraction:
    return Extraction(bench, programs, BOX, {}, [])


def sites(bench: Bench, programs: Path) -> Extraction:
    """One site is at sea; an earlier file is replaced."""
    table = b"name,lat,lon\n" + b"".join(b"P%d,40.3,%d\n" % (i, i) for i in range(40))
    files: Dict[str, Content] = {
        SITES: table + b"Sea,0.1,-179.9\n",
        "x.csv": b"an earlier table\n",
    }
    words = ["--sites", SITES, "-o", "x.csv", "--overwrite"]
    scene = Extraction(bench, programs, words, files, ["x.csv"])
    scene.notes = r"(veldmark-extract: Sea \(0\.1, -179\.9\) is left out: [^\n]*\n)?"
    return scene


def tsf(bench: Bench, programs: Path) -> Extraction:
    words = [*SMALL_BOX, "--format", "tsf", "-o", "x"]
    return TwoFiles(bench, programs, words, {}, ["x.TSF", "x.XY"])


def tsf_replaced(bench: Bench, programs: Path) -> Extraction:
    files: Dict[str, Content] = {"x.TSF": b"earlier series\n", "x.XY": b"an earlier list\n"}
    words = [*SMALL_BOX, "--format", "tsf", "-o", "x", "--overwrite"]
    return TwoFiles(bench, programs, words, files, ["x.TSF", "x.XY"])


def netcdf(bench: Bench, programs: Path) -> Extraction:
    files: Dict[str, Content] = {"x.nc": b"an earlier file\n"}
    words = [*SMALL_BOX, "-o", "x.nc", "--format", "netcdf", "--overwrite"]
    return Netcdf(bench, programs, words, files, ["x.nc"])


SCENES = {
    "extract-csv": csv,
    "extract-output": standard_output,
    "extract-sites": sites,
    "extract-tsf": tsf,
    "extract-tsf-replaced": tsf_replaced,
    "extract-netcdf": netcdf,
}
