"""A plain definition of what a search selects and what a data file contains.

The bounds are found by counting cell centres, the fields by splitting lines.  What a run
inherits from one search to the next is kept here too.
"""

from __future__ import annotations

import bisect
import re
from dataclasses import dataclass

ROWS = 360
COLUMNS = 720
LINES_PER_YEAR = 12 * ROWS
FIRST_YEAR = 1901

LATITUDES = [-89.75 + 0.5 * place for place in range(ROWS)]  # south to north
LONGITUDES = [-179.75 + 0.5 * place for place in range(COLUMNS)]


@dataclass
class Region:
    """A box in degrees, as typed."""

    maxLat: float = 0.0
    minLat: float = 0.0
    maxLon: float = 0.0
    minLon: float = 0.0


def at_or_below(centres: list[float], bound: float) -> int:
    """Returns how many of the ascending centres are not above the bound."""
    return bisect.bisect_right(centres, bound)


def is_among(centres: list[float], bound: float) -> bool:
    return centres[0] <= bound <= centres[-1]


def from_minimum(centres: list[float], bound: float) -> int | None:
    """Returns the first centre above a minimum, at most the last; None outside the centres."""
    if not is_among(centres, bound):
        return None
    return min(at_or_below(centres, bound) + 1, len(centres))


def up_to_maximum(centres: list[float], bound: float) -> int | None:
    """Returns the last centre not above a maximum, except the outermost; None outside them."""
    if not is_among(centres, bound):
        return None
    return min(at_or_below(centres, bound), len(centres) - 1)


def rows_of(region: Region, north_first: bool) -> tuple[int, int]:
    """Returns the first and last row; 0 for a bound that finds none."""
    if not north_first:
        first = from_minimum(LATITUDES, region.minLat) or 0
        last = up_to_maximum(LATITUDES, region.maxLat) or 0
        first = 1 if region.minLat <= LATITUDES[0] else first
        last = ROWS if region.maxLat >= LATITUDES[-1] else last
        return first, last
    above_minimum = ROWS - at_or_below(LATITUDES, region.minLat)
    above_maximum = ROWS - at_or_below(LATITUDES, region.maxLat)
    last = above_minimum + 1 if 1 <= above_minimum < ROWS else 0
    first = above_maximum if 1 <= above_maximum < ROWS else 0
    # Kept on purpose: each pole corrects the other end.
    first = ROWS if region.minLat <= LATITUDES[0] else first
    last = 1 if region.maxLat >= LATITUDES[-1] else last
    return first, last


class Selection:
    """The rows and columns of the searches of one run."""

    def __init__(self) -> None:
        self.first_row = self.last_row = 0
        self.first_column = self.last_column = 0  # stay if a bound finds none
        self.east_first = 0
        self.crosses_date_line = False  # never cleared

    def search(self, region: Region, north_first: bool) -> None:
        self.first_row, self.last_row = rows_of(region, north_first)
        self.crosses_date_line = self.crosses_date_line or region.minLon > region.maxLon
        last = up_to_maximum(LONGITUDES, region.maxLon)
        self.last_column = self.last_column if last is None else last
        first = from_minimum(LONGITUDES, region.minLon)
        if self.crosses_date_line:
            self.first_column = 1
            self.east_first = first or 0
            return
        self.first_column = self.first_column if first is None else first
        if region.minLon <= LONGITUDES[0]:
            self.first_column = 1
        if region.maxLon >= LONGITUDES[-1]:
            self.last_column = COLUMNS

    def count_of_first_piece(self) -> int:
        return self.last_column - self.first_column + 1

    def count_of_second_piece(self) -> int:
        return COLUMNS - self.east_first + 1 if self.crosses_date_line else 0

    def cell_count(self) -> int:
        rows = self.last_row - self.first_row + 1
        return rows * (self.count_of_first_piece() + self.count_of_second_piece())

    def lattice(self, factor: int) -> list[tuple[int, int]]:
        """Returns (row, column) of the cells after thinning, in the order of saving."""
        rows = range(self.first_row, self.last_row + 1, factor)
        columns = list(range(self.first_column, self.last_column + 1, factor))
        if self.crosses_date_line:
            columns += range(self.east_first, COLUMNS + 1, factor)
        return [(row, column) for row in rows if row > 0 for column in columns if column > 0]

    def field_of(self, column: int) -> int:
        """Returns the field of a line that a column is read from; 721 and more read as 0.

        Pieces that meet or overlap are read back to back, which shifts the second.
        """
        first, second = self.count_of_first_piece(), self.count_of_second_piece()
        if self.crosses_date_line and column >= self.east_first and first + second >= COLUMNS:
            return first + 1 + column - self.east_first
        return column


def integer(text: str) -> int | None:
    """Returns an integer: a sign and digits, blanks and tabs anywhere; 0 for a blank text."""
    kept = text.replace(" ", "").replace("\t", "")
    if not kept:
        return 0
    return int(kept) if re.fullmatch("[+-]?[0-9]+", kept) else None


class DataFile:
    """A grid file, split into lines."""

    def __init__(self, data: bytes) -> None:
        self.lines = data.split(b"\n")

    def value(self, year: int, month: int, row: int, field: int) -> int | None:
        """Returns a value as a signed 16-bit integer; None if the field is not an integer."""
        if field > COLUMNS:
            return 0
        index = (year - FIRST_YEAR) * LINES_PER_YEAR + (month - 1) * ROWS + row - 1
        if index >= len(self.lines):
            return None
        five = self.lines[index][5 * field - 5 : 5 * field].decode("latin-1")
        value = integer(five) if len(five) == 5 else None
        return None if value is None else (value + 0x8000) % 0x10000 - 0x8000
