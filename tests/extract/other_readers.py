"""Reads outputs of veldmark-extract with other programs, and compares them with the sample.

    other_readers.py R|xarray|cdo PROGRAM_FOLDER

R reads the CSV, long and wide. xarray and the climate operators (cdo) read netCDF grids,
one of them across the 180 degree meridian; xarray also reads sites. All variables of the
sample are tested. If the reader is not installed, the exit status is 77, for a skipped
test; with CI=true in the environment that is a failure.
"""

import gzip
import os
import shutil
import subprocess
import sys
import tempfile
from decimal import Decimal
from pathlib import Path

from sample_values import PER_UNIT, SAMPLE, compare, read_sample

READERS = Path(__file__).resolve().parent / "readers"
VARIABLES = "pre tmp dtr tmn tmx vap pet cld frs wet".split()
FIRST, LAST = 1902, 1903
SKIPPED = 77
# South, north, west, east; the second region crosses the 180 degree meridian.
REGION = (38, 62, -140, -70)
ACROSS = (-26, 62, 140, -120)


class NotInstalled(Exception):
    pass


def make_grid(name, tools, folder):
    grid = folder / f"cru_ts4.01.1901.{LAST}.{name}.dat.new"
    with gzip.open(SAMPLE / f"cru_ts4.01_{name}_1901_2016.csv.gz") as text:
        subprocess.run([tools / "series_to_grid", "--years", f"1901-{LAST}", grid],
                       input=text.read(), check=True, capture_output=True)
    return grid


def extract(tools, grid, output, *options):
    result = subprocess.run(
        [tools / "veldmark-extract", grid, "--years", f"{FIRST}:{LAST}", "-o", output,
         "--quiet", *options], check=False, capture_output=True, text=True)
    if "built without netCDF" in result.stderr:
        raise NotInstalled("the netCDF format")
    assert result.returncode == 0, result.stderr


def box_options(region):
    south, north, west, east = region
    return ["--lat", f"{south}:{north}", "--lon", f"{west}:{east}"]


def cells_of(region, values):
    """Returns the values whose cells lie in the region."""
    south, north, west, east = region
    return {key: value for key, value in values.items() if south <= key[0] <= north
            and (west <= key[1] <= east if west < east else not east < key[1] < west)}


def scaled(name, values):
    return {key: Decimal(value) / PER_UNIT.get(name, 10) for key, value in values.items()}


def lines_of(command, arguments):
    result = subprocess.run([*command, *arguments], check=False, capture_output=True, text=True)
    assert result.returncode == 0, result.stderr
    return result.stdout.splitlines()


def printed_values(lines):
    """Returns {file: [(place and month, value)]} from the output of the programs in readers/."""
    found = {}
    for line in lines:
        name, lat, lon, year, month, value = line.split()
        key = float(lat), float(lon), int(year), int(month)
        found.setdefault(name, []).append((key, Decimal(value)))
    return found


# Each reader makes the outputs of a variable, with the expected values by file name, and
# then reads all of them.


class R:
    def __init__(self):
        if not shutil.which("Rscript"):
            raise NotInstalled("R")

    def make(self, tools, grid, name, stored, folder):
        outputs = {}
        for shape, options in (("long", []), ("wide", ["--wide"])):
            output = folder / f"{name}.{shape}.csv"
            extract(tools, grid, output, *options, *box_options((-60, 85, -180, 180)))
            outputs[output] = scaled(name, stored)
        return outputs

    def read(self, outputs):
        return printed_values(lines_of(["Rscript", READERS / "print_csv.R"], outputs))


class Xarray:
    def __init__(self):
        for python in (sys.executable, "/usr/bin/python3"):  # which Debian's package is for
            test = [python, "-c", "import xarray, netCDF4"]
            if shutil.which(python) and not subprocess.run(
                    test, check=False, capture_output=True).returncode:
                self.python = python
                return
        raise NotInstalled("xarray")

    def make(self, tools, grid, name, stored, folder):
        sites = folder / "sites.csv"
        cells = sorted({key[:2] for key in stored})
        sites.write_text("".join(["lat,lon\n", *(f"{lat},{lon}\n" for lat, lon in cells)]))
        outputs = {}
        for shape, options, expected in (
                ("grid", box_options(REGION), cells_of(REGION, stored)),
                ("across", box_options(ACROSS), cells_of(ACROSS, stored)),
                ("sites", ["--sites", sites], stored)):
            output = folder / f"{name}.{shape}.nc"
            extract(tools, grid, output, *options)
            outputs[output] = scaled(name, expected)
        return outputs

    def read(self, outputs):
        return printed_values(lines_of([self.python, READERS / "print_netcdf.py"], outputs))


class ClimateOperators:
    def __init__(self):
        if not shutil.which("cdo"):
            raise NotInstalled("cdo")

    def make(self, tools, grid, name, stored, folder):
        outputs = {}
        for shape, region in (("grid", REGION), ("across", ACROSS)):
            output = folder / f"{name}.{shape}.nc"
            extract(tools, grid, output, *box_options(region))
            outputs[output] = scaled(name, cells_of(region, stored))
        return outputs

    def read(self, outputs):
        return {output.name: list(self.read_one(output)) for output in outputs}

    def read_one(self, output):
        name, shape, _ = output.name.split(".")
        told = "\n".join(lines_of(["cdo", "sinfo"], [output]))
        ends = {"grid": ("-139.75 to -70.25", "38.25 to 61.75"),
                "across": ("140.25 to 239.75", "-25.75 to 61.75")}[shape]
        for text in (f"lon : {ends[0]} by 0.5 degrees_east", f"lat : {ends[1]} by 0.5 degrees_north",
                     f"{12 * (LAST - FIRST + 1)} steps", "RefTime =  1900-01-01", "I16z",
                     "available : cellbounds", f"{FIRST}-01-16", f"{LAST}-12-16"):
            assert text in told, f"cdo sinfo of {output.name} doesn't say {text}:\n{told}"
        command = ["cdo", "-s", "outputtab,name,year,month,lon,lat,value"]
        for line in lines_of(command, [output]):
            if line.startswith("#"):
                continue
            variable, year, month, lon, lat, value = line.split()
            assert variable == name
            if value != "-999":
                place = float(lat), (float(lon) + 180) % 360 - 180
                yield (*place, int(year), int(month)), Decimal(value)


def check(reader, tools, folder):
    outputs = {}
    for name in VARIABLES:
        series = SAMPLE / f"cru_ts4.01_{name}_1901_2016.csv.gz"
        grid = make_grid(name, tools, folder)
        outputs |= reader.make(tools, grid, name, read_sample(series, FIRST, LAST), folder)
        grid.unlink()
    found = reader.read(outputs)
    count = 0
    for output, expected in outputs.items():
        assert expected, f"{output.name} holds nothing of the sample"
        count += compare(output.name, expected, found[output.name])
    return count


def main():
    try:
        reader = {"R": R, "xarray": Xarray, "cdo": ClimateOperators}[sys.argv[1]]()
        with tempfile.TemporaryDirectory() as folder:
            count = check(reader, Path(sys.argv[2]).resolve(), Path(folder))
    except NotInstalled as missing:
        print(f"not installed: {missing}")
        return 1 if os.environ.get("CI") == "true" else SKIPPED
    print(f"{count} values are the sample's, read by {sys.argv[1]}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
