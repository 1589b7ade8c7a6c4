"""The edits of a break, and whether they still fit the tree."""

from __future__ import annotations

import dataclasses
from pathlib import Path


class Stale(Exception):
    """The tree has changed since the break was written."""


@dataclasses.dataclass(frozen=True)
class Change:
    """Replaces `old`, which must occur exactly once, by `new`."""

    file: str
    old: str
    new: str

    def apply(self, tree: Path) -> None:
        path = tree / self.file
        if not path.is_file():
            raise Stale(f"there is no {self.file}")
        text = path.read_text(encoding="utf-8")
        count = text.count(self.old)
        if count != 1:
            raise Stale(f"{self.file} holds {count} times: {self.old!r}")
        if self.old == self.new:
            raise Stale(f"{self.file}: nothing would change")
        path.write_text(text.replace(self.old, self.new), encoding="utf-8")


@dataclasses.dataclass(frozen=True)
class Append:
    """Adds `text` at the end of a file."""

    file: str
    text: str

    def apply(self, tree: Path) -> None:
        path = tree / self.file
        if not path.is_file():
            raise Stale(f"there is no {self.file}")
        path.write_text(path.read_text(encoding="utf-8") + self.text, encoding="utf-8")


@dataclasses.dataclass(frozen=True)
class Add:
    """Creates a file: `text`, or a copy of another file."""

    file: str
    text: str = ""
    copy_of: str = ""

    def apply(self, tree: Path) -> None:
        path = tree / self.file
        if path.exists():
            raise Stale(f"there is a {self.file} already")
        path.parent.mkdir(parents=True, exist_ok=True)
        text = (tree / self.copy_of).read_text(encoding="utf-8") if self.copy_of else self.text
        path.write_text(text, encoding="utf-8")


def matches(tree: Path, pattern: str) -> list[Path]:
    found = sorted(path for path in tree.glob(pattern) if path.is_file())
    if not found:
        raise Stale(f"there is no {pattern}")
    return found


@dataclasses.dataclass(frozen=True)
class Remove:
    """Removes the files of a pattern, except `but`."""

    pattern: str
    but: str = ""

    def apply(self, tree: Path) -> None:
        for path in matches(tree, self.pattern):
            if path.name != self.but:
                path.unlink()


@dataclasses.dataclass(frozen=True)
class Empty:
    """Empties the files of a pattern."""

    pattern: str

    def apply(self, tree: Path) -> None:
        for path in matches(tree, self.pattern):
            path.write_bytes(b"")


@dataclasses.dataclass(frozen=True)
class Swap:
    """Exchanges the contents of two files."""

    first: str
    second: str

    def apply(self, tree: Path) -> None:
        (first,), (second,) = matches(tree, self.first), matches(tree, self.second)
        contents = first.read_bytes(), second.read_bytes()
        first.write_bytes(contents[1])
        second.write_bytes(contents[0])


Edit = Change | Append | Add | Remove | Empty | Swap
