"""Compares the recipes' pictures with what expected.py says is in them.

Each function returns the complaints as a list of texts.
"""
import re
import xml.etree.ElementTree

from expected import BLUE, LAND, WHITE, land
from png import BadPicture, Png

SVG = "{http://www.w3.org/2000/svg}"


def near(one, other, tolerance):
    return all(abs(a - b) <= tolerance for a, b in zip(one, other))

# --- Texts: (text, x, y) of each; x is where the text is anchored.

def label_value(text):
    match = re.fullmatch(r"(-?[0-9.]+)(?:°([NSEW]?))?", text)
    return match and float(match[1]) * (-1 if match[2] in ("S", "W") else 1)


def check_texts(found, expected, x_slack=(-1, 1), y_slack=(-1, 8)):
    """Titles must be there, and labels of the axes stand where their values are.

    x_slack, y_slack    how far an anchor may be from the value's place
    """
    texts = [text for text, _, _ in found]
    complaints = ["no text '%s' in %s" % (text, texts) for text in expected.texts
                  if text not in texts]
    frame, on_x, on_y = expected.frame, 0, 0
    bottom = frame.TOP + frame.height
    for text, x, y in found:
        value = label_value(text)
        if value is None:
            continue
        if bottom + 6 < y < bottom + 35:
            on_x += 1
            # The meridian may stand at either edge of the map.
            wrongs = [x - frame.place(value, 0)[0] - turn * 360 / (
                frame.x_range[1] - frame.x_range[0]) * frame.width for turn in (-1, 0, 1)]
            if not any(x_slack[0] <= wrong <= x_slack[1] for wrong in wrongs):
                complaints.append("'%s' is %s pixels off" % (text, wrongs))
        elif x < frame.LEFT and y <= bottom + 6:
            on_y += 1
            wrong = y - frame.place(frame.x_range[0], value)[1]
            if not y_slack[0] <= wrong <= y_slack[1]:
                complaints.append("'%s' is %.1f pixels off" % (text, wrong))
    if on_y < 1 or (on_x < 2 and "J" not in texts):
        complaints.append("%d labels below, %d beside the frame" % (on_x, on_y))
    return complaints


def svg_texts(name):
    """Of a picture of cells.py."""
    root = xml.etree.ElementTree.parse(name).getroot()
    return [(element.text, float(element.get("x")), float(element.get("y")))
            for element in root.iter(SVG + "text")]


def gnuplot_texts(name):
    """Of a picture that gnuplot drew as SVG."""
    root = xml.etree.ElementTree.parse(name).getroot()
    found = []
    for group in root.iter(SVG + "g"):
        match = re.match(r"translate\(([-0-9.]+),([-0-9.]+)\)", group.get("transform", ""))
        for element in group.findall(SVG + "text") if match else []:
            text = "".join(element.itertext()).strip()
            found.append((text, float(match[1]), float(match[2])))
    return found


def pdf_texts(name, height):
    """Of a picture that R drew as PDF; anchored at the left, 72 points an inch."""
    found = re.findall(rb" ([-0-9.]+) ([-0-9.]+) Tm \((.*)\) Tj", name.read_bytes())
    return [(re.sub(r"\\(.)", r"\1", text.decode("latin-1")), float(x) * 96 / 72,
             height - float(y) * 96 / 72) for x, y, text in found]


# --- SVG: all marks.

def svg_marks(root):
    marks = []
    for element in root:
        kind = element.get("class")
        if kind == "range":
            ends = sorted(((float(element.get("x%d" % i)), float(element.get("y%d" % i)))
                           for i in (1, 2)), key=lambda end: -end[1])
            marks += [(kind, *end, element.get("stroke")) for end in ends]
        elif element.tag == SVG + "circle" and kind:
            marks.append((kind, float(element.get("cx")), float(element.get("cy")),
                          element.get("fill")))
        elif element.tag == SVG + "rect" and kind not in (None, "frame"):
            marks.append((kind, float(element.get("x")) + float(element.get("width")) / 2,
                          float(element.get("y")) + float(element.get("height")) / 2,
                          element.get("fill")))
    return marks


def same_mark(found, expected):
    kind, x, y, fill = found
    colour = {"white": WHITE, "none": None}.get(fill, fill)
    if isinstance(colour, str):
        colour = tuple(bytes.fromhex(colour[1:]))
    return (kind == expected[0] and near((x, y), expected[1:3], 0.02) and
            (colour is None) == (expected[3] is None) and
            (colour is None or near(colour, expected[3], 1)))


def check_svg(name, expected):
    try:
        root = xml.etree.ElementTree.parse(name).getroot()
    except xml.etree.ElementTree.ParseError as error:
        return [str(error)]
    complaints = []
    size = int(root.get("width")), int(root.get("height"))
    if root.tag != SVG + "svg" or size != (expected.width, expected.height):
        complaints.append("%s, %s instead of %d x %d" % (root.tag, size, expected.width,
                                                         expected.height))
    found = svg_marks(root)
    for mark in expected.marks:
        same = next((i for i, one in enumerate(found) if same_mark(one, mark)), None)
        if same is None:
            complaints.append("no mark %s" % (mark,))
        else:
            del found[same]
    complaints += ["a mark too many: %s" % (mark,) for mark in found]
    complaints += check_cell_sizes(root, expected.frame)
    if hasattr(expected.frame, "joined"):
        complaints += check_svg_land(root, expected.frame)
    return complaints + check_texts(svg_texts(name), expected)


def check_cell_sizes(root, frame):
    """True size, or small circles where that could not be seen."""
    degree = [frame.width / (frame.x_range[1] - frame.x_range[0]),
              frame.height / (frame.y_range[1] - frame.y_range[0])]
    complaints = []
    for element in root:
        if element.get("class") not in ("cell", "finite", "infinite", "none"):
            continue
        if frame.circles:
            good = 1.5 <= float(element.get("r", 0)) <= 3
        else:
            good = near((float(element.get("width", 0)), float(element.get("height", 0))),
                        (degree[0] / 2, degree[1] / 2), 0.02)
        if not good:
            complaints.append("a cell of another size: %s" % element.attrib)
    return complaints


def check_svg_land(root, frame):
    path = "".join(element.get("d") for element in root if element.get("class") == "land")
    runs = [tuple(map(float, run)) for run in
            re.findall(r"M([\d.]+) ([\d.]+)H([\d.]+)V([\d.]+)H[\d.]+z", path)]
    complaints = []
    for lon, lat in middles(frame, 300):
        x, y = frame.place(lon, lat)
        drawn = any(left < x < right and high < y < low for left, low, right, high in runs)
        if drawn != land(lon, lat):
            complaints.append("land at %g %g: %s" % (lon, lat, drawn))
    return complaints


def middles(frame, most):
    """The middles of some cells whose neighbours are all land or all sea, as they are."""
    lon_range = range(int(frame.x_range[0] * 2) + 3, int(frame.x_range[1] * 2) - 3)
    lat_range = range(int(frame.y_range[0] * 2) + 3, int(frame.y_range[1] * 2) - 3)
    cells = [(j / 2 + 0.25, i / 2 + 0.25) for i in lat_range for j in lon_range]
    for lon, lat in cells[::len(cells) // most + 1]:
        around = {land(lon + x, lat + y) for x in (-0.5, 0, 0.5) for y in (-0.5, 0, 0.5)}
        if len(around) == 1:
            yield lon, lat


# --- PNG: the colours at the places of the marks.

def check_png(name, expected):
    try:
        png = Png(name)
    except BadPicture as error:
        return [str(error)]
    if (png.width, png.height) != (expected.width, expected.height):
        return ["%d x %d pixels instead of %d x %d" % (png.width, png.height,
                                                       expected.width, expected.height)]
    complaints = []
    for kind, x, y, colour in clear_marks(expected):
        # A bar is looked at beside the dots, a little within its ends.
        allowed = [BLUE, colour] if kind == "range" else [colour]
        found = png.pixel(*((x - 3, y) if kind == "range" else (x, y)))
        if not any(near(found, one, 10) for one in allowed):
            complaints.append("%s at %.1f %.1f is %s instead of %s" % (kind, x, y, found,
                                                                     colour))
    if hasattr(expected.frame, "joined"):
        complaints += check_png_land(png, expected) + check_png_rings(png, expected)
    return complaints


def clear_marks(expected):
    """Marks that no other mark hides; bars a little shorter than they are."""
    marks = expected.marks
    bars = [mark for mark in marks if mark[0] == "range"]
    for low, high in zip(bars[::2], bars[1::2]):
        if low[2] - high[2] > 8:
            yield "range", low[1], low[2] - 2, low[3]
            yield "range", high[1], high[2] + 2, high[3]
    for mark in marks:
        if mark[0] in ("cell", "finite", "year", "month"):
            others = [other for other in marks if other[1:3] != mark[1:3]]
            if mark[0] == "month" or all(
                    max(abs(other[1] - mark[1]), abs(other[2] - mark[2])) > 6
                    for other in others):
                yield mark


def check_png_rings(png, expected):
    """Whether a mark's ring is black where it should be, and only there."""
    frame = expected.frame
    degree = frame.width / (frame.x_range[1] - frame.x_range[0])
    radius = 3 if frame.circles else 0.175 * degree
    rings = {mark[1:3] for mark in expected.marks if mark[0] == "ring"}
    complaints = []
    for kind, x, y, _ in clear_marks(expected):
        if kind != "finite":
            continue
        darkest = min(png.pixel(x + radius + step, y)[0] for step in (-0.5, 0, 0.5))
        if (darkest < 90) != ((x, y) in rings):
            complaints.append("the ring at %.1f %.1f: %d" % (x, y, darkest))
    return complaints


def check_png_land(png, expected):
    """Some hundred cells of land and sea, away from marks and from the graticule."""
    frame, complaints = expected.frame, []
    looked_at = 0
    for lon, lat in middles(frame, 1000):
        x, y = frame.place(lon, lat)
        beside = min(max(abs(mark[1] - x), abs(mark[2] - y)) for mark in expected.marks)
        if beside < 40 or abs((lon + 2.5) % 5 - 2.5) < 0.7 or \
                abs((lat + 2.5) % 5 - 2.5) < 0.7:
            continue
        looked_at += 1
        colour = LAND if land(lon, lat) else WHITE
        if not near(png.pixel(x, y), colour, 6):
            complaints.append("land at %g %g is %s instead of %s" % (
                lon, lat, png.pixel(x, y), colour))
    if looked_at < 10:
        complaints.append("only %d places of land and sea looked at" % looked_at)
    return complaints
