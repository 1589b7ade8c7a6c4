"""What the rules of all scenes are made of.

A scene gives `complaint`: what is wrong with the outcome of a run with a fault, "" for
nothing.  Two kinds of rules are behind it.  Some hold whatever the fault: no signal, no
hang, no claim that isn't true, no other file changed.  The others say for every call what
a user has to be told, word for word.
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
