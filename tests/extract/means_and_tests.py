"""Recomputes area means and variance tests from the input of series_to_grid.

    means_and_tests.py PROGRAM_FOLDER [--no-netcdf]

Area means are compared with the weighted mean of the sample's numbers, variance tests with
the test in exact arithmetic, both as CSV and as netCDF, which ncdump prints. The cells are
the sample's, except that one never varies, one lacks a year, and all lack a month.
"""

import csv
import gzip
import math
import subprocess
import sys
import tempfile
from pathlib import Path

from sample_values import SAMPLE, data_of_ncdump

sys.path.insert(0, str(SAMPLE.parents[1] / "tests" / "stats" / "reference"))
from make_reference import exact_test  # noqa: E402

FIRST, LAST, CUTOFF = 1901, 1910, 1906
MONTHS = 12 * (LAST - FIRST + 1)
LATITUDES = [60.25, 60.75, 61.25]
LONGITUDES = [-139.75, -139.25, -138.75, -138.25]  # the last one has no data
BOX = ["--lat", "60:61.5", "--lon", "-140:-138"]
CONSTANT, GAPPED = (60.75, -139.25), (61.25, -138.75)
EMPTY_MONTH = 26
MISSING = -999
TITLES = ["f", "probability", "n1", "n2", "adjusted_n1", "adjusted_n2"]


def made_cells():
    """Returns {(lat, lon): stored values} of the box's cells with data."""
    cells = {}
    with gzip.open(SAMPLE / "cru_ts4.01_tmp_1901_2016.csv.gz", "rt") as lines:
        header = next(lines)
        for lon, lat, *values in csv.reader(lines):
            cell = float(lat), float(lon)
            if cell[0] in LATITUDES and cell[1] in LONGITUDES:
                cells[cell] = [int(value) for value in values[:MONTHS]]
    cells[CONSTANT] = [0] * MONTHS
    cells[GAPPED][48:60] = [MISSING] * 12
    for values in cells.values():
        values[EMPTY_MONTH] = MISSING
    return header, cells


def write_grid(tools, path, header, cells):
    titles = ",".join(header.rstrip("\n").split(",")[: 2 + MONTHS])
    lines = [f"{lon},{lat}," + ",".join(map(str, values)) for (lat, lon), values in cells.items()]
    subprocess.run([tools / "series_to_grid", "--years", f"{FIRST}-{LAST}", path],
                   input="\n".join([titles, *lines, ""]), text=True, check=True,
                   capture_output=True)


def extract(tools, grid, output, *options):
    subprocess.run([tools / "veldmark-extract", grid, *options, "-o", output, "--quiet"],
                   check=True)


def ncdump(path):
    return subprocess.run(["ncdump", "-p", "9,17", path], check=True, capture_output=True,
                          text=True).stdout


# ---- area means


def expected_means(cells):
    """Returns (mean or None, cells with data) of each month, in degrees."""
    means = []
    for month in range(MONTHS):
        known = [(math.cos(math.radians(lat)), values[month])
                 for (lat, _), values in cells.items() if values[month] != MISSING]
        weight = sum(w for w, _ in known)
        means.append((sum(w * v for w, v in known) / weight / 10 if known else None, len(known)))
    return means


def means_of_csv(path):
    with open(path, newline="", encoding="utf-8") as lines:
        rows = list(csv.DictReader(lines))
    assert [(int(row["year"]), int(row["month"])) for row in rows] == [
        (FIRST + month // 12, month % 12 + 1) for month in range(MONTHS)]
    return [(float(row["value"]) if row["value"] else None, int(row["cells"])) for row in rows]


def means_of_netcdf(path):
    text = ncdump(path)
    assert data_of_ncdump(text, "lat_bnds") == ["60", "61.5"]
    assert data_of_ncdump(text, "lon_bnds") == ["-140", "-138"]
    assert len(data_of_ncdump(text, "time")) == MONTHS
    for line in ('tmp:units = "degC"', 'tmp:cell_methods = "time: mean area: mean"',
                 'tmp:ancillary_variables = "cells"', 'title = "area mean of mean temperature'):
        assert line in text, line
    values = [None if text == "_" else float(text) for text in data_of_ncdump(text, "tmp")]
    return list(zip(values, map(int, data_of_ncdump(text, "cells"))))


def check_means(expected, found, error):
    assert len(expected) == len(found)
    for month, ((mean, count), (value, cells)) in enumerate(zip(expected, found)):
        assert cells == count, f"month {month}: {cells} cells, not {count}"
        same = value == mean if mean is None or value is None else abs(value - mean) <= error
        assert same, f"month {month}: {value}, not {mean}"
    return len(found)


# ---- variance tests


def expected_tests(cells):
    """Returns the six numbers of each cell with data."""
    tests = {}
    split = 12 * (CUTOFF - FIRST)
    for cell, values in cells.items():
        first, second = ([value for value in part if value != MISSING]
                         for part in (values[:split], values[split:]))
        if cell == CONSTANT:  # nothing varies: no result, and the least counts
            tests[cell] = [math.nan, math.nan, len(first), len(second), 2, 2]
        else:
            f, d1, d2, probability = exact_test(first, second)
            tests[cell] = [float(f), float(probability), len(first), len(second), d1, d2]
    return tests


def tests_of_csv(path):
    with open(path, newline="", encoding="utf-8") as lines:
        return {(float(row["cell_lat"]), float(row["cell_lon"])) if "cell_lat" in row
                else (float(row["lat"]), float(row["lon"])): [row[title] for title in TITLES]
                for row in csv.DictReader(lines)}


def tests_of_grid(path):
    text = ncdump(path)
    assert data_of_ncdump(text, "lat") == [str(lat) for lat in LATITUDES]
    assert data_of_ncdump(text, "lon") == [str(lon) for lon in LONGITUDES]
    for line in (f'n1:long_name = "number of values, {FIRST}-{CUTOFF - 1}"',
                 f'n2:long_name = "number of values, {CUTOFF}-{LAST}"',
                 f'adjusted_n1:long_name = "count adjusted for kurtosis, {FIRST}-{CUTOFF - 1}"',
                 'title = "variance test of mean temperature'):
        assert line in text, line
    cells = [(lat, lon) for lat in LATITUDES for lon in LONGITUDES]
    columns = zip(*(data_of_ncdump(text, title) for title in TITLES))
    return dict(zip(cells, columns, strict=True))


def tests_of_sites(path):
    text = ncdump(path)
    assert "featureType" not in text and "cf_role" not in text  # which are for series
    assert 'f:coordinates = "lat lon"' in text
    places = zip(*(map(float, data_of_ncdump(text, title)) for title in ("cell_lat", "cell_lon")))
    columns = zip(*(data_of_ncdump(text, title) for title in TITLES))
    return dict(zip(places, columns, strict=True))


def check_tests(expected, found):
    for cell, texts in found.items():
        if cell not in expected:
            assert set(texts) == {"_"}, f"{cell} has no data, but {texts}"
            continue
        numbers = [float(text.removesuffix("f")) for text in texts]
        for title, number, exact in zip(TITLES, numbers, expected[cell]):
            if math.isnan(exact):
                assert math.isnan(number), f"{cell}, {title}: {number}, not NaN"
            else:
                error = 1e-3 * abs(exact) if title in TITLES[:2] else 0
                assert abs(number - exact) <= error, f"{cell}, {title}: {number}, not {exact}"
    assert expected.keys() <= found.keys()
    return len(found)


def main():
    tools = Path(sys.argv[1]).resolve()
    formats = ["csv"] if "--no-netcdf" in sys.argv else ["csv", "nc"]
    header, cells = made_cells()
    assert len(cells) == 9
    means, tests = expected_means(cells), expected_tests(cells)
    assert sorted({count for _, count in means}) == [0, 8, 9]
    months = rows = 0
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        grid = folder / f"cru_ts4.01.{FIRST}.{LAST}.tmp.dat.new"
        write_grid(tools, grid, header, cells)
        sites = folder / "plots.csv"
        sites.write_text("".join(["name,lat,lon\n", *(f"x,{lat},{lon}\n" for lat, lon in cells)]))
        for ending in formats:
            output = folder / f"mean.{ending}"
            extract(tools, grid, output, *BOX, "--area-mean")
            months += check_means(means, *((means_of_csv(output), 0.000501) if ending == "csv"
                                           else (means_of_netcdf(output), 1e-9)))
            for where, place in (("grid", BOX), ("sites", ["--sites", sites])):
                output = folder / f"{where}.{ending}"
                extract(tools, grid, output, *place, "--variance-test", str(CUTOFF))
                read = {"csv": tests_of_csv, "nc": tests_of_grid if where == "grid"
                        else tests_of_sites}[ending]
                rows += check_tests(tests, read(output))
    print(f"{months} area means and {rows} variance tests are right")
    return 0


if __name__ == "__main__":
    sys.exit(main())
