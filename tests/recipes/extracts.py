"""Extracts made by Veldmark from the sample's series or from series made up here."""
import gzip
import os
import subprocess
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
# The number in the menu.
MENU = {"pre": 1, "tmp": 2, "dtr": 3, "tmn": 4, "tmx": 5, "vap": 6, "pet": 7, "cld": 8,
        "frs": 9, "wet": 10, "scPDSI": 11}
GLOBE = ("89.5", "-89.5", "179.5", "-179.5")


class Extract:
    """An extract in a folder of its own, and the series it must hold.

    series      {(lon, lat): [stored value of each month of the search's years]}
    source      what the pictures say the data are of
    """

    source = "CRU TS 4.01"

    def __init__(self, folder, build, variable, series, last, box=GLOBE, cutoff=None):
        self.folder, self.build, self.variable = Path(folder), build, variable
        self.first, self.last, self.cutoff = 1901, last, cutoff
        self.series, self.box = series, box
        name = "cru_ts4.01.1901.2016.%s.dat.new" % variable
        if variable == "scPDSI":
            name, self.source = "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new", "scPDSI"
        self.stem = str(self.folder / name)
        self.folder.mkdir()
        self.make_grid()
        self.search()
        os.remove(self.stem)    # 16 MB for each year

    def make_grid(self):
        months = ["%d-%02d" % (year, month) for year in range(1901, self.last + 1)
                  for month in range(1, 13)]
        text = "lon,lat,%s\n" % ",".join(months)
        for cell in sorted(self.series, key=lambda cell: (cell[1], cell[0])):
            text += "%.2f,%.2f,%s\n" % (*cell, ",".join(map(str, self.series[cell])))
        options = ["--scpdsi"] if self.variable == "scPDSI" else []
        subprocess.run([self.build / "series_to_grid", *options, "--years",
                        "1901-%d" % self.last, self.stem], input=text.encode(),
                       check=True, stderr=subprocess.DEVNULL)

    def search(self):
        # Introduction, menu, citation; box; years; thinning; test; another search?
        answers = ["", "", str(MENU[self.variable]), "", "", *self.box, "T",
                   str(self.first), str(self.last), "T", "1", "y",
                   *(["T", str(self.cutoff)] if self.cutoff else ["F"]), "F", ""]
        run = subprocess.run([self.build / "veldmark"], cwd=self.folder, text=True,
                             input="\n".join(answers), capture_output=True,
                             env={**os.environ, "TERM": "dumb"})
        if run.returncode != 0:
            sys.exit("veldmark failed (%d):\n%s" % (run.returncode, run.stderr))

    def cells(self):
        """The cells in the order of the series file."""
        # Rows run south to north, in the drought index north to south.
        order = -1 if self.variable == "scPDSI" else 1
        return sorted(self.series, key=lambda cell: (order * cell[1], cell[0]))

    def be_of_release(self, number):
        """Names another release in the headings, as veldmark-extract does."""
        name = Path(self.stem + ".TSF")
        heading = b"CRUts" + number.encode()
        name.write_bytes(name.read_bytes().replace(b"CRUts4.01", heading))
        self.source = "CRU TS " + number

    def report(self):
        """{cell: (f, prob)} as written."""
        lines = Path(self.stem + ".ftst").read_text().splitlines()[2:]
        return {(float(line[2:17]), float(line[18:33])):
                (float(line[34:49]), float(line[50:65])) for line in lines}


def sample(variable, last):
    """The sample's series of January 1901 to December of `last`."""
    name = TOP / "data" / "sample" / ("cru_ts4.01_%s_1901_2016.csv.gz" % variable)
    with gzip.open(name, "rt") as file:
        next(file)
        rows = [line.split(",") for line in file]
    return {(float(row[0]), float(row[1])): [int(value) for value in
                                             row[2:2 + 12 * (last - 1900)]]
            for row in rows}


class WholeSample(Extract):
    """All years of a variable of the sample, without its grid file of 1.8 GB.

    The series file is written here. The report is what Veldmark wrote when it was given
    the grid file of all years and the cutoff year 1959.
    """

    def __init__(self, folder, variable, cutoff=None):
        self.folder, self.variable, self.cutoff = Path(folder), variable, cutoff
        self.first, self.last, self.series = 1901, 2016, sample(variable, 2016)
        self.stem = str(self.folder / ("cru_ts4.01.1901.2016.%s.dat.new" % variable))
        self.folder.mkdir()
        Path(self.stem + ".TSF").write_text(series_file(self))
        if cutoff:
            kept = Path(__file__).parent / ("%s_1901_2016.ftst" % variable)
            Path(self.stem + ".ftst").write_bytes(kept.read_bytes())


def series_file(extract):
    """The text of the series file of mean temperature or frost days."""
    title, decimals = {"tmp": ("CRUts4.01tmp.glo.tmp. degC*10", 1),
                       "frs": ("CRUts4.01frs.glo.frs.days*100", 2)}[extract.variable]
    text = ""
    for cell in extract.cells():
        text += " %9.3f%9.3f    %-40sRFMT=%-60s\n" % (*cell, title,
                                                     "(1x,i4,12f6.%d)" % decimals)
        values = extract.series[cell]
        for year in range(extract.first, extract.last + 1):
            months = values[12 * (year - extract.first):][:12]
            text += " %4d%s\n" % (year, "".join("%6d" % value for value in months))
    return text


# --- Series made up here.

def made_up(cells, years):
    """Different values in each cell, year and month, of both signs."""
    return {cell: [(37 * i + 11 * month + 5 * (month // 12)) % 700 - 300
                   for month in range(12 * years)] for i, cell in enumerate(cells)}


def with_gaps():
    series = made_up([(10.25, 40.25), (10.75, 40.25), (10.25, 41.25)], 5)
    series[10.25, 40.25][30] = -999        # July of the third year
    series[10.75, 40.25][3] = -999         # April of the first
    for month in range(5, 60, 12):         # every June: no complete year
        series[10.25, 41.25][month] = -999
    return series


def drought():
    series = made_up([(-100.25, 35.25), (20.75, -30.25), (21.25, -30.25)], 2)
    series[-100.25, 35.25][20] = -9999
    return series


def write_minus_999(extract):
    """Puts -999 into a series of the drought index: -9.99, which is no missing month."""
    name = Path(extract.stem + ".TSF")
    lines = name.read_text().splitlines(keepends=True)
    lines[1] = lines[1][:35] + "  -999" + lines[1][41:]
    name.write_text("".join(lines))
    extract.series[extract.cells()[0]][5] = -999


def write_touching_numbers(extract):
    """Puts numbers of six characters into the series; no blank is left between them."""
    wide = [-12345, -23456, 13498, -10000, -25536, 7, -32768, -11111, 1, 2, 3, -10001]
    lines = Path(extract.stem + ".TSF").read_text().splitlines(keepends=True)
    lines[1] = " 1901" + "".join("%6d" % value for value in wide) + "\n"
    Path(extract.stem + ".TSF").write_text("".join(lines))
    extract.series[extract.cells()[0]][:12] = wide
