"""Breaks of the recipes: numbers, places, colours and words of the pictures."""

from catchers import recipes
from definition import Break
from edits import Change

PICTURE = "docs/recipes/picture.py"
PYTHON = "docs/recipes/cells.py"
AWK = "docs/recipes/cells.awk"
GNUPLOT = "docs/recipes/cells.gp"
R = "docs/recipes/cells.R"

BREAKS = [
    Break(
        "Python: latitudes upside down",
        recipes("Python"),
        Change(PICTURE, "(high - value) / (high - low) * self.height",
               "(value - low) / (high - low) * self.height"),
    ),
    Break(
        "Python: every year drawn at the same height",
        recipes("Python"),
        Change(PYTHON, "cx=picture.x(year), cy=picture.y(mean),",
               "cx=picture.x(year), cy=picture.y(known[0]),"),
    ),
    Break(
        "Python: land is shifted by two degrees",
        recipes("Python"),
        Change(PICTURE, "yield start / 2 - 180, row", "yield start / 2 - 178, row"),
    ),
    Break(
        "Python: minimum temperature in hundredths",
        recipes("Python"),
        Change("docs/recipes/read_tsf.py",
               '"Minimum temperature",       "°C",           10,',
               '"Minimum temperature",       "°C",           100,'),
    ),
    Break(
        "Python: a report of another search is drawn",
        recipes("Python"),
        Change(PYTHON, "(report_first, report_last) != (first, last) or ", ""),
    ),
    Break(
        "Python: a label of the picture in the documents is moved",
        recipes("Python"),
        Change(PYTHON, '(1, "4 or more")', '(0.9, "4 or more")'),
    ),
    Break(
        "Python: the colour bar runs from light to dark, the cells don't",
        recipes("Python"),
        Change(PICTURE, "fill=colour(scale, (i + 0.5) / 100)",
               "fill=colour(scale, 1 - (i + 0.5) / 100)"),
    ),
    Break(
        "gnuplot: map mirrored, east to the left",
        recipes("gnuplot"),
        Change(GNUPLOT, "set xrange [middle_x - half_x:middle_x + half_x]",
               "set xrange [middle_x + half_x:middle_x - half_x]"),
    ),
    Break(
        "gnuplot: the cutoff year in the first period of the title",
        recipes("gnuplot"),
        Change(GNUPLOT, "first, cutoff - 1, \\", "first, cutoff, \\"),
    ),
    Break(
        "gnuplot: minimum called maximum temperature",
        recipes("gnuplot"),
        Change(AWK, '"CRUts4.01tmn.", "Minimum temperature"',
               '"CRUts4.01tmn.", "Maximum temperature"'),
    ),
    Break(
        "gnuplot: every cell with an f is ringed",
        recipes("gnuplot"),
        Change(AWK, "        ringed[place[cell]] + 0\n", "        0 + (kind == 1)\n"),
    ),
    Break(
        "gnuplot: the title names another cell",
        recipes("gnuplot"),
        Change(GNUPLOT, "set table $cells\nplot", "lat = 0\nset table $cells\nplot"),
    ),
    Break(
        "R: map mirrored",
        recipes("R"),
        Change(R, "  plot(xlim, ylim, type",
               '  plot(xlim, ylim, xlim = if (kind %in% c("map", "f")) rev(xlim) else xlim, type'),
    ),
    Break(
        "R: the cycle runs from December to January",
        recipes("R"),
        Change(R, "lines(1:12, colMeans(months, na.rm = TRUE)",
               "lines(1:12, rev(colMeans(months, na.rm = TRUE))"),
    ),
    Break(
        "R: f is coloured by the largest of the map",
        recipes("R"),
        Change(R, "log(f[usual]) / log(4)", "log(f[usual]) / log(max(f[usual]))"),
    ),
    Break(
        "R: the title ends a year early",
        recipes("R"),
        Change(R, 'span <- sprintf("%d to %d, %s", first, last',
               'span <- sprintf("%d to %d, %s", first, last - 1'),
    ),
    Break(
        "R: months backwards in the table",
        recipes("R"),
        Change("docs/recipes/read_tsf.R", "rep_len(1:12, length(line))",
               "rep_len(12:1, length(line))"),
    ),
    Break(
        "R: missing code of the drought index",
        recipes("R"),
        Change("docs/recipes/read_tsf.R", "index        | 100       | -9999",
               "index        | 100       | -999"),
    ),
    Break(
        "R: longitude and latitude exchanged in the table",
        recipes("R"),
        Change("docs/recipes/read_tsf.R",
               "  data.frame(longitude = field(heading, 2, 10)[cell],\n"
               "             latitude = field(heading, 11, 19)[cell],\n",
               "  data.frame(longitude = field(heading, 11, 19)[cell],\n"
               "             latitude = field(heading, 2, 10)[cell],\n"),
    ),
]
