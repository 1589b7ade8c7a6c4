"""What the rules of all scenes share.

A scene's `complaint` says what is wrong with the outcome of a run with a fault, "" if
nothing is.  It applies two kinds of rules.  Some hold for every fault: no signal, no hang,
no false message, no other file changed.  The others give, for every call, the exact
message that the user must see.
"""

import errno
import os
import random
from pathlib import Path

from fault_runs import Call, Fault

COLUMNS = 720
ROWS = 360
MONTHS = 12
MEGABYTE = 1 << 20

NORMAL = b" PROGRAM TERMINATING NORMALLY\n"
NOTES = "notes.txt"
FOLDER = "folder"  # what `Scene.run` calls it

# Calls whose failure has no effect: they only choose the better of two ways.
HARMLESS_CALLS = {"fstat", "fstatat", "stat", "lstat", "statx", "access"}
HARMLESS_CALLS |= {"faccessat", "faccessat2", "unlink", "fchmod", "statfs", "lseek"}
HARMLESS_CALLS |= {"ioctl", "madvise", "munmap", "getrandom"}
PART_CALLS = {"flock", "write", "fsync", "close"}
RENAMING_CALLS = {"rename", "link", "renameat2"}
# If one of these calls fails, a part can't or must not be removed.
REMOVING_CALLS = {"unlink", "fstat", "fstatat", "flock"}
MEMORY_CALLS = {"mmap", "mremap", "brk", "malloc"}


def reason(fault: Fault) -> str:
    return os.strerror(fault.error())


def is_retried(fault: Fault) -> bool:
    """Returns whether the program must retry the call or continue it: it was interrupted,
    would have blocked on a standard stream, or was a short read or write."""
    again = fault.error() == errno.EAGAIN and fault.file.startswith("standard-")
    return again or fault.error() == errno.EINTR or fault.what in ("count=1", "half")


def is_at_the_end(fault: Fault, call: Call) -> bool:
    """Returns whether the fault has no effect because nothing was left to read."""
    return call.result == 0 and (fault.what == "end" or fault.what.startswith("shrink"))


def is_failed_message(fault: Fault) -> bool:
    """Returns whether a message itself can't be written; the status must still report it."""
    said = fault.file == "standard-error" and fault.name in ("write", "writev")
    return said and fault.error() is not None and not is_retried(fault)


def grid_line(rng: random.Random, missing: int) -> bytes:
    fields = (missing if rng.random() < 0.02 else rng.randint(0, 3100) for _ in range(COLUMNS))
    return "".join("%5d" % value for value in fields).encode()


def regular_grid(path: Path, years: int) -> Path:
    """Writes a regular grid file from 1901 on. Returns its path."""
    rng = random.Random(1)
    pool = [grid_line(rng, -999) + b"\n" for _ in range(20)]
    with open(path, "wb") as out:
        for _ in range(years * MONTHS * ROWS):
            out.write(rng.choice(pool))
    return path


def sparse_grid(years: int, first_row: int, last_row: int) -> bytes:
    """Returns a grid file whose lines are empty outside the requested rows."""
    rng = random.Random(2)
    lines = []
    for _ in range(years * MONTHS):
        lines += [
            grid_line(rng, -999) if first_row <= row <= last_row else b""
            for row in range(1, ROWS + 1)
        ]
    return b"\n".join(lines) + b"\n"
