"""The required content of the output files of a run, byte for byte, from their documents.

docs/time-series-file.md, docs/cell-list-file.md and docs/variance-report-file.md tell the
places; the values are taken from the data file, and from nothing the program wrote.
"""

from __future__ import annotations

import re
from collections.abc import Iterator
from fractions import Fraction

from conversation import DROUGHT_INDEX, Search
from grid_rules import LATITUDES, LONGITUDES, DataFile

# Short name in the file's name, data set and title in the output.
VARIABLES = {
    1: ("pre", "CRUts4.01ppt.", "glo.pre. mm"),
    2: ("tmp", "CRUts4.01tmp.", "glo.tmp. degC*10"),
    3: ("dtr", "CRUts4.01dtr.", "glo.dtr. degC*10"),
    4: ("tmn", "CRUts4.01tmn.", "glo.tmn. degC*10"),
    5: ("tmx", "CRUts4.01tmx.", "glo.tmx. degC*10"),
    6: ("vap", "CRUts4.01vap.", "glo.vap.hPa*10"),
    7: ("pet", "CRUts4.01pet.", ""),
    8: ("cld", "CRUts4.01cld.", "glo.cld. %*10"),
    9: ("frs", "CRUts4.01frs.", "glo.frs.days*100"),
    10: ("wet", "CRUts4.01wet.", ""),
    11: ("scPDSI", "scPDSI.dat.", "scPDSI"),
}
TWO_DECIMALS = (9, 11)
REAL = r"(?:-?(?:[0-9]+\.[0-9]+(?:e[-+][0-9]{2})?|Inf)|NaN|\*{15})"
REPORT_LINE = re.compile(
    rf"  (?=(?P<lon>.{{15}}) )(?: *{REAL}) (?=(?P<lat>.{{15}}) )(?: *{REAL})"
    rf" (?=(?P<f>.{{15}}) )(?: *{REAL}) (?=(?P<prob>.{{15}})$)(?: *{REAL})"
)


def data_file_name(variable: int) -> str:
    if variable == DROUGHT_INDEX:
        return "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new"
    return f"cru_ts4.01.1901.2016.{VARIABLES[variable][0]}.dat.new"


def first_difference(what: str, expected: str, got: str) -> list[str]:
    """Returns a text about the first line that differs; "" if there is none."""
    if expected == got:
        return []
    wanted, found = expected.split("\n"), got.split("\n")
    for number, (one, other) in enumerate(zip(wanted + ["(end)"], found + ["(end)"]), 1):
        if one != other:
            return [f"{what}, line {number}:\n  expected |{one}|\n  found    |{other}|"]
    return [f"{what}: {len(wanted)} lines expected, {len(found)} found"]


class SavedCells:
    """The cells that a search must save, in order, with their values."""

    def __init__(self, one: Search, data: DataFile) -> None:
        self.one = one
        self.data = data
        self.missing = -9999 if one.variable == DROUGHT_INDEX else -999
        self.cells = [
            cell
            for cell in one.selection.lattice(one.factor or 1)
            if self.value(one.years[0], 1, *cell) != self.missing
        ]

    def value(self, year: int, month: int, row: int, column: int) -> int | None:
        return self.data.value(year, month, row, self.one.selection.field_of(column))

    def years(self, cell: tuple[int, int]) -> Iterator[tuple[int, list[int | None]]]:
        """Returns each year with its twelve values."""
        for year in range(self.one.years[0], self.one.years[1] + 1):
            yield year, [self.value(year, month, *cell) for month in range(1, 13)]

    def place(self, cell: tuple[int, int]) -> tuple[float, float]:
        """Returns longitude and latitude of the centre."""
        row, column = cell
        if self.one.variable == DROUGHT_INDEX:
            row = 361 - row
        return LONGITUDES[column - 1], LATITUDES[row - 1]

    def texts(self, count: int) -> tuple[str, str, list[str]]:
        """Returns time series, cell list and table lines of the first `count` cells."""
        one = self.one
        short, data_set, title = VARIABLES[one.variable]
        data_set, title = f"{data_set:13}", f"{title:27}"
        decimals = 2 if one.variable in TWO_DECIMALS else 1
        row_format = f"{f'RFMT=(1x,i4,12f6.{decimals})':65}"
        gap = "" if one.selection.crosses_date_line else "   "
        name = data_file_name(one.variable) + ".TSF"
        series, table = [], []
        listed = [f" #   Lon.     Lat.      {name:65}\n"]
        for number, cell in enumerate(self.cells[:count], 1):
            longitude, latitude = self.place(cell)
            head = f" {longitude:9.3f}{latitude:9.3f}    {data_set}"
            series.append(head + title + row_format + "\n")
            for year, values in self.years(cell):
                series.append(f" {year:4}" + "".join(f"{v!s:>6}" for v in values) + "\n")
            listed.append(head + gap + title + "\n")
            table.append(
                f"  {number:6}{longitude:10.3f}{latitude:10.3f}   {data_set}   {title}"
            )
        return "".join(series), "".join(listed), table

    def samples(self, cell: tuple[int, int]) -> tuple[list[int], list[int]]:
        """Returns the values before the cutoff year and those from it on; no missing months."""
        before: list[int] = []
        after: list[int] = []
        for year, values in self.years(cell):
            sample = before if year < (self.one.cutoff or 0) else after
            sample += [value for value in values if value not in (None, self.missing)]
        return before, after


def variance(sample: list[int]) -> Fraction | None:
    """Returns the exact variance; None if there is none."""
    count = len(sample)
    if count < 2:
        return None
    total = sum(sample)
    squares = sum(value * value for value in sample)
    return Fraction(count * squares - total * total, count * (count - 1))


def true_ratio(samples: tuple[list[int], list[int]]) -> float | None:
    """Returns the larger variance over the smaller; None if rounding may decide it."""
    variances = [variance(sample) for sample in samples]
    for sample, one in zip(samples, variances):
        if one is None or one * 1000 < max(abs(value) for value in sample) ** 2:
            return None
    return float(max(variances) / min(variances))


def report_faults(cells: SavedCells, count: int, text: str) -> list[str]:
    """Returns what is wrong with a variance report after `count` saved cells."""
    one = cells.one
    cutoff = one.cutoff or 0
    periods = f" {one.years[0]}- {cutoff}  {cutoff + 1}- {one.years[1]}"
    heading = f" # Ftest Comparison of Variance: {periods}\n # Lon.      Lat.     f      prob\n"
    faults = []
    if one.periods != periods:
        faults.append(f"the screen names the periods {one.periods}, expected {periods}")
    if not text.startswith(heading):
        return faults + first_difference("heading of the report", heading, text[: len(heading)])
    lines = text[len(heading) :].split("\n")
    if lines.pop() != "":
        faults.append("the report ends inside a line")
    if len(lines) + one.nan_notices != count:
        faults.append(f"{len(lines)} report lines, {one.nan_notices} notices, {count} cells")
    if not one.scaled and lines:
        faults.append("report lines, though all samples are zeros")
    rest = iter(cells.cells)
    for line in lines:
        match = REPORT_LINE.fullmatch(line)
        if not match:
            faults.append(f"not a line of a report: |{line}|")
            break
        place = float(match["lon"]), float(match["lat"])
        cell = next((cell for cell in rest if cells.place(cell) == place), None)
        if cell is None:
            faults.append(f"a cell that is not there, or not in its order: |{line}|")
            break
        ratio = true_ratio(cells.samples(cell))
        if ratio is None:  # a variance is only rounding error, so f may be anything
            continue
        f, prob = float(match["f"]), float(match["prob"])
        if not abs(f - ratio) <= 1e-3 * ratio:
            faults.append(f"f is {f}, the variances say {ratio}: |{line}|")
        if not 0 <= prob <= 1:
            faults.append(f"prob is no probability: |{line}|")
    return faults


def text_of(number: int, width: int) -> str:
    """Returns a number, right-aligned; asterisks if it does not fit."""
    return f"{number:{width}}" if len(str(number)) <= width else "*" * width


def search_faults(one: Search, data: DataFile, files: dict[str, bytes]) -> list[str]:
    """Returns what is wrong with a search that has read its data.

    files   those of its files that no later search has overwritten, by their extensions
    """
    defined = one.selection.cell_count()
    faults = []
    if one.theoretical != text_of(defined, 6):
        faults.append(f"{one.theoretical} cells in theory, there are {defined}")
    if one.saved_years is None:
        return faults
    if one.saved_years != f"{one.years[0]} - {one.years[1]}":
        faults.append(f"saves {one.saved_years}, asked were {one.years}")
    cells = SavedCells(one, data)
    count = len(one.cell_lines)
    series, listed, table = cells.texts(count)
    faults += first_difference("table", "\n".join(table), "\n".join(one.cell_lines))
    if ".TSF" in files:
        faults += first_difference(".TSF", series, files[".TSF"].decode("latin-1"))
        faults += first_difference(".XY", listed, files[".XY"].decode("latin-1"))
    if ".ftst" in files:
        faults += report_faults(cells, count, files[".ftst"].decode("latin-1"))
    if one.summary:
        name = data_file_name(one.variable) + ".TSF"
        summary = text_of(defined, 10), text_of(len(cells.cells), 10), f"{name:65}"
        if one.summary != summary:
            faults.append(f"the summary is {one.summary}, expected {summary}")
        if count != len(cells.cells):
            faults.append(f"{count} cells in the table, {len(cells.cells)} have data")
    return faults
