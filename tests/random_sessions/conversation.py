"""Reads a screen together with the typed answers, to find out what a run should do.

Every prompt takes one line of the answers, except free-form integers, which skip
lines without a value.  So the answers can be told apart without knowing the program.
"""

from __future__ import annotations

import copy
import re
import struct
from dataclasses import dataclass, field

from grid_rules import Region, Selection, integer

DROUGHT_INDEX = 11
FROST_DAYS = 9

TOKENS = {
    "menu": r"Enter a value from 0 to 11 ==> ",
    "missing": r" Does not exist\. \n|\*\* NOT FOUND \*\* \n",
    "pause": r"(?: Hit RETURN to continue| Hit RETURN to CONTINUE| HIT RETURN to continue)\n",
    "bad_argument": r"bad argument x in betai(?=\n)",
    "coordinate": r"Enter (?P<end>Max|Min) (?P<axis>Lat|Lon)[a-z]+ +\[[A-Z]+\] *==> ",
    "confirm": r" Is this ok\? \[T\]rue or \[F\]alse ==> ",
    "year": r"(?P<which>[FL])YOD ==> ",
    "theory": r" There are theoretically (?P<theoretical>.{6}) grid cells within your\n",
    "factor": r" Enter a value greater than 1 to save less ==> ",
    "factor_ok": r" IS this ok\? \[y\]es or \[n\]o ==> ",
    "test": r" Perform Ftest of Vairance\? \[T\]rue or \[F\]alse ==> ",
    "cutoff": r" between \d{4}-\d{4} ==> ",
    "report": r" Ftest Comparison of Variance: (?P<periods>.*)\n",
    "saving": r"  Saving Cell data : (?P<saved_years>\d{4} - \d{4})\n",
    "cell": r"\n(?P<cell_line>  [ 0-9]{5}[0-9]  .{8}  .{8}   .{13}   .{27})(?=\n)",
    "nan": r"    \*\*\* Ftest Nan computed \*\*\*(?=\n)",
    "summary": r"\n\n\n PROGRAM TERMINATING NORMALLY\n (?P<defined>.{10}) Grids Defined\n"
    r" (?P<saved>.{10}) Grids Selected and Saved\n Output is in file (?P<output>.{65})\n",
    "again": r" Perform another search\?\n \[t\]rue \[f\]alse ==> ",
    "change": r" Change search parameters\?\n \[t\]rue \[f\]alse ==> ",
}
TOKEN = re.compile("|".join("(?P<%s>%s)" % item for item in TOKENS.items()))


@dataclass
class Search:
    """One search, from the menu's answer on; what it did not reach is None or empty."""

    variable: int
    entry: int | None  # the variable that names the output files; an answer out of range keeps it
    scaled: bool  # whether frost days were chosen now or before
    region: Region = field(default_factory=Region)
    years: tuple[int, int] = (0, 0)
    selection: Selection = field(default_factory=Selection)
    theoretical: str | None = None
    factor: int | None = None
    cutoff: int | None = None
    periods: str | None = None
    saved_years: str | None = None
    cell_lines: list[str] = field(default_factory=list)
    nan_notices: int = 0
    summary: tuple[str, str, str] | None = None  # defined, saved, file name


def first_value(line: str) -> str:
    found = re.match(r"[ \t]*([^ \t,/]*)", line)
    return found.group(1) if found else ""


def single_precision(text: str) -> float | None:
    """Returns the 32-bit real in the eight characters of a coordinate; None if there is none."""
    try:
        value = float(first_value(text[:8]).lower().replace("d", "e"))
        return struct.unpack("f", struct.pack("f", value))[0]
    except ValueError:
        return None
    except OverflowError:
        return float("-inf") if value < 0 else float("inf")


class Conversation:
    """The searches of a run, according to its screen and answers."""

    def __init__(self, screen: bytes, answers: bytes) -> None:
        lines = answers.decode("latin-1").split("\n")
        if not lines[-1]:
            lines.pop()
        self.lines = [line[:-1] if line.endswith("\r") else line for line in lines]
        self.searches: list[Search] = []
        self.selections = Selection()
        self.scaled = False
        self.entry: int | None = None
        self.citing = False
        self.region = Region()
        self.years = {"F": 0, "L": 0}
        for token in TOKEN.finditer(screen.decode("latin-1")):
            getattr(self, "on_" + (token.lastgroup or ""), self.on_other)(token)

    def answer(self) -> str:
        """Returns the next typed line; "" after the last one, when the run ends anyway."""
        return self.lines.pop(0) if self.lines else ""

    def free_integer(self) -> int | None:
        while self.lines:
            value = first_value(self.lines.pop(0))
            if value:
                return integer(value)
        return None

    def on_other(self, token: re.Match[str]) -> None:
        """Skips a prompt whose answer is not needed."""
        if token.lastgroup != "missing":
            self.answer()

    def on_menu(self, token: re.Match[str]) -> None:
        choice = integer(self.answer()[:2])
        if choice is None or choice == 0:
            return
        self.scaled = self.scaled or choice == FROST_DAYS
        if 1 <= choice <= DROUGHT_INDEX:
            self.entry = choice
        self.citing = choice <= DROUGHT_INDEX  # then a pause
        self.searches.append(Search(choice, self.entry, self.scaled))

    def on_pause(self, token: re.Match[str]) -> None:
        if self.citing and not self.lines:
            self.searches.pop()  # the input ends here, before any file was opened
        self.citing = False
        self.answer()

    def on_missing(self, token: re.Match[str]) -> None:
        self.searches.pop()  # back to the menu; nothing was opened

    def on_coordinate(self, token: re.Match[str]) -> None:
        value = single_precision(self.answer())
        if value is not None:
            setattr(self.region, token["end"].lower() + token["axis"], value)

    def on_year(self, token: re.Match[str]) -> None:
        self.years[token["which"]] = integer(self.answer()[:4]) or 0

    def on_theory(self, token: re.Match[str]) -> None:
        now = self.searches[-1]
        # Region and years are the last ones typed, in this search or an earlier one.
        now.region = Region(**vars(self.region))
        now.years = self.years["F"], self.years["L"]
        self.selections.search(now.region, now.variable == DROUGHT_INDEX)
        now.selection = copy.copy(self.selections)
        now.theoretical = token["theoretical"]

    def on_factor(self, token: re.Match[str]) -> None:
        self.searches[-1].factor = self.free_integer()

    def on_cutoff(self, token: re.Match[str]) -> None:
        self.searches[-1].cutoff = self.free_integer()

    def on_report(self, token: re.Match[str]) -> None:
        self.searches[-1].periods = token["periods"]

    def on_saving(self, token: re.Match[str]) -> None:
        self.searches[-1].saved_years = token["saved_years"]

    def on_cell(self, token: re.Match[str]) -> None:
        self.searches[-1].cell_lines.append(token["cell_line"])

    def on_nan(self, token: re.Match[str]) -> None:
        self.searches[-1].nan_notices += 1

    def on_summary(self, token: re.Match[str]) -> None:
        self.searches[-1].summary = token["defined"], token["saved"], token["output"]
