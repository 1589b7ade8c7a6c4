#!/usr/bin/env python3
# Pictures of an extract: the saved cells on a map, one cell's annual means and annual
# cycle, and the variance report on the map. Python's standard library only.
#
#   python3 cells.py STEM [LON LAT]
#
# reads   STEM.TSF and, if there is one, STEM.ftst
# writes  STEM.map.svg, STEM.years.svg, STEM.cycle.svg, STEM.f.svg (a browser shows them)
#
# LON LAT is the centre of the cell for annual means and cycle, in degrees, east and north
# positive; without it the first saved cell is taken. Needs read_tsf.py, picture.py and
# land_mask.txt.gz beside it.
import math
import os
import re
import sys
from itertools import groupby

from picture import DARK_TO_LIGHT, FROM_WHITE, Map, Picture, colour, east, north, ticks
from read_tsf import DATA_SETS, data_set_of, read_tsf

BLUE = "#3b528b"


# --- Reading.

def mean_of_known(values):
    known = [value for value in values if not math.isnan(value)]
    return sum(known) / len(known) if known else math.nan


def read_extract(name, chosen):
    """Reads {cell: mean of its complete years} and {year: twelve values} of one cell.

    A cell is (longitude, latitude); without a chosen one the first is taken. A year with
    a missing month is NaN: without its January it would look too warm.
    """
    means, kept, spans = {}, {}, set()
    for cell, rows in groupby(read_tsf(name), key=lambda row: row[:2]):
        years = {}
        for _, _, year, _, value in rows:
            years.setdefault(year, []).append(value)
        means[cell] = mean_of_known([annual_mean(months) for months in years.values()])
        spans.add((min(years), max(years)))
        if cell == chosen or not (chosen or kept):
            kept = years
    if not means:
        raise ValueError("%s holds no cell: the search was left before its end, or its "
                         "box has no cell with data" % name)
    if len(spans) > 1:
        raise ValueError("%s is cut off: its cells have different years" % name)
    return means, kept


def annual_mean(months):
    return sum(months) / 12    # every month has the same weight


def read_report(name):
    """Returns the first, cutoff and last year, and {cell: (f, prob)}.

    Cells whose f is NaN are left out. Inf is kept: one period had no variance at all.
    """
    with open(name, encoding="latin-1") as file:
        lines = file.read().splitlines()
    words = lines[0].split() if lines else []    # ... Variance:  1901- 1959  1960- 2016
    if words[4:5] != ["Variance:"] or any(len(line) != 65 for line in lines[2:]):
        raise ValueError("%s is no variance report, or is cut off" % name)
    years = int(words[5].rstrip("-")), int(words[6]), int(words[8])
    return years, {(float(line[2:17]), float(line[18:33])):
                   (float(line[34:49]), float(line[50:65])) for line in lines[2:]}


# --- The pictures.

def draw_map(name, title, unit, means):
    known = [mean for mean in means.values() if not math.isnan(mean)]
    low, high = (min(known), max(known)) if known else (0, 0)
    high = max(high, low + 0.1)
    picture = Map(*title, means, bottom=110)
    for cell, mean in means.items():
        picture.filled_cell(cell, "cell", "white" if math.isnan(mean) else
                            colour(DARK_TO_LIGHT, (mean - low) / (high - low)))
    picture.colour_bar(DARK_TO_LIGHT, [((tick - low) / (high - low), "%g" % tick)
                                       for tick in ticks(low, high, 6)],
                       "mean of the years, " + unit)
    picture.save(name)


def draw_years(name, title, axis, years):
    means = {year: annual_mean(months) for year, months in years.items()}
    known = [mean for mean in means.values() if not math.isnan(mean)] or [0]
    space = max(0.08 * (max(known) - min(known)), 0.05)
    beside = 0.02 * (max(years) - min(years)) + 0.5
    picture = Picture(*title, (min(years) - beside, max(years) + beside),
                      (min(known) - space, max(known) + space), 800, 360, bottom=60)
    for year in ticks(*picture.x_range, 12):
        if year == int(year):
            picture.x_tick(year, "%d" % year)
    for mean in ticks(*picture.y_range, 7):
        picture.y_tick(mean, "%g" % mean)
    for year, mean in means.items():
        before = means.get(year - 1, math.nan)
        if not math.isnan(mean + before):    # a missing year leaves a gap
            picture.line(picture.x(year - 1), picture.y(before),
                         picture.x(year), picture.y(mean), BLUE, 1.5)
    for year, mean in means.items():
        if not math.isnan(mean):
            picture.add("circle", class_="year", cx=picture.x(year), cy=picture.y(mean),
                        r=3, fill=BLUE)
    picture.axis_titles("year", axis)
    picture.save(name)


def draw_cycle(name, title, axis, years):
    """The mean of each calendar month; a bar from its lowest to its highest value."""
    months = [[value for value in values if not math.isnan(value)]
              for values in zip(*years.values())]
    known = [value for values in months for value in values] or [0]
    space = max(0.05 * (max(known) - min(known)), 0.05)
    picture = Picture(*title, (0.5, 12.5), (min(known) - space, max(known) + space),
                      560, 360, bottom=60)
    for month, letter in enumerate("JFMAMJJASOND", 1):
        picture.x_tick(month, letter)
    for value in ticks(*picture.y_range, 7):
        picture.y_tick(value, "%g" % value)
    means = [(picture.x(month), picture.y(mean_of_known(values)))
             for month, values in enumerate(months, 1) if values]
    for month, values in enumerate(months, 1):
        if values:
            x = picture.x(month)
            picture.line(x, picture.y(min(values)), x, picture.y(max(values)), "#b8c4dc",
                         8, class_="range")
    for before, after in zip(means, means[1:]):
        picture.line(*before, *after, BLUE, 1.5)
    for x, y in means:
        picture.add("circle", class_="month", cx=x, cy=y, r=3, fill=BLUE)
    picture.axis_titles("month", axis)
    picture.save(name)


def draw_report(name, title, cells, report):
    """f from white at 1 to dark red at 4 and more; cells with prob < 0.05 are ringed.

    The scale is fixed, so that maps can be compared, and logarithmic, as f is a ratio.
    """
    picture = Map(*title, cells, bottom=180)
    # Cells without an f first, infinite ones last, so that nothing hides them.
    for cell in sorted(cells, key=lambda cell: report.get(cell, (0, 0))[0]):
        f, prob = report.get(cell, (0, math.nan))
        if f == math.inf:
            picture.filled_cell(cell, "infinite", "white")
            x, y = picture.x(picture.place(cell[0])), picture.y(cell[1])
            for side in (3, -3):
                picture.line(x - 3, y - side, x + 3, y + side, "black", 1.2)
        elif f >= 1:
            picture.filled_cell(cell, "finite",
                                colour(FROM_WHITE, math.log(f) / math.log(4)))
        else:    # no f, or one below 1, which only rounding gives
            picture.cell(cell, "none", fill="none", stroke="#909090", stroke_width=0.5)
        if prob < 0.05:
            picture.ring(cell)
    picture.colour_bar(FROM_WHITE, [(0, "1"), (0.25, "1.41"), (0.5, "2"), (0.75, "2.83"),
                                    (1, "4 or more")],
                       "f, the larger variance over the smaller")
    x, y = picture.LEFT + 6, picture.TOP + picture.height + 122
    picture.add("circle", cx=x, cy=y, r=4, fill="none", stroke="black", stroke_width=1.2)
    picture.text(x + 12, y + 5, "prob below 0.05")
    for side in (3, -3):
        picture.line(x + 177, y - side, x + 183, y + side, "black", 1.2)
    picture.text(x + 192, y + 5, "f infinite: no variance in one period")
    picture.add("circle", cx=x, cy=y + 24, r=3, fill="none", stroke="#909090",
                stroke_width=0.5)
    picture.text(x + 12, y + 29, "no f in the report")
    picture.save(name)


def main(stem, lon=None, lat=None):
    chosen = (float(lon), float(lat)) if lat else None
    means, years = read_extract(stem + ".TSF", chosen)
    if not years:
        raise ValueError("no saved cell has its centre at %s %s" % (lon, lat))
    chosen = chosen or next(iter(means))
    with open(stem + ".TSF", encoding="latin-1") as file:
        heading = file.readline()
    quantity, unit, _, _ = DATA_SETS[data_set_of(heading)]
    first, last = min(years), max(years)
    known = [mean for mean in means.values() if not math.isnan(mean)] or [math.nan]

    print("data              ", "%s, %s" % (quantity, unit))
    print("cells             ", len(means))
    print("lowest mean       ", "%.4f" % min(known))
    print("highest mean      ", "%.4f" % max(known))
    print("chosen cell       ", "%.3f %.3f" % chosen)
    print("annual mean %d  " % first, "%.4f" % annual_mean(years[first]))
    print("annual mean %d  " % last, "%.4f" % annual_mean(years[last]))

    release = re.match("CRUts([0-9.]*)", heading[23:36])
    source = "CRU TS " + release[1] if release else "scPDSI"
    span = "%d to %d, %s" % (first, last, source)
    count = "1 cell" if len(means) == 1 else "%d cells" % len(means)
    where = "%s, %s, %s" % (quantity, north(chosen[1]), east(chosen[0]))
    axis = "%s, %s" % (quantity, unit)
    draw_map(stem + ".map.svg", (quantity + " of the saved cells",
                                 "%s, %s" % (span, count)), unit, means)
    draw_years(stem + ".years.svg", (where, "annual means, " + span), axis, years)
    draw_cycle(stem + ".cycle.svg",
               (where, "mean, lowest and highest of each month, " + span), axis, years)
    if not os.path.exists(stem + ".ftst"):
        return

    (report_first, cutoff, report_last), report = read_report(stem + ".ftst")
    # The report may be that of an earlier search: one without the test leaves it.
    if (report_first, report_last) != (first, last) or not set(report) <= set(means):
        raise ValueError("%s.ftst is of another search (%d to %d): no picture of it"
                         % (stem, report_first, report_last))
    finite = [f for f, prob in report.values() if f < math.inf]
    print("f values          ", len(report))
    print("infinite f        ", len(report) - len(finite))
    print("largest finite f  ", "%.6g" % max(finite, default=math.nan))
    print("prob below 0.05   ", sum(prob < 0.05 for f, prob in report.values()))
    # The cutoff year belongs to the second period, whatever the labels say.
    draw_report(stem + ".f.svg", (quantity + ": f of the variance test",
                                  "%d to %d against %d to %d, %s"
                                  % (first, cutoff - 1, cutoff, last, count)),
                means, report)


if __name__ == "__main__":
    if len(sys.argv) not in (2, 4):
        sys.exit("usage: python3 cells.py STEM [LON LAT]")
    try:
        main(*sys.argv[1:])
    except OSError as error:
        sys.exit("cannot read or write %s: %s" % (error.filename, error.strerror))
    except ValueError as error:
        sys.exit(str(error))
