"""Tests that tersify refuses netCDF files other than published ones.

    netcdf_refusals.py --tools FOLDER

Each file is a valid one with one change. The message must name the file, what was found
and what was expected; the exit status must be 1 and the folder unchanged: no copy, no
part file, and an earlier copy untouched.
"""

import argparse
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from datetime import date
from pathlib import Path

import netCDF4
import numpy
from netcdf_files import COLUMNS, FILL, MISSING, ROWS, Form, write_netcdf

NAME = "cru_ts4.01.1901.2016.tmp.dat.nc"
COPY = "cru_ts4.01.1901.2016.tmp.dat.new"
CELL = 5, 300, 80  # June 1901, 60.25 N, 139.75 W
PLACE = "June 1901, latitude 60.25, longitude -139.75: "
SMALL = {"format": "NETCDF4", "chunks": (1, ROWS, COLUMNS), "level": 1}


def stored_year(months=12):
    stored = numpy.full((months, ROWS, COLUMNS), MISSING, dtype=numpy.int32)
    stored[:, 100:310, 50:200] = 84
    return stored


def with_value(value, name="tmp", form=None):
    """A valid file except for one value, given in physical units."""
    def write(path):
        write_netcdf(path, name, stored_year(), form or Form(**SMALL))
        with netCDF4.Dataset(path, "a") as file:
            file[name].set_auto_maskandscale(False)
            file[name][CELL] = value
    return write


def with_form(name="tmp", months=12, **changes):
    return lambda path: write_netcdf(path, name, stored_year(months), Form(**{**SMALL, **changes}))


def edited(edit, **changes):
    """A valid file, then changed by `edit(file)`."""
    def write(path):
        with_form(**changes)(path)
        with netCDF4.Dataset(path, "a") as file:
            edit(file)
    return write


def other_grid(rows, columns, step):
    """A file of another resolution."""
    def write(path):
        with netCDF4.Dataset(path, "w", format="NETCDF3_CLASSIC") as file:
            for name, size in ("lon", columns), ("lat", rows), ("time", None):
                file.createDimension(name, size)
                file.createVariable(name, "f4", (name,))
            file["lon"][:] = numpy.arange(columns) * step - 180 + step / 2
            file["lat"][:] = numpy.arange(rows) * step - 90 + step / 2
            file["time"].units = "days since 1900-1-1"
            file["time"][:] = [380 + 30.4 * i for i in range(12)]
            values = file.createVariable("tmp", "f4", ("time", "lat", "lon"), fill_value=FILL)
            values[:] = numpy.zeros((12, rows, columns))
    return write


def endless(months):
    """A file of many months, without values."""
    def write(path):
        with netCDF4.Dataset(path, "w", format="NETCDF4") as file:
            for name, size in ("lon", COLUMNS), ("lat", ROWS), ("time", months):
                file.createDimension(name, size)
                file.createVariable(name, "f4", (name,))
            file["lon"][:] = numpy.arange(COLUMNS) * 0.5 - 179.75
            file["lat"][:] = numpy.arange(ROWS) * 0.5 - 89.75
            file["time"].units = "days since 1900-1-1"
            file.createVariable("tmp", "f4", ("time", "lat", "lon"))
    return write


def bare(*variables):
    """A file that contains only variables of these names, without dimensions."""
    def write(path):
        with netCDF4.Dataset(path, "w", format="NETCDF3_CLASSIC") as file:
            for name in variables:
                file.createVariable(name, "f4", ())
    return write


def cut(size, **changes):
    """The first `size` bytes of a valid file; a negative `size` cuts bytes off its end."""
    def write(path):
        write_netcdf(path, "tmp", stored_year(), Form(**changes))
        with path.open("r+b") as file:
            file.truncate(size if size > 0 else path.stat().st_size + size)
    return write


def text(content):
    return lambda path: path.write_bytes(content)


def set_time(index, value):
    def edit(file):
        file["time"][index] = value
    return edited(edit)


def set_coordinate(name, index, value):
    def edit(file):
        file[name][index] = value
    return edited(edit)


def two_variables(path):
    with_form()(path)
    with netCDF4.Dataset(path, "a") as file:
        file.createVariable("pre", "f4", ("time", "lat", "lon"))


def without_coordinate(name):
    def write(path):
        with_form()(path)
        with netCDF4.Dataset(path, "a") as file:
            file.renameVariable(name, "other")
    return write


def with_dimensions(*names):
    """A file whose variable has other dimensions, which may include a level."""
    def edit(file):
        file.renameVariable("tmp", "tmp3")
        file.createDimension("level", 1)
        file.createVariable("tmp", "f4", names)
    return edited(edit)


ALL = "'lon', 'lat', 'time', 'tmp', 'stn'"
KNOWN = "pre tmp dtr tmn tmx vap pet cld frs wet scPDSI"
UNITS = "; expected days since a date, as 1900-1-1, in UTC"
LIMITS = " is no integer from -9999 to 99999"

# (description, function that writes the file, message after the file's name)
CASES = [
    ("hundredths", with_value(8.43), PLACE + "10 times 8.43000031" + LIMITS),
    ("off by 0.011", with_value(8.4011), PLACE + "10 times 8.40110016" + LIMITS),
    ("kelvin", with_value(281.55), PLACE + "10 times 281.549988" + LIMITS),
    ("too wide", with_value(10000), PLACE + "10 times 10000" + LIMITS),
    ("too wide below", with_value(-1000), PLACE + "10 times -1000" + LIMITS),
    ("not a number", with_value(float("nan")), PLACE + "10 times nan" + LIMITS),
    ("infinite", with_value(float("inf")), PLACE + "10 times inf" + LIMITS),
    ("another missing code", with_value(-9.99e8), PLACE + "10 times -999000000" + LIMITS),
    ("a value like the missing code", with_value(-99.9),
     PLACE + "10 times -99.9000015 is the code of a missing value"),
    ("latitudes reversed", with_value(8.43, form=Form(**SMALL, north_first=True)),
     "June 1901, latitude -60.25, longitude -139.75: 10 times 8.43000031" + LIMITS),
    ("longitudes from 0", with_value(8.43, form=Form(**SMALL, from_greenwich=True)),
     "June 1901, latitude 60.25, longitude 40.25: 10 times 8.43000031" + LIMITS),
    ("packed", with_form(attributes={"scale_factor": 0.1}),
     "'tmp' is packed: scale_factor is 0.1; expected the values themselves"),
    ("moved", with_form(attributes={"add_offset": 273.15}),
     "'tmp' is packed: add_offset is 273.15; expected the values themselves"),
    ("many zeros", with_form(attributes={"add_offset": numpy.zeros(1001)}),
     "the attribute add_offset has 1001 values; expected one"),
    ("integers", with_form(type="i4", fill=-999, missing_value=None),
     "'tmp' holds integers; expected float or double"),
    ("no longitudes", without_coordinate("lon"),
     "there are no coordinates for the dimension 'lon'; expected a variable of that name"),
    ("no latitudes", without_coordinate("lat"),
     "there are no coordinates for the dimension 'lat'; expected a variable of that name"),
    ("no times", without_coordinate("time"),
     "there are no coordinates for the dimension 'time'; expected a variable of that name"),
    ("one degree", other_grid(180, 360, 1.0),
     "there are 180 latitudes; expected 360, half a degree apart"),
    ("a quarter", other_grid(360, 1440, 0.25),
     "the first latitude is -89.875; expected -89.75 or 89.75"),
    ("edges of rows", set_coordinate("lat", 0, -90.0),
     "the first latitude is -90; expected -89.75 or 89.75"),
    ("a latitude amiss", set_coordinate("lat", 17, -81.5),
     "latitude 18 is -81.5; expected -81.25, half a degree from the one before"),
    ("edges of columns", set_coordinate("lon", 0, -180.0),
     "the first longitude is -180; expected -179.75 or 0.25"),
    ("a longitude amiss", set_coordinate("lon", 719, float("nan")),
     "longitude 720 is nan; expected 179.75, half a degree from the one before"),
    ("from February", with_form(epoch=date(1900, 1, 1), units="days since 1900-2-1"),
     "the first month is February 1901; expected a January"),
    ("eleven months", with_form(months=11), "there are 11 months; expected 12 for each year"),
    ("no month", with_form(months=0), "there are 0 months; expected 12 for each year"),
    ("no month, classic",
     with_form(months=0, format="NETCDF3_CLASSIC", chunks=None, level=0),
     "there are 0 months; expected 12 for each year"),
    ("a month twice", set_time(3, 450), "time 4 is in March 1901; expected April 1901"),
    ("a month left out", set_time(11, 760), "time 12 is in January 1902; expected December 1901"),
    ("no time at all", set_time(4, float("nan")), "a time is nan days; expected a month"),
    ("days of the earth", set_time(0, 1e30), "a time is 1.00000002e+30 days; expected a month"),
    ("hours", with_form(units="hours since 1900-1-1"),
     "the units of time are 'hours since 1900-1-1'" + UNITS),
    ("months", with_form(units="months since 1900-1-1"),
     "the units of time are 'months since 1900-1-1'" + UNITS),
    ("no date", with_form(units="days since 1900-13-1"),
     "the units of time are 'days since 1900-13-1'" + UNITS),
    ("another zone", with_form(units="days since 1900-1-1 00:00 +1:00"),
     "the units of time are 'days since 1900-1-1 00:00 +1:00'" + UNITS),
    ("no units", edited(lambda file: file["time"].delncattr("units")),
     "the units of time are ''" + UNITS),
    ("no units of a date, in a string",
     edited(lambda file: file["time"].setncattr_string("units", "hours since 1900-1-1")),
     "the units of time are 'hours since 1900-1-1'" + UNITS),
    ("a letter for units", with_form(units="d"), "the units of time are 'd'" + UNITS),
    ("long units", with_form(units="d" * 1000),
     "the units of time are '" + "d" * 60 + "...'" + UNITS),
    ("overlong units", edited(lambda file: file["time"].setncattr("units", "d" * 1001)),
     "the attribute units has 1001 values; expected one"),
    ("a word for missing values",
     with_form(missing_value=None, attributes={"missing_value": "none"}),
     "the attribute missing_value of 'tmp' is text; expected a number"),
    ("very many months", endless(100_000),
     "there are 100000 months; expected 12 for each year"),
    ("too many months", endless(100_001),
     "the dimension 'time' has a length of 100001; expected at most 100000"),
    ("no leap years", with_form(calendar="noleap"),
     "the calendar of time is 'noleap'; expected standard, gregorian or proleptic_gregorian"),
    ("months of 30 days", with_form(calendar="360_day"),
     "the calendar of time is '360_day'; expected standard, gregorian or proleptic_gregorian"),
    ("another variable", with_form(name="pre"),
     "the variables are 'lon', 'lat', 'time', 'pre', 'stn'; expected 'tmp', as in "
     "the file's name"),
    ("an unknown variable", with_form(name="temperature"),
     "the variables are 'lon', 'lat', 'time', 'temperature', 'stn'; expected 'tmp', as in "
     "the file's name"),
    ("no variable", bare(), "the variables are none; expected 'tmp', as in the file's name"),
    ("a number", bare("tmp"), "'tmp' has the dimensions (); expected (time, lat, lon)"),
    ("a map", with_dimensions("lat", "lon"),
     "'tmp' has the dimensions ('lat', 'lon'); expected (time, lat, lon)"),
    ("series", with_dimensions("lon", "lat", "time"),
     "'tmp' has the dimensions ('lon', 'lat', 'time'); expected (time, lat, lon)"),
    ("levels of one time", with_dimensions("level", "lat", "lon"),
     "'tmp' has the dimensions ('level', 'lat', 'lon'); expected (time, lat, lon)"),
    ("levels along a meridian", with_dimensions("time", "level", "lon"),
     "'tmp' has the dimensions ('time', 'level', 'lon'); expected (time, lat, lon)"),
    ("levels along a parallel", with_dimensions("time", "lat", "level"),
     "'tmp' has the dimensions ('time', 'lat', 'level'); expected (time, lat, lon)"),
    ("half of HDF5", cut(100_000, **SMALL),
     "the netCDF library can't read it: NetCDF: HDF error"),
    ("not netCDF", text(b"CDF\x07" + bytes(1000)),
     "the netCDF library can't read it: NetCDF: Unknown file format"),
    ("a damaged header", text(b"CDF\x01" + bytes(8) + b"\xff" * 8 + bytes(1000)),
     "the file ends in its header"),
    ("a mark alone", text(b"\x89HDF\r\n\x1a\n"),
     "the netCDF library can't read it: NetCDF: HDF error"),
    ("half a header", cut(500), "the file ends in its header"),
    ("an error page", text(b"not found\n"),
     "line 1, field 1: 'not' is not an integer"
     " (the file is not netCDF, although its name says so)"),
]
# Files whose names contain no variable.
NAMELESS = [
    ("two variables", two_variables, "the variables are 'lon', 'lat', 'time', 'tmp', 'stn', "
     "'pre'; expected just one of " + KNOWN),
    ("an unknown variable", with_form(name="temperature"), "the variables are 'lon', 'lat', "
     "'time', 'temperature', 'stn'; expected just one of " + KNOWN),
]


def folder_state(folder):
    return {path.name: path.read_bytes() for path in folder.iterdir()}


def tersify(tools, folder, *names, limit=None, open_files=None):
    def limited():
        if limit:
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
        if open_files:
            resource.setrlimit(resource.RLIMIT_NOFILE, (open_files, open_files))
    return subprocess.run([tools / "tersify", *names], cwd=folder, capture_output=True,
                          text=True, preexec_fn=limited)


def expect_refused(tools, folder, what, name, message, limit=None):
    """Condenses the file twice, without and with an earlier copy."""
    copy = folder / (name.removesuffix(".nc") + ".new")
    for earlier in (None, b"an earlier copy"):
        if earlier:
            copy.write_bytes(earlier)
        before = folder_state(folder)
        done = tersify(tools, folder, name, limit=limit)
        assert done.returncode == 1, f"{what}: status {done.returncode}"
        first = done.stderr.splitlines()[0]
        assert first == f"tersify: {message}", f"{what}:\n  {first}\n  tersify: {message}"
        assert done.stdout == "", f"{what}: {done.stdout}"
        assert folder_state(folder) == before, f"{what}: the folder has changed"
    copy.unlink()


def check_cases(tools, folder):
    for name, cases in (NAME, CASES), ("grid.nc", NAMELESS):
        for what, write, message in cases:
            path = folder / name
            write(path)
            expect_refused(tools, folder, what, name, f"'{name}': {message}")
            path.unlink()
    return len(CASES) + len(NAMELESS)


def check_cut_files(tools, folder):
    """The netCDF library reads the missing end of a truncated classic file as zeros."""
    path = folder / NAME
    whole = folder / "whole"
    count = 0
    for kind in "NETCDF3_CLASSIC", "NETCDF3_64BIT_OFFSET", "NETCDF3_64BIT_DATA":
        for stations in True, False:
            write_netcdf(whole, "tmp", stored_year(), Form(format=kind, stations=stations))
            size = whole.stat().st_size
            for less in 1, 4, 5000, 3_000_000, size - 60_000:
                shutil.copyfile(whole, path)
                with path.open("r+b") as file:
                    file.truncate(size - less)
                expect_refused(
                    tools, folder, f"{kind}, {less} bytes less", NAME,
                    f"'{NAME}': the file is cut: it has {size - less} bytes; expected {size}")
                count += 1
    whole.unlink()
    path.unlink()
    return count


def check_disk(tools, folder):
    """A disk that fills up while the copy is written."""
    path = folder / NAME
    with_form()(path)
    expect_refused(tools, folder, "a full disk", NAME,
                   f"cannot write '{COPY}.part': File too large", limit=3_000_000)
    path.unlink()
    return 1


def check_several(tools, folder):
    """An invalid file doesn't keep the others from being condensed."""
    with_form()(folder / NAME)
    with_value(8.43, "pre")(folder / "b.pre.nc")
    done = tersify(tools, folder, NAME, "b.pre.nc")
    assert done.returncode == 1 and (folder / COPY).stat().st_size == 12 * ROWS * 3601
    assert done.stdout.endswith("condensed 1 of 2 files\n"), done.stdout
    assert done.stderr.endswith("tersify: not condensed: 'b.pre.nc'\n"), done.stderr
    assert not (folder / "b.pre.new").exists()
    return 1


def check_many(tools, folder):
    """A refused file is closed: a run takes more files than it may have open at a time."""
    with_form(units="hours since 1900-1-1", format="NETCDF3_CLASSIC", chunks=None,
              level=0)(folder / NAME)
    done = tersify(tools, folder, *[NAME] * 40, open_files=24)
    assert done.returncode == 1
    message = f"tersify: '{NAME}': the units of time are 'hours since 1900-1-1'{UNITS}"
    assert done.stderr.splitlines().count(message) == 40, done.stderr
    (folder / NAME).unlink()
    return 1


def check_one_copy_for_two(tools, folder):
    """All files of the drought index have one name for their copies: a second one in a run
    doesn't replace the first."""
    for number, name in enumerate(("scPDSI.a.nc", "scPDSI.b.nc")):
        write_netcdf(folder / name, "scpdsi", stored_year() + number, Form(**SMALL))
    copy = "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new"
    assert tersify(tools, folder, "scPDSI.a.nc").returncode == 0
    first = (folder / copy).read_bytes()
    (folder / copy).unlink()
    done = tersify(tools, folder, "scPDSI.a.nc", "scPDSI.b.nc")
    assert done.returncode == 1
    assert done.stderr == (
        f"tersify: '{copy}' is the same file as the copy of 'scPDSI.a.nc'; nothing was "
        "written\ntersify: not condensed: 'scPDSI.b.nc'\n"), done.stderr
    assert (folder / copy).read_bytes() == first, "the first copy has changed"
    # In a run of its own the second one replaces it, and one file may be named twice.
    done = tersify(tools, folder, "scPDSI.b.nc", "scPDSI.b.nc")
    assert done.returncode == 0, done.stderr
    assert (folder / copy).read_bytes() != first
    for name in ("scPDSI.a.nc", "scPDSI.b.nc", copy):
        (folder / name).unlink()
    return 1


def check_signals(tools, folder):
    """A killed run leaves no copy; a run that is asked to stop leaves no part file either."""
    # The tests may have been started with these signals ignored.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    signal.signal(signal.SIGTERM, signal.SIG_DFL)
    path, copy, part = folder / "big.tmp.nc", folder / "big.tmp.new", folder / "big.tmp.new.part"
    write_netcdf(path, "tmp", stored_year(60), Form(stations=False))
    for number, status in (signal.SIGKILL, -9), (signal.SIGTERM, 143), (signal.SIGINT, 130):
        for _ in range(20):  # on a busy machine a run may end before the signal
            part.unlink(missing_ok=True)
            run = subprocess.Popen([tools / "tersify", path.name], cwd=folder,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
            while run.poll() is None and not (part.exists() and part.stat().st_size > 0):
                time.sleep(0.0005)
            run.send_signal(number)
            said = run.communicate()[1]
            if not copy.exists():
                break
            copy.unlink()
        assert run.returncode == status, f"{number}: status {run.returncode}"
        assert not copy.exists(), f"a copy after {number}"
        assert part.exists() == (number == signal.SIGKILL), f"a part after {number}"
        expected = "" if number == signal.SIGKILL else (
            "tersify: interrupted\ntersify: not condensed: 'big.tmp.nc'\n")
        assert said == expected, said
    # The part file of the killed run doesn't hinder the next one.
    part.write_bytes(b"rest")
    done = tersify(tools, folder, path.name)
    assert done.returncode == 0 and copy.exists() and not part.exists()
    copy.unlink()
    path.unlink()
    return 3


def check_first_years(tools, folder):
    """A copy whose name gives a wrong first year is made, with a warning."""
    for name, told in ("cru_ts4.01.1901.1901.tmp.dat", 1901), ("grid.tmp", 1901):
        path = folder / (name + ".nc")
        write_netcdf(path, "tmp", stored_year(), Form(**SMALL), first_year=1950)
        done = tersify(tools, folder, path.name)
        assert done.returncode == 0
        assert done.stderr == (
            f"tersify: warning: '{name}.new' begins in 1950, and by its name it begins in "
            f"{told}; give it a name with its years, as .1950.1950.\n"), done.stderr
        (folder / (name + ".new")).unlink()
        path.unlink()
    path = folder / "cru_ts4.01.1950.1950.tmp.dat.nc"
    write_netcdf(path, "tmp", stored_year(), Form(**SMALL), first_year=1950)
    assert tersify(tools, folder, path.name).stderr == ""
    # Under its usual name the index would be read as if it began in 1901.
    path = folder / "scPDSI.1950.1950.nc"
    write_netcdf(path, "scpdsi", stored_year(), Form(**SMALL), first_year=1950)
    done = tersify(tools, folder, path.name)
    assert done.stdout.startswith("wrote 'scPDSI.1950.1950.new': "), done.stdout
    return 4


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tools", required=True, type=Path)
    tools = parser.parse_args().tools.resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        count = check_cases(tools, folder)
        count += check_cut_files(tools, folder)
        count += check_disk(tools, folder)
        count += check_several(tools, folder)
        count += check_many(tools, folder)
        count += check_one_copy_for_two(tools, folder)
        count += check_signals(tools, folder)
        count += check_first_years(tools, folder)
    print(f"{count} files refused, and nothing left behind")


if __name__ == "__main__":
    sys.exit(main())
