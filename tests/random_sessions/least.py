"""The minimum that random sessions must reach.

A maker whose every session ends at the menu finds no difference, either.  From 50 sessions
on, a campaign fails when it has not come as often as it should to what it is for.
"""

from __future__ import annotations

from collections import Counter
from typing import Iterator

FEW = 50  # sessions; a failed one that is repeated need not reach anything

# Ends of a run that are not failures, with the last bytes of the screen.
QUIET_ENDS = {
    "at the menu": b"\nProgram Terminating\n",
    "after a search": b" Perform another search?\n [t]rue [f]alse ==> ",
    "after a refused coordinate": b" enter values as real numbers\n",
    "without a data file": b" Program Terminating \n\n",
}


def head_of(content: bytes | str | tuple) -> bytes:
    """Returns the first bytes of a data file, which may be a link."""
    if isinstance(content, tuple):
        with open(content[1], "rb") as source:
            return source.read(8000)
    return content[:8000] if isinstance(content, bytes) else b""


def data_kinds(files: dict) -> set[str]:
    """Returns the kinds of data files in a session."""
    kinds = set()
    for name, content in files.items():
        if not name.endswith(".dat.new"):
            continue
        head = head_of(content)
        if b"\r\n" in head:
            kinds.add("data with CR LF")
        line = head[: head.find(b"\n") + 1]
        if len(line.rstrip(b"\r\n")) == 3600:
            kinds.add("data that may be regular")
            if line.endswith(b"\r\n"):
                kinds.add("data with CR LF that may be regular")
    return kinds


LATE_YEARS = rb"  Saving Cell data : (19[89]\d|20\d\d) - "


def end_of(status: int, screen: bytes, errors: bytes) -> str:
    """Returns how a run ended."""
    if status == 255:
        lines = errors.decode("latin-1").split("\n")
        return "report: " + ": ".join(lines[1].split(": ")[:1]) + " " + lines[2]
    for name, end in QUIET_ENDS.items():
        if screen.endswith(end):
            return "quiet end " + name
    return "another end"


def shortfalls(reached: Counter[str], sessions: int, least: dict[str, float]) -> Iterator[str]:
    """Returns what was not reached often enough.

    least   of each name how often in a hundred sessions; "kinds of end" are counted as
            such, whatever the number of sessions
    """
    if sessions < FEW:
        return
    ends = sum(1 for name in reached if name.startswith(("report: ", "quiet end ")))
    for name, share in least.items():
        count, wanted = reached[name], share * sessions / 100
        if name == "kinds of end":
            count, wanted = ends, share
        if count < wanted:
            yield f"only {count} of: {name}; at least {wanted:.0f} expected"
