"""Processes a release to 2024, made from the sample: condense, check, extract.

    release_2024.py --tools FOLDER [--first YEAR] [--no-extract]

The sample's series of mean temperature end with 2016; the years after that repeat those
from 1901 on. They are written as compressed published text; tersify condenses it and checks
the copy, and veldmark-extract reads it. YEAR is the release's first year: 1901 by default,
with a copy of 1.9 GB; 2021 makes a shorter file, as published as well.
"""

import argparse
import csv
import gzip
import hashlib
import io
import subprocess
import sys
import tempfile
from pathlib import Path

SAMPLE = Path(__file__).resolve().parents[2] / "data/sample/cru_ts4.01_tmp_1901_2016.csv.gz"
LAST = 2024
YEARS_OF_SAMPLE = 116
ROWS = 360
COLUMNS = 720
MISSING = -999


def read_series():
    """Returns {row: {column: values}}, both counted from 1; values from January 1901 to 2024."""
    rows = {}
    with gzip.open(SAMPLE, "rt") as lines:
        next(lines)
        for line in lines:
            longitude, latitude, *values = line.rstrip("\n").split(",")
            row = round((float(latitude) + 89.75) * 2) + 1
            column = round((float(longitude) + 179.75) * 2) + 1
            numbers = [int(value) for value in values]
            numbers += numbers[: (LAST - 1900 - YEARS_OF_SAMPLE) * 12]
            rows.setdefault(row, {})[column] = numbers
    return rows


def month_of(rows, month, width):
    """Yields the lines of a month, counted from 0, with `width` characters per number."""
    empty = "%*d" % (width, MISSING)
    no_values = empty * COLUMNS + "\n"
    for row in range(1, ROWS + 1):
        fields = [empty] * COLUMNS
        for column, values in rows.get(row, {}).items():
            fields[column - 1] = "%*d" % (width, values[month])
        yield "".join(fields) + "\n" if row in rows else no_values


def write_release(rows, months, path):
    """Writes the compressed text. Returns the size and the checksum of its condensed copy."""
    size = 0
    checksum = hashlib.md5()
    with gzip.open(path, "wb", compresslevel=1) as file:
        for month in months:
            file.write("".join(month_of(rows, month, 6)).encode())
            condensed = "".join(month_of(rows, month, 5)).encode()
            checksum.update(condensed)
            size += len(condensed)
    return size, checksum.hexdigest()


def checksum_of(path):
    checksum = hashlib.md5()
    with path.open("rb") as file:
        while piece := file.read(1 << 20):
            checksum.update(piece)
    return checksum.hexdigest()


def run(folder, *command):
    result = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
    if result.returncode != 0 or result.stderr:
        sys.exit("%s\nstatus %d\n%s" % (command, result.returncode, result.stderr))
    return result.stdout


def expect(found, expected):
    if found != expected:
        sys.exit("expected %r\nfound    %r" % (expected, found))


def expect_values(tools, folder, copy, rows, first):
    """Returns the values of all years of a cell, read by veldmark-extract."""
    row, columns = next(iter(rows.items()))
    column, values = next(iter(columns.items()))
    place = "%.2f,%.2f" % (row / 2 - 90.25, column / 2 - 180.25)
    text = run(folder, tools / "veldmark-extract", copy, "--cell", place, "--stored", "--quiet")
    found = [(line["year"], line["month"], line["value"]) for line in csv.DictReader(io.StringIO(text))]
    months = range((first - 1901) * 12, len(values))
    expect(found, [(str(1901 + m // 12), str(m % 12 + 1), str(values[m])) for m in months])


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--tools", type=Path, required=True)
    parser.add_argument("--first", type=int, default=1901)
    parser.add_argument("--no-extract", action="store_true")
    options = parser.parse_args()
    tools = options.tools.resolve()
    name = "cru_ts4.09.%d.%d.tmp.dat" % (options.first, LAST)
    years = LAST - options.first + 1
    rows = read_series()
    months = range((options.first - 1901) * 12, (LAST - 1900) * 12)
    with tempfile.TemporaryDirectory() as scratch:
        folder = Path(scratch)
        size, checksum = write_release(rows, months, folder / (name + ".gz"))
        said = run(folder, tools / "tersify", name + ".gz")
        before = (folder / (name + ".gz")).stat().st_size
        expect(said, "wrote '%s.new': %d lines, %d bytes before, %d after\n"
               % (name, years * 12 * ROWS, before, size))
        expect(sorted(path.name for path in folder.iterdir()), [name + ".gz", name + ".new"])
        expect(checksum_of(folder / (name + ".new")), checksum)
        said = run(folder, tools / "tersify", "--check", name + ".new")
        expect(said, "'%s.new': complete: %d years, %d to %d\n" % (name, years, options.first, LAST))
        if not options.no_extract:
            expect_values(tools, folder, name + ".new", rows, options.first)
    print("%d years: %d bytes" % (years, size))


if __name__ == "__main__":
    main()
