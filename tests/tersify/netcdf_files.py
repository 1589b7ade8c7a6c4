"""Writes published grids as netCDF, with Python's netCDF4, from the sample's series.

The published form: `VAR(time, lat, lon)` as float in physical units, with 9.96921e+36 for a
missing value; `lat` from -89.75 and `lon` from -179.75 on, half a degree apart; `time` in
the middle of each month, in days since a date; and `stn`, the number of stations. Other
forms reverse the latitudes, count longitudes from 0 or days from another date, or use
netCDF-4.
"""

import csv
import gzip
from dataclasses import dataclass, field
from datetime import date, timedelta
from pathlib import Path

import netCDF4
import numpy

SAMPLE = Path(__file__).resolve().parents[2] / "data" / "sample"
ROWS, COLUMNS = 360, 720
FILL = numpy.float32(9.96921e36)
MISSING = -999  # the code in a series

LONG_NAMES = {
    "pre": ("precipitation", "mm/month"),
    "tmp": ("near-surface temperature", "degrees Celsius"),
    "dtr": ("diurnal temperature range", "degrees Celsius"),
    "tmn": ("near-surface temperature minimum", "degrees Celsius"),
    "tmx": ("near-surface temperature maximum", "degrees Celsius"),
    "vap": ("vapour pressure", "hPa"),
    "pet": ("potential evapotranspiration", "mm/day"),
    "cld": ("cloud cover", "percentage"),
    "frs": ("ground frost frequency", "days"),
    "wet": ("wet day frequency", "days"),
    "scpdsi": ("self-calibrating Palmer drought severity index", "1"),
}
PER_UNIT = {"frs": 100, "wet": 100, "scpdsi": 100}


@dataclass
class Form:
    """How a file is laid out; the defaults are the published form."""

    format: str = "NETCDF3_CLASSIC"
    north_first: bool = False
    from_greenwich: bool = False
    units: str = "days since 1900-1-1"
    epoch: date = date(1900, 1, 1)
    calendar: str | None = "gregorian"
    time_type: str = "f4"
    type: str = "f4"
    fill: object = FILL  # None: no _FillValue attribute
    missing_value: object = FILL
    fixed_time: bool = False  # no unlimited dimension
    stations: bool = True
    chunks: tuple[int, int, int] | None = None
    level: int = 0  # compression level
    names: tuple[str, str, str] = ("time", "lat", "lon")
    attributes: dict[str, object] = field(default_factory=dict)  # additional ones of the variable


def stored_sample(variable, years):
    """Returns the stored integers of a sample, [month, row from the south, column]."""
    first, last = years
    months = 12 * (last - first + 1)
    grid = numpy.full((months, ROWS, COLUMNS), MISSING, dtype=numpy.int32)
    path = SAMPLE / f"cru_ts4.01_{variable}_1901_2016.csv.gz"
    with gzip.open(path, "rt", newline="") as lines:
        rows = csv.reader(lines)
        titles = next(rows)[2:]
        begin = titles.index(f"{first}-01")
        for lon, lat, *values in rows:
            row = round((float(lat) + 89.75) * 2)
            column = round((float(lon) + 179.75) * 2)
            grid[:, row, column] = [int(v) for v in values[begin : begin + months]]
    return grid


def middle(year, month):
    """Returns the date of a month in published files: 16 January, 15 February."""
    first = date(year, month, 1)
    following = date(year + month // 12, month % 12 + 1, 1)
    return first + timedelta(days=(following - first).days // 2)


def days(year, month, epoch):
    return (middle(year, month) - epoch).days


def as_published(stored, per_unit, form):
    """Returns physical values as computed in single precision: 84 as 8.400001."""
    missing = stored == MISSING
    step = numpy.float32(1) / numpy.float32(per_unit)
    values = (stored.astype(numpy.float32) * step).astype(form.type)
    marks = [mark for mark in (form.fill, form.missing_value, FILL) if mark is not None]
    values[missing] = marks[0]
    if form.north_first:
        values = values[:, ::-1, :]
    if form.from_greenwich:
        values = numpy.roll(values, COLUMNS // 2, axis=2)
    return values


def add_coordinates(file, form, years):
    time, lat, lon = form.names
    file.createDimension(lon, COLUMNS)
    file.createDimension(lat, ROWS)
    first, last = years
    months = [(y, m) for y in range(first, last + 1) for m in range(1, 13)]
    file.createDimension(time, len(months) if form.fixed_time else None)
    lons = file.createVariable(lon, "f4", (lon,))
    lons.long_name = "longitude"
    lons.units = "degrees_east"
    lons[:] = numpy.arange(COLUMNS) * 0.5 + (0.25 if form.from_greenwich else -179.75)
    lats = file.createVariable(lat, "f4", (lat,))
    lats.long_name = "latitude"
    lats.units = "degrees_north"
    lats[:] = (numpy.arange(ROWS) * 0.5 - 89.75)[:: -1 if form.north_first else 1]
    times = file.createVariable(time, form.time_type, (time,))
    times.long_name = "time"
    times.units = form.units
    if form.calendar is not None:
        times.calendar = form.calendar
    return times, [days(y, m, form.epoch) for y, m in months]


def describe(file):
    file.Conventions = "CF-1.4"
    file.title = "CRU TS Mean Temperature"
    file.institution = "Data held at British Atmospheric Data Centre, RAL, UK."
    file.source = "Run ID = 1709081022. Data generated from: tmp.1709081022.dtb"
    file.history = "Fri 8 Sep 2017 14:37:37 BST : User ianharris : Program makegridsauto.for"
    file.references = "Information on the data is available at the producer's"
    file.comment = "Access to these data is available to any registered user"
    file.contact = "support@example.org"


def write_netcdf(path, name, stored, form=Form(), first_year=1901):
    """Writes the stored integers of whole years as the variable `name`."""
    years = first_year, first_year + len(stored) // 12 - 1
    per_unit = PER_UNIT.get(name.lower(), 10)
    with netCDF4.Dataset(path, "w", format=form.format) as file:
        describe(file)
        times, numbers = add_coordinates(file, form, years)
        shape = form.names
        options = {}
        if form.format.startswith("NETCDF4"):
            options = {"chunksizes": form.chunks, "zlib": form.level > 0,
                       "complevel": max(form.level, 1)}
        fill = False if form.fill is None else form.fill
        variable = file.createVariable(name, form.type, shape, fill_value=fill, **options)
        variable.long_name, variable.units = LONG_NAMES.get(name.lower(), (name, "1"))
        variable.correlation_decay_distance = numpy.float32(1200)
        if form.missing_value is not None:
            variable.missing_value = form.missing_value
        for attribute, value in form.attributes.items():
            variable.setncattr(attribute, value)
        variable.set_auto_maskandscale(False)
        stations = None
        if form.stations:
            stations = file.createVariable("stn", "i4", shape, fill_value=-999, **options)
            stations.description = "number of stations contributing to each datum"
        # As many months at a time as a chunk holds.
        step = form.chunks[0] if form.chunks else 12
        for begin in range(0, len(stored), step):
            part = slice(begin, min(begin + step, len(stored)))
            variable[part] = as_published(stored[part], per_unit, form)
            if stations is not None:
                stations[part] = numpy.where(stored[part] == MISSING, -999, 8)
        times[:] = numbers
