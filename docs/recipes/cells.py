#!/usr/bin/env python3
# Three pictures of an extract: the saved cells on a map, one cell's annual means, and
# the f values of the variance report on the map. Python's standard library only.
#
#   python3 cells.py STEM [LON LAT]
#
# reads   STEM.TSF, STEM.XY and, if there is one, STEM.ftst
# writes  STEM.map.svg, STEM.years.svg, STEM.f.svg (a browser shows them)
#
# LON LAT is the centre of the cell for the annual means, in degrees, east and north
# positive; without it the first saved cell is taken.
import math
import os
import sys
from xml.sax.saxutils import escape

# The files hold whole numbers. What one unit of the physical quantity is in them:
# data set         quantity                       unit            stored as
VARIABLES = {
    "CRUts4.01ppt.": ("Precipitation",             "mm a month",   10),   # tenths
    "CRUts4.01tmp.": ("Mean temperature",          "degrees C",    10),
    "CRUts4.01dtr.": ("Diurnal temperature range", "degrees C",    10),
    "CRUts4.01tmn.": ("Minimum temperature",       "degrees C",    10),
    "CRUts4.01tmx.": ("Maximum temperature",       "degrees C",    10),
    "CRUts4.01vap.": ("Vapour pressure",           "hPa",          10),
    "CRUts4.01pet.": ("Potential evapotranspiration", "mm a day",  10),
    "CRUts4.01cld.": ("Cloud cover",               "percent",      10),
    "CRUts4.01frs.": ("Frost days",                "days a month", 100),  # hundredths
    "CRUts4.01wet.": ("Wet days",                  "days a month", 100),
    "scPDSI.dat.":   ("Drought index scPDSI",      "index",        100),
}
MISSING = (-999, -9999)
SERIES_LINE = 77    # characters of a year's line; a cell's heading is longer
NAN = float("nan")


# --- Reading. Fields have fixed columns: wide numbers touch, so never split on blanks.

def read_cells(name):
    """The cells of an .XY file as (longitude, latitude), in the order of the series."""
    with open(name) as file:
        next(file)    # the heading
        return [(float(line[1:10]), float(line[10:19])) for line in file]


def annual_mean(line, scale):
    """The mean of a year's twelve months in physical units, each month counting alike.

    NaN when a month is missing: without its January a year would look too warm.
    """
    months = [int(line[start:start + 6]) for start in range(5, 77, 6)]
    if any(month in MISSING for month in months):    # before scaling
        return NAN
    return sum(months) / 12 / scale


def read_series(name):
    """The data set's name and, for each cell, {year: annual mean}; NaN as above."""
    data_set, cells = "", []
    with open(name) as file:
        for line in file:
            if len(line.rstrip("\n")) > SERIES_LINE:
                data_set = line[23:36].strip()
                cells.append({})
            else:
                cells[-1][int(line[1:5])] = annual_mean(line, VARIABLES[data_set][2])
    return data_set, cells


def read_f(name):
    """The cutoff year and {(longitude, latitude): f} of a report.

    Cells whose f is no number are not there. Inf is: one period had no variance at all.
    """
    with open(name) as file:
        cutoff = int(next(file).split()[6])    # ... Variance:  1901- 1959  1960- 2016
        next(file)
        return cutoff, {(float(line[2:17]), float(line[18:33])): float(line[34:49])
                        for line in file}


def mean_of_known(values):
    known = [value for value in values if not math.isnan(value)]
    return sum(known) / len(known) if known else NAN


# --- Drawing: a small SVG helper.

# Dark blue to yellow, ever lighter: readable with any kind of colour vision, in grey
# as well.
COLOURS = [(68, 1, 84), (59, 82, 139), (33, 145, 140), (94, 201, 98), (253, 231, 37)]


def colour(share):
    """The colour at `share`, 0 to 1, of the scale."""
    place = min(max(share, 0), 1) * (len(COLOURS) - 1)
    i = min(int(place), len(COLOURS) - 2)
    return "#" + "".join("%02x" % round(a + (place - i) * (b - a))
                         for a, b in zip(COLOURS[i], COLOURS[i + 1]))


def ticks(low, high, most, steps=None):
    """At most `most` + 1 round numbers from low to high."""
    power = 10.0 ** math.floor(math.log10((high - low) / most))
    step = next(step for step in steps or [power, 2 * power, 5 * power, 10 * power]
                if (high - low) / step <= most)
    return [round(i * step, 6) for i in range(math.ceil(low / step - 1e-9),
                                              math.floor(high / step + 1e-9) + 1)]


class Picture:
    """A frame of `width` x `height` pixels in which (x, y) are data units."""

    LEFT, TOP = 80, 70

    def __init__(self, title, subtitle, x_range, y_range, height, bottom=110):
        self.x_range, self.y_range = x_range, y_range
        self.width, self.height, self.bottom = 800, height, bottom
        self.parts = []
        self.text(self.LEFT, 32, title, size=20, weight="bold")
        self.text(self.LEFT, 55, subtitle, size=14)

    def x(self, value):
        low, high = self.x_range
        return self.LEFT + (value - low) / (high - low) * self.width

    def y(self, value):
        low, high = self.y_range
        return self.TOP + (high - value) / (high - low) * self.height

    def add(self, element, **attributes):
        self.parts.append("<%s %s/>" % (element, " ".join(
            '%s="%s"' % (name.replace("_", "-"), "%.2f" % value
                         if isinstance(value, float) else value)
            for name, value in attributes.items())))

    def text(self, x, y, text, size=13, anchor="start", weight="normal", turn=0):
        self.parts.append(
            '<text x="%.1f" y="%.1f" font-size="%d" text-anchor="%s" '
            'font-weight="%s"%s>%s</text>' % (x, y, size, anchor, weight, turn and
                           ' transform="rotate(%d %.1f %.1f)"' % (turn, x, y) or "",
                           escape(text)))

    def line(self, x1, y1, x2, y2, stroke="#d0d0d0", stroke_width=1):
        self.add("line", x1=float(x1), y1=float(y1), x2=float(x2), y2=float(y2),
                 stroke=stroke, stroke_width=stroke_width)

    def x_tick(self, value, label):
        x, bottom = self.x(value), self.TOP + self.height
        self.line(x, self.TOP, x, bottom)
        self.text(x, bottom + 20, label, anchor="middle")

    def y_tick(self, value, label):
        self.line(self.LEFT, self.y(value), self.LEFT + self.width, self.y(value))
        self.text(self.LEFT - 8, self.y(value) + 5, label, anchor="end")

    def cell(self, lon, lat, half, kind, **style):
        """A cell as a rectangle, `half` its side in degrees."""
        x1, x2, y1, y2 = (self.x(lon - half), self.x(lon + half),
                          self.y(lat + half), self.y(lat - half))
        self.add("rect", **{"class": kind}, x=x1, y=y1, width=x2 - x1, height=y2 - y1,
                 **style)

    def colour_bar(self, labels, caption):
        """`labels`: (share of the bar, text)."""
        top = self.TOP + self.height + 42
        for i in range(100):
            self.add("rect", x=self.LEFT + 4.0 * i, y=top, width=4.5, height=14,
                     fill=colour((i + 0.5) / 100))
        for share, text in labels:
            x = self.LEFT + 400 * share
            self.line(x, top + 14, x, top + 19, "#404040")
            self.text(x, top + 33, text, anchor="middle")
        self.text(self.LEFT, top + 56, caption)

    def save(self, name):
        self.add("rect", x=self.LEFT, y=self.TOP, width=self.width, height=self.height,
                 fill="none", stroke="#404040")
        size = (self.LEFT + self.width + 30, self.TOP + self.height + self.bottom)
        with open(name, "w") as file:
            file.write('<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" '
                       'font-family="DejaVu Sans, Arial, sans-serif" fill="#202020">\n'
                       '<rect width="100%%" height="100%%" fill="white"/>\n' % size)
            file.write("\n".join(self.parts) + "\n</svg>\n")
        print("picture           ", name)


def degrees(value, positive, negative):
    value = (value + 180) % 360 - 180 if positive == "E" else value
    return "%g°%s" % (abs(value), positive if value > 0 else negative if value else "")


class Map(Picture):
    GRATICULE = (0.5, 1, 2, 5, 10, 15, 30, 45, 90)    # degrees

    def __init__(self, title, subtitle, cells):
        lons = [lon for lon, lat in cells]
        # Cells on both sides of the 180 degree meridian, and nowhere near Greenwich:
        # one map without a hole, which runs on beyond 180.
        self.joined = min(lons) < 0 < max(lons) and min(map(abs, lons)) > 90
        lons = [self.place(lon) for lon in lons]
        lats = [lat for lon, lat in cells]
        margin = min(max(0.5, 0.05 * (max(lons) - min(lons))), 5)
        x = [min(lons) - margin, max(lons) + margin]
        y = [max(min(lats) - margin, -90), min(max(lats) + margin, 90)]
        # A degree of longitude is drawn as long as it is in the middle of the map.
        shrink = math.cos(math.radians(sum(y) / 2))
        wider = max(0, 2.2 * (y[1] - y[0]) / shrink - (x[1] - x[0])) / 2
        x = [x[0] - wider, x[1] + wider]
        height = (y[1] - y[0]) / ((x[1] - x[0]) * shrink) * 800
        super().__init__(title, subtitle, x, y, max(height, 150))
        # Few cells on a large map are drawn larger than they are; many get no border,
        # which would hide their colour.
        self.few = len(cells) < 500
        self.half = max(0.25, 0.007 * (x[1] - x[0])) if self.few else 0.25
        for lon in ticks(*x, 9, self.GRATICULE):
            self.x_tick(lon, degrees(lon, "E", "W"))
        for lat in ticks(*y, 6, self.GRATICULE):
            self.y_tick(lat, degrees(lat, "N", "S"))

    def place(self, lon):
        return lon + 360 if self.joined and lon < 0 else lon


# --- The three pictures.

def draw_map(name, title, unit, cells, means):
    known = [mean for mean in means if not math.isnan(mean)]
    low, high = (min(known), max(known)) if known else (0, 0)
    high = max(high, low + 0.1)
    picture = Map(title[0], title[1], cells)
    for (lon, lat), mean in zip(cells, means):
        fill = "white" if math.isnan(mean) else colour((mean - low) / (high - low))
        picture.cell(picture.place(lon), lat, picture.half, "cell", fill=fill,
                     stroke="#404040" if picture.few else fill, stroke_width=0.5)
    picture.colour_bar([((tick - low) / (high - low), "%g" % tick)
                        for tick in ticks(low, high, 6)], "mean of the years, " + unit)
    picture.save(name)


def draw_years(name, title, unit, years):
    known = [mean for mean in years.values() if not math.isnan(mean)] or [0]
    space = max(0.08 * (max(known) - min(known)), 0.05)
    picture = Picture(title[0], title[1], (min(years) - 0.5, max(years) + 0.5),
                      (min(known) - space, max(known) + space), 360, bottom=60)
    for year in ticks(*picture.x_range, 12):
        if year == int(year):
            picture.x_tick(year, "%d" % year)
    for mean in ticks(*picture.y_range, 7):
        picture.y_tick(mean, "%g" % mean)
    for year, mean in years.items():
        if math.isnan(mean):
            continue
        before = years.get(year - 1, NAN)
        if not math.isnan(before):    # a missing year leaves a gap
            picture.line(picture.x(year - 1), picture.y(before),
                         picture.x(year), picture.y(mean), "#3b528b", 1.5)
        picture.add("circle", cx=picture.x(year), cy=picture.y(mean), r=3,
                    fill="#3b528b", **{"class": "year"})
    picture.text(24, picture.TOP + 180, unit, size=14, anchor="middle", turn=-90)
    picture.text(picture.LEFT + 400, picture.TOP + 405, "year", size=14,
                 anchor="middle")
    picture.save(name)


def draw_f(name, title, cells, f):
    # A single cell with f = 1000 would leave one colour for all others: beyond 4 the
    # colours change no more.
    largest = max([value for value in f.values() if value < math.inf], default=1)
    top = min(max(largest, 1.01), 4)
    picture = Map(title[0], title[1], cells)
    half = picture.half
    # Cells without an f first, infinite ones last, so that nothing hides them.
    for cell in sorted(cells, key=lambda cell: f.get(cell, 0)):
        lon, lat, value = picture.place(cell[0]), cell[1], f.get(cell, NAN)
        if value == math.inf:
            picture.cell(lon, lat, half, "infinite", fill="white", stroke="black",
                         stroke_width=1.5)
            for side in (half, -half):
                picture.line(picture.x(lon - half), picture.y(lat - side),
                             picture.x(lon + half), picture.y(lat + side), "black", 1.5)
        elif value >= 1:
            fill = colour(math.log(value) / math.log(top))
            picture.cell(lon, lat, half, "finite", fill=fill,
                         stroke="#404040" if picture.few else fill, stroke_width=0.5)
        else:    # no f, or one below 1, which only rounding gives
            picture.cell(lon, lat, half / 2, "none", fill="none", stroke="#909090")
    # Ratios of variances on a logarithmic scale.
    labels = [(i / 4, "%.3g" % top ** (i / 4)) for i in range(5)]
    if largest > top:
        labels[4] = (1, "4 or more")
    picture.colour_bar(labels, "f, the larger variance over the smaller")
    x, y = picture.LEFT + 460, picture.TOP + picture.height + 42
    picture.add("rect", x=x, y=y, width=12, height=12, fill="white", stroke="black")
    picture.line(x, y, x + 12, y + 12, "black")
    picture.line(x, y + 12, x + 12, y, "black")
    picture.text(x + 20, y + 11, "f infinite: no variance in one period")
    picture.add("rect", x=x + 3, y=y + 27, width=6, height=6, fill="none",
                stroke="#909090")
    picture.text(x + 20, y + 35, "no f: no variance in either period")
    picture.save(name)


def main(stem, lon=None, lat=None):
    cells = read_cells(stem + ".XY")
    data_set, series = read_series(stem + ".TSF")
    if len(cells) != len(series) or not cells:
        sys.exit("%s.XY and .TSF do not belong together, or hold no cell" % stem)
    quantity, unit, scale = VARIABLES[data_set]
    chosen = (float(lon), float(lat)) if lat else cells[0]
    if chosen not in cells:
        sys.exit("no saved cell has its centre at %g %g" % chosen)
    years = series[cells.index(chosen)]
    first, last = min(years), max(years)
    means = [mean_of_known(cell.values()) for cell in series]
    known = [mean for mean in means if not math.isnan(mean)] or [NAN]

    print("data              ", "%s, %s" % (quantity, unit))
    print("cells             ", len(cells))
    print("lowest mean       ", "%.4f" % min(known))
    print("highest mean      ", "%.4f" % max(known))
    print("chosen cell       ", "%.3f %.3f" % chosen)
    print("annual mean %d  " % first, "%.4f" % years[first])
    print("annual mean %d  " % last, "%.4f" % years[last])

    span = "%d to %d, CRU TS 4.01, %d cells" % (first, last, len(cells))
    if data_set == "scPDSI.dat.":
        span = span.replace("CRU TS 4.01", "scPDSI 3.25")
    draw_map(stem + ".map.svg", (quantity + " of the saved cells", span), unit, cells,
             means)
    where = "%s, %s" % (degrees(chosen[1], "N", "S"), degrees(chosen[0], "E", "W"))
    draw_years(stem + ".years.svg", ("%s, %s" % (quantity, where),
                                     "annual means of the twelve months"), unit, years)

    if os.path.exists(stem + ".ftst"):
        cutoff, f = read_f(stem + ".ftst")
        if not set(f) <= set(cells):
            sys.exit("%s.ftst belongs to another search" % stem)
        finite = [value for value in f.values() if value < math.inf]
        print("f values          ", len(f))
        print("infinite f        ", len(f) - len(finite))
        print("largest finite f  ", "%.6g" % max(finite, default=NAN))
        # The cutoff year belongs to the second period, whatever the labels say.
        span = "%d to %d against %d to %d, %d cells" % (first, cutoff - 1, cutoff, last,
                                                        len(cells))
        draw_f(stem + ".f.svg", (quantity + ": f of the variance test", span), cells, f)


if __name__ == "__main__":
    if len(sys.argv) not in (2, 4):
        sys.exit("usage: python3 cells.py STEM [LON LAT]")
    main(*sys.argv[1:])
