"""Processes a release to 2024 as netCDF, made from the sample: condense, check, extract.

    netcdf_release.py --tools FOLDER [--first YEAR]

The sample's series end with 2016; the years after that repeat those from 1901 on. They are
written as netCDF-4 from north to south, compressed in chunks of ten years, so that the grid
is read in bands of rows. tersify condenses the file and checks the copy, and
veldmark-extract, if it is built, reads it. YEAR is the release's first year: 1901 by
default, with a copy of 1.9 GB; 2021 makes a shorter file, as published as well.
"""

import argparse
import csv
import io
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy
from netcdf_files import COLUMNS, MISSING, ROWS, Form, stored_sample, write_netcdf

LAST = 2024
OF_SAMPLE = 116 * 12


class Release:
    """Stored integers, [month, row from the south, column]; made on access."""

    def __init__(self, first):
        self.skipped = (first - 1901) * 12
        whole = stored_sample("tmp", (1901, 1901))[0]
        self.rows, self.columns = numpy.nonzero(whole != MISSING)
        self.series = cells_of_sample(self.rows, self.columns)

    def __len__(self):
        return (LAST - 1900) * 12 - self.skipped

    def __getitem__(self, months):
        indices = (numpy.arange(len(self))[months] + self.skipped) % OF_SAMPLE
        grid = numpy.full((len(indices), ROWS, COLUMNS), MISSING, dtype=numpy.int32)
        grid[:, self.rows, self.columns] = self.series[indices]
        return grid


def cells_of_sample(rows, columns):
    """Returns the series of these cells, [month, cell]; reads a few years at a time."""
    parts = [stored_sample("tmp", (year, year + 3))[:, rows, columns]
             for year in range(1901, 2017, 4)]
    return numpy.concatenate(parts)


def expect_copy(path, release):
    """Compares the copy with lines formatted by Python, month by month."""
    empty = " -999" * COLUMNS + "\n"
    with path.open("rb") as file:
        for month in range(len(release)):
            lines = [empty] * ROWS
            grid = release[month : month + 1][0]
            for row in set(release.rows):
                lines[row] = "%5d" * COLUMNS % tuple(grid[row]) + "\n"
            expected = "".join(lines).encode()
            assert file.read(len(expected)) == expected, f"month {month + 1} is another one"
        assert file.read(1) == b""


def expect_values(tools, copy, release, first):
    """Returns all values of a cell, read by veldmark-extract."""
    latitude, longitude = release.rows[0] / 2 - 89.75, release.columns[0] / 2 - 179.75
    command = [tools / "veldmark-extract", copy, "--cell", f"{latitude:.2f},{longitude:.2f}",
               "--stored", "--quiet"]
    text = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    found = [(int(line["year"]), int(line["month"]), int(line["value"]))
             for line in csv.DictReader(io.StringIO(text))]
    assert found == [
        (first + i // 12, i % 12 + 1, release.series[(i + release.skipped) % OF_SAMPLE, 0])
        for i in range(len(release))]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tools", required=True, type=Path)
    parser.add_argument("--first", type=int, default=1901)
    options = parser.parse_args()
    tools = options.tools.resolve()
    release = Release(options.first)
    name = f"cru_ts4.09.{options.first}.{LAST}.tmp.dat"
    form = Form(format="NETCDF4", chunks=(120, 100, 180), level=1, stations=False,
                north_first=True)
    with tempfile.TemporaryDirectory() as scratch:
        path = Path(scratch) / (name + ".nc")
        copy = Path(scratch) / (name + ".new")
        write_netcdf(path, "tmp", release, form, first_year=options.first)
        done = subprocess.run([tools / "tersify", path], capture_output=True, text=True)
        lines, size = len(release) * ROWS, len(release) * ROWS * 3601
        before = path.stat().st_size
        assert (done.returncode, done.stdout, done.stderr) == (
            0, f"wrote '{copy}': {lines} lines, {before} bytes before, {size} after\n", ""), done
        expect_copy(copy, release)
        done = subprocess.run([tools / "tersify", "--check", copy], capture_output=True, text=True)
        years = LAST + 1 - options.first
        assert done.stdout == (
            f"'{copy}': complete: {years} years, {options.first} to {LAST}\n"), done
        if (tools / "veldmark-extract").exists():
            expect_values(tools, copy, release, options.first)
    print(f"{years} years of netCDF: {size} bytes")


if __name__ == "__main__":
    sys.exit(main())
