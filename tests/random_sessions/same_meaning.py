"""Changes to data files that affect how they are read but not what they mean.

A regular file has lines of one length, which are found by computation; any other file is
read line by line.  Each change makes one from the other, or stays with the one it was.
"""

from __future__ import annotations

import random
import re
from collections.abc import Callable
from pathlib import Path

LINE_LENGTH = 3600
LINES_PER_YEAR = 4320
MOST_YEARS_MADE_REGULAR = 2  # 31 MB


FULL_LINE = re.compile(rb"[^\n]{%d,}?(?<!\r)(?=\r?\n)" % LINE_LENGTH)


def with_a_longer_last_line(data: bytes) -> bytes | None:
    """Adds a blank after the 720 fields of the last full line: no longer regular."""
    end = len(data)
    while end > 0:
        start = data.rfind(b"\n", 0, end - 1) + 1
        line = FULL_LINE.match(data, start)
        if line:
            return data[: line.end()] + b" " + data[line.end() :]
        end = start
    return None


def with_a_longer_first_line(data: bytes) -> bytes | None:
    """Does the same to the first line, so that all later lines move."""
    line = FULL_LINE.match(data)
    return data[: line.end()] + b" " + data[line.end() :] if line else None


def with_carriage_returns(data: bytes) -> bytes:
    """Ends every line with CR LF; a regular file stays regular, with longer lines."""
    return data.replace(b"\r\n", b"\n").replace(b"\n", b"\r\n")


def with_other_line_ends(data: bytes) -> bytes:
    """Replaces LF by CR LF or the reverse, depending on the first line."""
    first_line_end = data.find(b"\n")
    if data[:first_line_end].endswith(b"\r"):
        return data.replace(b"\r\n", b"\n")
    return with_carriage_returns(data)


def with_full_lines(data: bytes) -> bytes | None:
    """Makes every line 3600 characters long, and so the file regular.

    A line too short for its wanted fields can't be read; nor can one that is filled
    with letters.
    """
    lines = data.split(b"\n")
    if lines.pop() or not lines or len(lines) > MOST_YEARS_MADE_REGULAR * LINES_PER_YEAR:
        return None
    full = []
    for line in lines:
        line = line[:-1] if line.endswith(b"\r") else line
        full.append(line[:LINE_LENGTH].ljust(LINE_LENGTH, b"x"))
    return b"\n".join(full) + b"\n"


Change = Callable[[bytes], "bytes | None"]
OF_REGULAR_FILES: dict[str, Change] = {
    "a longer last line": with_a_longer_last_line,
    "a longer first line": with_a_longer_first_line,
    "other line ends": with_other_line_ends,
}
OF_OTHER_FILES: dict[str, Change] = {
    "carriage returns": with_carriage_returns,
    "full lines": with_full_lines,
}


class Changes:
    """Changes the data files of sessions; a file that sessions share only once."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder
        self.shared: dict[tuple[str, str], Path] = {}

    def changed(self, rng: random.Random, files: dict) -> tuple[str, dict | None]:
        """Returns the name of a change and the changed files; None if there are none."""
        data = {
            name: content
            for name, content in files.items()
            if name.endswith(".dat.new") and isinstance(content, (bytes, tuple))
        }
        regular = any(isinstance(content, tuple) for content in data.values())
        large = any(isinstance(c, bytes) and len(c) > 10_000_000 for c in data.values())
        kind = OF_REGULAR_FILES if regular or large else OF_OTHER_FILES
        name = rng.choice(list(kind))
        changed = {file: self.change(name, kind[name], c) for file, c in data.items()}
        if not data or None in changed.values():
            return name, None
        return name, {**files, **changed}

    def change(self, name: str, change: Change, content: bytes | tuple) -> bytes | tuple | None:
        if isinstance(content, bytes):
            return change(content)
        key = content[1], name
        if key not in self.shared:
            made = change(Path(content[1]).read_bytes())
            if made is None:
                return None
            self.shared[key] = self.folder / f"changed.{len(self.shared)}"
            self.shared[key].write_bytes(made)
        return "link", str(self.shared[key])
