"""Reads the sample back from what veldmark-extract writes.

    sample_values.py --tools FOLDER [--years FIRST-LAST] [--no-netcdf]

For each variable of the sample: a grid file is made, extracted as long and wide CSV, in
stored integers, and as netCDF, and every value is compared with the producers' series.
CSV is read by Python's csv module, netCDF as ncdump prints it.
"""

import argparse
import csv
import gzip
import re
import subprocess
import sys
import tempfile
from datetime import date, timedelta
from decimal import Decimal
from pathlib import Path

SAMPLE = Path(__file__).resolve().parents[2] / "data" / "sample"
MONTHS = ["jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep", "oct", "nov", "dec"]
PER_UNIT = {"frs": 100, "wet": 100}


def read_sample(path, first, last):
    """Returns {(lat, lon, year, month): stored value}, places as text."""
    values = {}
    with gzip.open(path, "rt") as lines:
        months = next(lines).rstrip("\n").split(",")[2:]
        for line in lines:
            lon, lat, *numbers = line.rstrip("\n").split(",")
            for month, number in zip(months, numbers):
                year = int(month[:4])
                if first <= year <= last:
                    values[float(lat), float(lon), year, int(month[5:])] = int(number)
    return values


def read_long(path):
    with open(path, newline="", encoding="utf-8") as lines:
        for row in csv.DictReader(lines):
            if row["value"]:
                place = float(row["lat"]), float(row["lon"])
                yield (*place, int(row["year"]), int(row["month"])), row["value"]


def read_wide(path):
    with open(path, newline="", encoding="utf-8") as lines:
        for row in csv.DictReader(lines):
            for month, title in enumerate(MONTHS, start=1):
                if row[title]:
                    place = float(row["lat"]), float(row["lon"])
                    yield (*place, int(row["year"]), month), row[title]


def data_of_ncdump(text, name):
    block = re.search(rf"^ {name} =(.*?);", text, re.M | re.S).group(1)
    return [item.strip() for item in block.split(",")]


def read_netcdf(path, variable):
    text = subprocess.run(["ncdump", path], check=True, capture_output=True, text=True).stdout
    lat, lon, time = (
        [float(x) for x in data_of_ncdump(text, name)] for name in ("lat", "lon", "time")
    )
    assert lat == sorted(lat) and lon == sorted(lon) and time == sorted(time)
    months = []
    for days in time:
        day = date_of(days)
        months.append((day.year, day.month))
    items = iter(data_of_ncdump(text, variable))
    for month in months:
        for y in lat:
            for x in lon:
                value = next(items)
                if value != "_":
                    yield (y, (x + 180) % 360 - 180, *month), value


def date_of(days):
    return date(1900, 1, 1) + timedelta(days=days)


def compare(what, expected, found):
    seen = {}
    for key, text in found:
        assert key not in seen, f"{what}: {key} stands there twice"
        seen[key] = text
    assert seen.keys() == expected.keys(), f"{what}: other cells or months"
    for key, text in expected.items():
        assert seen[key] == text, f"{what}: {key} is {seen[key]}, not {text}"
    return len(seen)


def check_variable(name, tools, years, netcdf, folder):
    first, last = (int(year) for year in years.split("-"))
    series = SAMPLE / f"cru_ts4.01_{name}_1901_2016.csv.gz"
    grid = folder / f"cru_ts4.01.1901.{last}.{name}.dat.new"
    with gzip.open(series) as text:
        subprocess.run(
            [tools / "series_to_grid", "--years", f"1901-{last}", grid],
            input=text.read(), check=True, capture_output=True,
        )
    stored = read_sample(series, first, last)
    per_unit = PER_UNIT.get(name, 10)
    decimals = Decimal(1) / per_unit
    exact = {key: str((value * decimals).quantize(decimals)) for key, value in stored.items()}
    whole = {key: str(value) for key, value in stored.items()}
    runs = [("long.csv", [], read_long, exact), ("wide.csv", ["--wide"], read_wide, exact),
            ("stored.csv", ["--stored"], read_long, whole)]
    if netcdf:
        runs.append(("grid.nc", [], lambda path: read_netcdf(path, name), whole))
    count = 0
    for output, options, reader, expected in runs:
        # A box around the sample's cells: the dump of the globe would be too long.
        box = ["--lat", "-26:62", "--lon", "-156:146"] if output != "grid.nc" else [
            "--lat", "38:62", "--lon", "-140:-70"]
        if output == "grid.nc":
            expected = {key: value for key, value in expected.items()
                        if 38 <= key[0] <= 62 and -140 <= key[1] <= -70}
        subprocess.run(
            [tools / "veldmark-extract", grid, *box, "--years", f"{first}:{last}",
             "-o", folder / output, "--overwrite", "--quiet", *options], check=True)
        count += compare(f"{name}, {output}", expected, reader(folder / output))
    grid.unlink()
    return count


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--tools", required=True, type=Path)
    parser.add_argument("--years", default="1902-1904")
    parser.add_argument("--no-netcdf", action="store_true")
    options = parser.parse_args()
    count = 0
    with tempfile.TemporaryDirectory() as folder:
        for name in "pre tmp dtr tmn tmx vap pet cld frs wet".split():
            count += check_variable(name, options.tools.resolve(), options.years,
                                    not options.no_netcdf, Path(folder))
    print(f"{count} values are the sample's")
    return 0


if __name__ == "__main__":
    sys.exit(main())
