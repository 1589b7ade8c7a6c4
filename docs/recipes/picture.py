# Drawing for cells.py: a frame with titles, axes and a colour bar, and a map, as SVG.
# Python's standard library only.
import gzip
import math
import os
from xml.sax.saxutils import escape

# Dark blue to yellow, with increasing lightness: also readable in grey and with any kind
# of colour vision.
DARK_TO_LIGHT = [(68, 1, 84), (59, 82, 139), (33, 145, 140), (94, 201, 98), (253, 231, 37)]
# White stands for no change in variance.
FROM_WHITE = [(255, 255, 255), (253, 212, 158), (252, 141, 89), (215, 48, 31), (165, 0, 15)]


def colour(scale, share):
    """The colour at `share`, 0 to 1, of a scale."""
    place = min(max(share, 0), 1) * (len(scale) - 1)
    i = min(int(place), len(scale) - 2)
    return "#" + "".join("%02x" % round(a + (place - i) * (b - a))
                         for a, b in zip(scale[i], scale[i + 1]))


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

    def __init__(self, title, subtitle, x_range, y_range, width, height, bottom):
        self.x_range, self.y_range = x_range, y_range
        self.width, self.height, self.bottom = width, height, bottom
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
            '%s="%s"' % (name.rstrip("_").replace("_", "-"),
                         "%.2f" % value if isinstance(value, float) else value)
            for name, value in attributes.items())))

    def text(self, x, y, text, size=13, anchor="start", weight="normal", turn=0):
        self.parts.append(
            '<text x="%.1f" y="%.1f" font-size="%d" text-anchor="%s" '
            'font-weight="%s"%s>%s</text>' % (x, y, size, anchor, weight, turn and
                           ' transform="rotate(%d %.1f %.1f)"' % (turn, x, y) or "",
                           escape(text)))

    def line(self, x1, y1, x2, y2, stroke="#d0d0d0", stroke_width=1, **style):
        self.add("line", x1=float(x1), y1=float(y1), x2=float(x2), y2=float(y2),
                 stroke=stroke, stroke_width=stroke_width, **style)

    def x_tick(self, value, label):
        bottom = self.TOP + self.height
        self.line(self.x(value), self.TOP, self.x(value), bottom)
        self.text(self.x(value), bottom + 20, label, anchor="middle")

    def y_tick(self, value, label):
        self.line(self.LEFT, self.y(value), self.LEFT + self.width, self.y(value))
        self.text(self.LEFT - 8, self.y(value) + 5, label, anchor="end")

    def axis_titles(self, x_title, y_title):
        self.text(self.LEFT + self.width / 2, self.TOP + self.height + 45, x_title,
                  size=14, anchor="middle")
        self.text(24, self.TOP + self.height / 2, y_title, size=14, anchor="middle",
                  turn=-90)

    def colour_bar(self, scale, labels, caption):
        """`labels`: (share of the bar, text)."""
        top = self.TOP + self.height + 42
        for i in range(100):
            self.add("rect", x=self.LEFT + 4 * i, y=top, width=4, height=14,
                     fill=colour(scale, (i + 0.5) / 100), shape_rendering="crispEdges")
        self.add("rect", x=self.LEFT, y=top, width=400, height=14, fill="none",
                 stroke="#404040", stroke_width=0.5)
        for share, text in labels:
            x = self.LEFT + 400 * share
            self.line(x, top + 14, x, top + 19, "#404040")
            self.text(x, top + 33, text, anchor="middle")
        self.text(self.LEFT, top + 56, caption)

    def save(self, name):
        self.add("rect", class_="frame", x=self.LEFT, y=self.TOP, width=self.width,
                 height=self.height, fill="none", stroke="#404040")
        size = (self.LEFT + self.width + 30, self.TOP + self.height + self.bottom)
        with open(name, "w", encoding="utf-8") as file:
            file.write('<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" '
                       'font-family="DejaVu Sans, Arial, sans-serif" fill="#202020">\n'
                       '<rect width="100%%" height="100%%" fill="white"/>\n' % size)
            file.write("\n".join(self.parts) + "\n</svg>\n")
        print("picture           ", name)


def degrees(value, positive, negative):
    return "%g°%s" % (abs(value), positive if value > 0 else negative if value else "")


def east(lon):
    return degrees((lon + 180) % 360 - 180, "E", "W")


def north(lat):
    return degrees(lat, "N", "S")


def land_runs():
    """The land as (longitude, latitude of the run's lower left corner, its length)."""
    folder = os.path.dirname(os.path.abspath(__file__))
    with gzip.open(os.path.join(folder, "land_mask.txt.gz"), "rt") as file:
        for row, line in enumerate(file):    # south to north, each line from the west
            start = line.find("1")
            while start >= 0:
                end = line.find("0", start) if "0" in line[start:] else 720
                yield start / 2 - 180, row / 2 - 90, (end - start) / 2
                start = line.find("1", end)


class Map(Picture):
    """A map of land in pale grey, around the cells."""

    def __init__(self, title, subtitle, cells, bottom):
        lons, lats = [lon for lon, _ in cells], [lat for _, lat in cells]
        # Cells on both sides of the 180 degree meridian, and none near Greenwich:
        # one map without a gap, with longitudes beyond 180.
        self.joined = min(lons) < 0 < max(lons) and min(map(abs, lons)) > 90
        lons = [self.place(lon) for lon in lons]
        x, y = (min(lons) + max(lons)) / 2, (min(lats) + max(lats)) / 2
        # A degree of longitude is drawn as long as it is in the middle of the map.
        shrink = max(math.cos(math.radians(y)), 0.2)
        # The frame leaves three degrees or more around the cells, to show where
        # they are, and is neither very flat nor very tall.
        width, height = max(lons) - min(lons) + 0.5, max(lats) - min(lats) + 0.5
        half_x = width / 2 + max(3 / shrink, 0.05 * width)
        half_y = height / 2 + max(3, 0.05 * height)
        half_y = max(half_y, 0.25 * half_x * shrink)
        half_x = min(max(half_x, half_y / (1.15 * shrink)), 180)
        bottom_lat, top_lat = max(y - half_y, -90), min(y + half_y, 90)
        ratio = (top_lat - bottom_lat) / (2 * half_x * shrink)
        width, height = ((800, round(800 * ratio)) if ratio < 0.8
                         else (round(640 / ratio), 640))
        super().__init__(title, subtitle, (x - half_x, x + half_x), (bottom_lat, top_lat),
                         width, height, bottom)
        # A few cells that would be too small to see are drawn as circles.
        self.cells = cells
        self.few = len(cells) < 500    # a border would hide the colours of many
        self.cell_width = width / (4 * half_x)
        self.circles = self.few and self.cell_width < 4
        self.draw_land()
        for lon in ticks(*self.x_range, 9, (0.5, 1, 2, 5, 10, 15, 30, 45, 90)):
            self.x_tick(lon, east(lon))
        for lat in ticks(*self.y_range, 6, (0.5, 1, 2, 5, 10, 15, 30, 45, 90)):
            self.y_tick(lat, north(lat))

    def place(self, lon):
        return lon + 360 if self.joined and lon < 0 else lon

    def draw_land(self):
        """One path of all runs that are, at least in part, within the frame."""
        (west, east_), (south, north_) = self.x_range, self.y_range
        path = []
        for start, lat, length in land_runs():
            for lon in (start - 360, start, start + 360):
                left, right = max(lon, west), min(lon + length, east_)
                low, high = max(lat, south), min(lat + 0.5, north_)
                if left < right and low < high:
                    path.append("M%.1f %.1fH%.1fV%.1fH%.1fz" % (
                        self.x(left), self.y(low), self.x(right), self.y(high),
                        self.x(left)))
        if path:
            self.add("path", class_="land", d="".join(path), fill="#e2e2e2",
                     shape_rendering="crispEdges")

    def radius(self, cell):
        """The radius of a circle that doesn't hide the nearest other cell."""
        degree = 2 * self.cell_width
        nearest = min((max(abs(cell[0] - lon), abs(cell[1] - lat))
                       for lon, lat in self.cells if (lon, lat) != cell), default=360)
        return max(1.5, min(3.0, degree * nearest / 2))

    def cell(self, cell, kind, **style):
        """A cell in its true size, or a circle in its place."""
        x, y = self.x(self.place(cell[0])), self.y(cell[1])
        if self.circles:
            self.add("circle", class_=kind, cx=x, cy=y, r=self.radius(cell), **style)
        else:
            width = self.cell_width
            height = 0.5 * self.height / (self.y_range[1] - self.y_range[0])
            if not self.few:
                style["shape_rendering"] = "crispEdges"
            self.add("rect", class_=kind, x=x - width / 2, y=y - height / 2, width=width,
                     height=height, **style)

    def filled_cell(self, cell, kind, fill):
        border = {"stroke": "#404040", "stroke_width": 0.5} if self.few else {}
        self.cell(cell, kind, fill=fill, **border)

    def ring(self, cell):
        radius = self.radius(cell) if self.circles else 0.35 * self.cell_width
        self.add("circle", class_="ring", cx=self.x(self.place(cell[0])),
                 cy=self.y(cell[1]), r=radius, fill="none", stroke="black",
                 stroke_width=1.2 if self.few else 0.5)
