# A function that reads the series of an extract, to be copied. Python's standard library
# only.
#
#   for longitude, latitude, year, month, value in read_tsf("NAME.TSF"):
#       ...
#   table = pandas.DataFrame(read_tsf("NAME.TSF"), columns=COLUMNS)    # with pandas
import re

COLUMNS = ("longitude", "latitude", "year", "month", "value")

# The files hold whole numbers. What one unit of the physical quantity is in them, and
# which number stands for a month without a value:
# data set         quantity                        unit         stored as, missing
DATA_SETS = {
    "CRUts4.01ppt.": ("Precipitation",             "mm a month",   10, -999),
    "CRUts4.01tmp.": ("Mean temperature",          "°C",           10, -999),
    "CRUts4.01dtr.": ("Diurnal temperature range", "°C",           10, -999),
    "CRUts4.01tmn.": ("Minimum temperature",       "°C",           10, -999),
    "CRUts4.01tmx.": ("Maximum temperature",       "°C",           10, -999),
    "CRUts4.01vap.": ("Vapour pressure",           "hPa",          10, -999),
    "CRUts4.01pet.": ("Potential evapotranspiration", "mm a day",  10, -999),
    "CRUts4.01cld.": ("Cloud cover",               "percent",      10, -999),
    "CRUts4.01frs.": ("Frost days",                "days a month", 100, -999),
    "CRUts4.01wet.": ("Wet days",                  "days a month", 100, -999),
    "scPDSI.dat.":   ("Drought index scPDSI",      "index",        100, -9999),
}


def data_set_of(heading):
    """The data set that a cell's heading names, as above: other releases are stored alike."""
    return re.sub("^CRUts[0-9.]*", "CRUts4.01", heading[23:36].strip())


def read_tsf(name):
    """Yields (longitude, latitude, year, month, value), cell by cell, month by month.

    Degrees, east and north positive; values in the units above, NaN where missing.
    """
    cell, line = None, ""
    with open(name, encoding="latin-1") as file:
        for number, line in enumerate(file, 1):
            line = line.rstrip("\n")
            if len(line) == 128 and data_set_of(line) in DATA_SETS:    # a heading
                cell = float(line[1:10]), float(line[10:19])
                _, _, stored_as, missing = DATA_SETS[data_set_of(line)]
            elif len(line) == 77 and cell:
                # Fields have fixed columns: wide numbers touch, so never split at blanks.
                for month in range(12):
                    stored = int(line[5 + 6 * month:11 + 6 * month])
                    value = float("nan") if stored == missing else stored / stored_as
                    yield *cell, int(line[1:5]), month + 1, value
            else:
                raise ValueError("%s is no series file, or is cut off (line %d)"
                                 % (name, number))
    if len(line) == 128:
        raise ValueError("%s is cut off" % name)
