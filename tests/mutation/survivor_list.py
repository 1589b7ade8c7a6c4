"""The list of the mutants that no test can notice.

    ## Why, in a sentence or more; the paragraph belongs to all names below it.

    src/util/part_file.cc:12:30 constant `8` -> `9`
        | constexpr int kTries = 8;

An entry matches a mutant by file, column, change and source line; the line's number only
helps the reader, and may have moved.
"""

import re
from typing import List, NamedTuple, Optional

from places import TOPS, Mutant


class Survivor(NamedTuple):
    """One entry of the list."""

    name: str
    line_text: str
    reason: str


def read_survivors(path: str) -> List[Survivor]:
    """Reads the list. Raises ValueError for an invalid line."""
    with open(path) as file:
        return parse_survivors(file.read())


def parse_survivors(text: str) -> List[Survivor]:
    """Returns the entries of the list's text."""
    survivors: List[Survivor] = []
    reason = ""
    name = ""
    in_reason = False
    for line in text.split("\n"):
        if line.startswith("## "):
            reason = (reason + " " if in_reason else "") + line[3:]
            in_reason = True
            continue
        in_reason = False
        if line.startswith(tuple(top + "/" for top in TOPS)):
            name = line
        elif line.startswith("    | "):
            if not name or not reason:
                raise ValueError("no name or no reason: %s" % line)
            survivors.append(Survivor(name, line[6:], reason))
            name = ""
        elif line and not line.startswith("# "):
            raise ValueError("invalid line: %s" % line)
    return survivors


def matching(survivors: List[Survivor], mutant: Mutant) -> Optional[Survivor]:
    """Returns the entry of a mutant, if it is listed."""
    known = _without_line(mutant.name)
    for survivor in survivors:
        if survivor.line_text == mutant.line_text and _without_line(survivor.name) == known:
            return survivor
    return None


def _without_line(name: str) -> str:
    return re.sub(r"^([^:]+):\d+:", r"\1:", name)
