"""What the recipes must find and draw, worked out from the series in exact arithmetic."""
import gzip
import math
from fractions import Fraction

from extracts import TOP

# Quantity, unit, and what one unit is in stored numbers.
VARIABLES = {
    "pre": ("Precipitation", "mm a month", 10),
    "tmp": ("Mean temperature", "°C", 10),
    "dtr": ("Diurnal temperature range", "°C", 10),
    "tmn": ("Minimum temperature", "°C", 10),
    "tmx": ("Maximum temperature", "°C", 10),
    "vap": ("Vapour pressure", "hPa", 10),
    "pet": ("Potential evapotranspiration", "mm a day", 10),
    "cld": ("Cloud cover", "percent", 10),
    "frs": ("Frost days", "days a month", 100),
    "wet": ("Wet days", "days a month", 100),
    "scPDSI": ("Drought index scPDSI", "index", 100),
}
BLUE, BAR, LAND, WHITE = (0x3b, 0x52, 0x8b), (0xb8, 0xc4, 0xdc), (0xe2,) * 3, (0xff,) * 3
MAP_COLOURS = [(68, 1, 84), (59, 82, 139), (33, 145, 140), (94, 201, 98), (253, 231, 37)]
F_COLOURS = [WHITE, (253, 212, 158), (252, 141, 89), (215, 48, 31), (165, 0, 15)]


# --- Numbers.

def physical(extract, stored):
    """A value in its unit; None when missing."""
    missing = -9999 if extract.variable == "scPDSI" else -999
    return None if stored == missing else Fraction(stored, VARIABLES[extract.variable][2])


def years_of(extract, cell):
    """{year: twelve values}"""
    values = [physical(extract, stored) for stored in extract.series[cell]]
    return {extract.first + i // 12: values[i:i + 12] for i in range(0, len(values), 12)}


def mean(values):
    """The mean of values that are all known, otherwise None."""
    return None if None in values or not values else Fraction(sum(values), len(values))


def known(values):
    return [value for value in values if value is not None]


def annual_means(extract, cell):
    return {year: mean(months) for year, months in years_of(extract, cell).items()}


def cell_means(extract):
    """{cell: mean of its complete years, or None}"""
    return {cell: mean(known(annual_means(extract, cell).values()))
            for cell in extract.series}


def variance(values):
    average = Fraction(sum(values), len(values))
    return sum((value - average) ** 2 for value in values) / (len(values) - 1)


def f_values(extract):
    """f of every cell that has one; infinity where only one of the periods varies."""
    result = {}
    if extract.variable != "frs":
        return result    # without frost days in the run all samples are zeros
    split = 12 * (extract.cutoff - extract.first)    # the cutoff year is in the second
    for cell, values in extract.series.items():
        low, high = sorted((variance(values[:split]), variance(values[split:])))
        if high > 0:
            result[cell] = high / low if low > 0 else math.inf
    return result


def numbers(extract, chosen):
    """{label: what a recipe prints}"""
    means = known(cell_means(extract).values())
    annual = annual_means(extract, chosen)
    result = {
        "data": "%s, %s" % VARIABLES[extract.variable][:2],
        "cells": len(extract.series),
        "lowest mean": min(means, default=None),
        "highest mean": max(means, default=None),
        "chosen cell": chosen,
        "annual mean %d" % extract.first: annual[extract.first],
        "annual mean %d" % extract.last: annual[extract.last],
    }
    if extract.cutoff:
        f = f_values(extract)
        finite = [value for value in f.values() if value < math.inf]
        result["f values"] = len(f)
        result["infinite f"] = len(f) - len(finite)
        result["largest finite f"] = max(finite, default=None)
        result["prob below 0.05"] = sum(prob < 0.05 for _, prob in
                                        extract.report().values())
    return result


# --- Places: pixels from the left and the top of a picture.

class Frame:
    LEFT, TOP = 80, 70

    def __init__(self, x_range, y_range, width, height):
        self.x_range, self.y_range = x_range, y_range
        self.width, self.height = width, height

    def place(self, x, y):
        (west, east), (south, north) = self.x_range, self.y_range
        return (self.LEFT + float((x - west) / (east - west)) * self.width,
                self.TOP + float((north - y) / (north - south)) * self.height)


class MapFrame(Frame):
    """Three degrees or 5 % around the cells, neither very flat nor very high."""

    def __init__(self, cells):
        lons, lats = zip(*cells)
        self.joined = min(lons) < 0 < max(lons) and min(map(abs, lons)) > 90
        lons = [lon % 360 for lon in lons] if self.joined else lons
        x, y = (min(lons) + max(lons)) / 2, (min(lats) + max(lats)) / 2
        width, height = max(lons) - min(lons) + 0.5, max(lats) - min(lats) + 0.5
        shrink = max(math.cos(math.radians(y)), 0.2)
        half_x = width / 2 + max(3 / shrink, width / 20)
        half_y = max(height / 2 + max(3, height / 20), half_x * shrink / 4)
        half_x = min(max(half_x, half_y / shrink / 1.15), 180)
        y_range = max(y - half_y, -90), min(y + half_y, 90)
        ratio = (y_range[1] - y_range[0]) / (2 * half_x * shrink)
        size = (800, round(800 * ratio)) if ratio < 0.8 else (round(640 / ratio), 640)
        super().__init__((x - half_x, x + half_x), y_range, *size)
        self.circles = len(cells) < 500 and size[0] / half_x / 4 < 4

    def place(self, x, y):
        return super().place(x % 360 if self.joined else x, y)


def land(lon, lat):
    """Whether the cell with this centre is land."""
    return LAND_ROWS[int((lat + 90) * 2)][int(((lon + 180) % 360) * 2)] == "1"


with gzip.open(TOP / "docs" / "recipes" / "land_mask.txt.gz", "rt") as _file:
    LAND_ROWS = _file.read().split()


def colour(scale, share):
    place = min(max(float(share), 0), 1) * 4
    i = min(int(place), 3)
    return tuple(a + (place - i) * (b - a) for a, b in zip(scale[i], scale[i + 1]))


class Picture:
    """A frame, marks as (class, x, y, colour or None), and texts that are in it."""

    def __init__(self, frame, bottom, marks, texts):
        self.frame, self.marks, self.texts = frame, marks, texts
        self.width, self.height = frame.width + 110, frame.height + 70 + bottom


def degrees(value, positive, negative):
    return "%g°%s" % (abs(value), positive if value > 0 else negative if value else "")


def pictures(extract, chosen):
    quantity, unit, _ = VARIABLES[extract.variable]
    span = "%d to %d, %s" % (extract.first, extract.last, extract.source)
    where = "%s, %s, %s" % (quantity, degrees(chosen[1], "N", "S"),
                            degrees(chosen[0], "E", "W"))
    axis = "%s, %s" % (quantity, unit)
    count = "1 cell" if len(extract.series) == 1 else "%d cells" % len(extract.series)
    result = {
        "map": Picture(MapFrame(extract.series), 110, map_marks(extract),
                       [quantity + " of the saved cells", "%s, %s" % (span, count),
                        "mean of the years, " + unit]),
        "years": Picture(years_frame(extract, chosen), 60, years_marks(extract, chosen),
                         [where, "annual means, " + span, axis, "year"]),
        "cycle": Picture(cycle_frame(extract, chosen), 60, cycle_marks(extract, chosen),
                         [where, "mean, lowest and highest of each month, " + span, axis,
                          "month", *"JFMAMJJASOND"]),
    }
    if extract.cutoff:
        periods = "%d to %d against %d to %d, %s" % (
            extract.first, extract.cutoff - 1, extract.cutoff, extract.last, count)
        result["f"] = Picture(MapFrame(extract.series), 180, f_marks(extract),
                              [quantity + ": f of the variance test", periods, "1",
                               "1.41", "2", "2.83", "4 or more", "prob below 0.05",
                               "f, the larger variance over the smaller"])
    return result


def map_marks(extract):
    frame, means = MapFrame(extract.series), cell_means(extract)
    low = min(known(means.values()), default=0)
    high = max([low + Fraction(1, 10), *known(means.values())])
    return [("cell", *frame.place(*cell),
             WHITE if means[cell] is None else
             colour(MAP_COLOURS, (means[cell] - low) / (high - low)))
            for cell in extract.cells()]


def f_marks(extract):
    frame, f, report = MapFrame(extract.series), f_values(extract), extract.report()
    marks = []
    for cell in extract.cells():
        value = f.get(cell)
        kind = "none" if value is None else "infinite" if value == math.inf else "finite"
        marks.append((kind, *frame.place(*cell),
                      colour(F_COLOURS, math.log(value) / math.log(4))
                      if kind == "finite" else WHITE if kind == "infinite" else None))
        if cell in report and report[cell][1] < 0.05:
            marks.append(("ring", *frame.place(*cell), None))
    return marks


def value_range(values, share):
    values = known(values) or [0]
    space = max(share * float(max(values) - min(values)), 0.05)
    return float(min(values)) - space, float(max(values)) + space


def years_frame(extract, chosen):
    beside = 0.02 * (extract.last - extract.first) + 0.5
    return Frame((extract.first - beside, extract.last + beside),
                 value_range(annual_means(extract, chosen).values(), 0.08), 800, 360)


def years_marks(extract, chosen):
    frame = years_frame(extract, chosen)
    return [("year", *frame.place(year, value), BLUE)
            for year, value in annual_means(extract, chosen).items() if value is not None]


def cycle_frame(extract, chosen):
    values = [value for year in years_of(extract, chosen).values() for value in year]
    return Frame((0.5, 12.5), value_range(values, 0.05), 560, 360)


def cycle_marks(extract, chosen):
    """The means, then the two ends of each month's bar."""
    frame = cycle_frame(extract, chosen)
    columns = [(month, known(values)) for month, values in
               enumerate(zip(*years_of(extract, chosen).values()), 1) if known(values)]
    return ([("month", *frame.place(month, mean(values)), BLUE)
             for month, values in columns] +
            [("range", *frame.place(month, end(values)), BAR)
             for month, values in columns for end in (min, max)])
