"""Condenses netCDF files made from the sample, and compares the copies with its grids.

    netcdf_round_trip.py --tools FOLDER

For each variable of the sample, and for a drought index made from it, the copy of a netCDF
file must equal the grid that series_to_grid makes and the copy of the published text, byte
for byte. The netCDF files are written by Python's netCDF4 in all forms; see netcdf_files.py.
A grid with random values in every cell is compared with text formatted by Python.
"""

import argparse
import gzip
import itertools
import subprocess
import sys
import tempfile
from datetime import date
from pathlib import Path

import numpy
from netcdf_files import COLUMNS, FILL, MISSING, ROWS, SAMPLE, Form, stored_sample, write_netcdf

VARIABLES = "pre tmp dtr tmn tmx vap pet cld frs wet".split()
INDEX_NAME = "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new"
FORMATS = ["NETCDF3_CLASSIC", "NETCDF3_64BIT_OFFSET", "NETCDF3_64BIT_DATA", "NETCDF4",
           "NETCDF4_CLASSIC"]
EPOCHS = [
    {"units": "days since 1900-1-1", "epoch": date(1900, 1, 1)},
    {"units": "days since 1901-01-01 00:00:00", "epoch": date(1901, 1, 1), "calendar": None},
    {"units": "days since 1850-01-01T00:00:00Z", "epoch": date(1850, 1, 1),
     "calendar": "standard", "time_type": "f8"},
    {"units": "days since 1601-1-1", "epoch": date(1601, 1, 1), "time_type": "i4",
     "calendar": "proleptic_gregorian"},
]
STORAGE = [{}, {"chunks": (1, ROWS, COLUMNS), "level": 1}, {"chunks": (12, 40, 90), "level": 1},
           {"chunks": (5, 7, 720)}, {"chunks": (24, 100, 100), "level": 1, "fixed_time": True}]
MARKS = [
    {},
    {"attributes": {"scale_factor": 1.0, "add_offset": 0.0}},
    {"missing_value": None},
    {"fill": None, "missing_value": None},  # the library's default fill value
    {"fill": None, "missing_value": numpy.float32(-1e6)},
    {"fill": numpy.float32("nan"), "missing_value": None},
    {"fill": numpy.finfo("f4").max, "missing_value": None},
    {"type": "f8", "fill": -9999.0, "missing_value": -9999.0},
    {"names": ("time", "latitude", "longitude"), "stations": False},
]


def run(*command, text=None):
    done = subprocess.run([str(part) for part in command], input=text, capture_output=True)
    assert done.returncode == 0, f"{command}: {done.stderr.decode()}"
    return done.stdout.decode()


def expand(tools, variable, output, last, *options):
    series = gzip.decompress((SAMPLE / f"cru_ts4.01_{variable}_1901_2016.csv.gz").read_bytes())
    run(tools / "series_to_grid", "--years", f"1901-{last}", *options, output, text=series)


def all_forms():
    """Yields every format with both orders of latitudes and both ranges of longitudes,
    cycling through the other properties."""
    others = zip(itertools.cycle(EPOCHS), itertools.cycle(STORAGE), itertools.cycle(MARKS))
    for kind, north, greenwich in itertools.product(FORMATS, (False, True), (False, True)):
        epoch, storage, marks = next(others)
        if not kind.startswith("NETCDF4"):
            storage = {key: value for key, value in storage.items() if key == "fixed_time"}
        yield Form(format=kind, north_first=north, from_greenwich=greenwich,
                   **{**epoch, **storage, **marks})


def condense(tools, path, name, stored, form, output, expected):
    """Writes a netCDF file, condenses it and compares the copy with the expected bytes."""
    write_netcdf(path, name, stored, form)
    said = run(tools / "tersify", path)
    assert said.startswith(f"wrote '{output}': "), said
    assert output.read_bytes() == expected, f"{name}: a different copy of {form}"
    assert sorted(p.name for p in path.parent.iterdir()) == sorted([path.name, output.name])
    path.unlink()
    output.unlink()


def direct_copies(tools, folder, variable, last, *options):
    """Returns the grid file of a sample; checks that the published text gives the same."""
    direct, raw = folder / "direct", folder / "raw"
    expand(tools, variable, direct, last, *options)
    expand(tools, variable, raw, last, "--published", *options)
    run(tools / "tersify", raw)
    expected = direct.read_bytes()
    assert (folder / "raw.new").read_bytes() == expected
    for name in ("direct", "raw", "raw.new"):
        (folder / name).unlink()
    return expected


def check_variables(tools, folder):
    """Each variable in a few forms, so that each form is used with some variable."""
    count = 0
    forms = itertools.cycle(all_forms())
    for variable in VARIABLES:
        expected = direct_copies(tools, folder, variable, 1902)
        stored = stored_sample(variable, (1901, 1902))
        for form in [Form(), *itertools.islice(forms, 3)]:
            path = folder / f"cru_ts4.01.1901.2016.{variable}.dat.nc"
            condense(tools, path, variable, stored, form, path.with_suffix(".new"), expected)
            count += 1
    return count


def check_index(tools, folder):
    """The drought index in all forms: its rows run north to south, and its name is fixed."""
    count = 0
    expected = direct_copies(tools, folder, "tmp", 1902, "--scpdsi")
    stored = stored_sample("tmp", (1901, 1902))
    for form in all_forms():
        path = folder / "scPDSI.cru_ts3.25.bams2017.GLOBAL.1901.2016.nc"
        condense(tools, path, "scpdsi", stored, form, folder / INDEX_NAME, expected)
        count += 1
    return count


def check_names(tools, folder):
    """Compressed files, which leave no decompressed file behind, and --output."""
    count = 0
    stored = stored_sample("tmp", (1901, 1901))
    for variable, name, output, format, options in (
            ("tmp", "cru_ts4.01.1901.2016.tmp.dat.nc", "cru_ts4.01.1901.2016.tmp.dat.new",
             "NETCDF4", []),
            ("scpdsi", "scPDSI.cru_ts3.25.nc", INDEX_NAME, "NETCDF3_CLASSIC", ["--scpdsi"])):
        expand(tools, "tmp", folder / "direct", 1901, *options)
        expected = (folder / "direct").read_bytes()
        (folder / "direct").unlink()
        path, packed = folder / name, folder / (name + ".gz")
        write_netcdf(path, variable, stored, Form(format=format, stations=False))
        packed.write_bytes(gzip.compress(path.read_bytes(), 1))
        path.unlink()
        for command, copy in ([packed], folder / output), (
                ["--output", folder / "other", packed], folder / "other"):
            said = run(tools / "tersify", *command)
            size = packed.stat().st_size
            assert said.startswith(
                f"wrote '{copy}': 4320 lines, {size} bytes before, {len(expected)} after\n"), said
            assert copy.read_bytes() == expected
            assert sorted(p.name for p in folder.iterdir()) == sorted([packed.name, copy.name])
            copy.unlink()
            count += 1
        packed.unlink()
    return count


def random_values(months, seed):
    """Returns values of all lengths in all cells, some of them missing."""
    rng = numpy.random.default_rng(seed)
    digits = rng.integers(0, 5, (months, ROWS, COLUMNS))
    stored = rng.integers(-9999, 100_000, (months, ROWS, COLUMNS)) // 10**digits
    stored[stored == MISSING] = 0
    stored[rng.random(stored.shape) < 0.3] = MISSING
    return stored


def check_random_values(tools, folder):
    """Every cell of a year is in its place, with numbers of every length."""
    stored = random_values(12, 1)
    expected = "".join("%5d" * COLUMNS % tuple(row) + "\n"
                       for month in stored for row in month).encode()
    for form in (Form(), Form(format="NETCDF4", north_first=True, from_greenwich=True,
                              chunks=(7, 50, 100), level=1)):
        path = folder / "cru_ts4.01.1901.2016.pre.dat.nc"
        condense(tools, path, "pre", stored, form, path.with_suffix(".new"), expected)
    return 2


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tools", required=True, type=Path)
    options = parser.parse_args()
    tools = options.tools.resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        count = check_variables(tools, folder)
        count += check_index(tools, folder)
        count += check_random_values(tools, folder)
        count += check_names(tools, folder)
    print(f"{count} netCDF files condensed to the expected copies")


if __name__ == "__main__":
    sys.exit(main())
