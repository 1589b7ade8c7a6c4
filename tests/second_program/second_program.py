#!/usr/bin/env python3
"""A second, plain implementation of Veldmark, to compare with the real program.

Reads the answers from standard input, works in the current directory, and gives the
same screen, the same report on standard error, the same exit status and the same files.
Nothing here is meant to be fast: the data file is read line by line and every value is
looked up in a dictionary, so that each rule can be seen on its own.

    second_program.py               run the program
    second_program.py --self-test   check the numeric parts against worked-out values

Columns, rows, years and months count from 1.  Text is held one character per byte.
"""

import ctypes
import errno
import functools
import math
import os
import struct
import sys
from fractions import Fraction

# -------------------------------------------------- texts

EMPTY = ""  # an empty line
PAUSE_UPPER = " Hit RETURN to CONTINUE"
PAUSE_LOWER = " Hit RETURN to continue"
PAUSE_REGION = " HIT RETURN to continue"
PAUSE_BETAI = "bad argument x in betai"

AUTHOR_TAG = "(vmk)"
INITIALS = "VMK"

BANNER = [
    EMPTY,
    " " + "Program Veldmark_v24" + " " + AUTHOR_TAG + " " + "10/2018",
    EMPTY,
    EMPTY,
    " This program serves the gridded 0.5x0.5 degree ",
    " LAND AREA ONLY CRU TS4.01 data sets ",
    " put together by the Climatic Research Unit, ",
    " University of East Anglia, U.K, July 2008. ",
    EMPTY,
    " Last Update - 10/2018 -" + INITIALS + ":",
    EMPTY,
    " CRU TS_4.01 RAW data file list:",
    EMPTY,
    "            cru_ts_4.01.1901.2016.tmn.dat",
    "            cru_ts_4.01.1901.2016.pet.dat",
    "            cru_ts_4.01.1901.2016.tmx.dat",
    "            cru_ts_4.01.1901.2016.wet.dat",
    "            cru_ts_4.01.1901.2016.pre.dat",
    "            cru_ts_4.01.1901.2016.cld.dat",
    "            cru_ts_4.01.1901.2016.vap.dat",
    "            cru_ts_4.01.1901.2016.tmp.dat",
    "            cru_ts_4.01.1901.2016.dtr.dat",
    "            cru_ts_4.01.1901.2016.frs.dat",
    EMPTY,
]

CONDENSING = [
    EMPTY,
    " The original uncompressed TS4.01 files from CRU are quite large (2.71GB).",
    " Therefore, to use this server program you must first reduce the original",
    " file size to 1.7GB by using the program Tersify provided with this",
    " distribution. Tersify simply removes the white space (blanks) from the raw",
    " TS3.1 files and in so doing reduces their size by 1GB.",
    EMPTY,
    " The required input for program Tersify is a simple list file of all the",
    " original decompressed CRU data file names one name/line, (as shown above). ",
    " Save this list in a text file then launch program Tersify and enter the ",
    " newly created list file name.  Tersify will then create a condensed copy of ",
    ' of each original file with a ".new" extension appended to the name:',
    " (e.g., cru_ts4.01.1901.2018.vap.dat > cru_ts_3_10.1901.2018.vap.dat.new",
    " This proceedure takes time depending on the number of files being ",
    " reformatted in a single run of the program.",
    EMPTY,
    " This program expects to find one or all of the following file names in the  ",
    " current program directory in order to continue.",
    EMPTY,
    "            cru_ts4.01.1901.2016.tmn.dat.new",
    "            cru_ts4.01.1901.2016.pet.dat.new",
    "            cru_ts4.01.1901.2016.tmx.dat.new",
    "            cru_ts4.01.1901.2016.wet.dat.new",
    "            cru_ts4.01.1901.2016.pre.dat.new",
    "            cru_ts4.01.1901.2016.cld.dat.new",
    "            cru_ts4.01.1901.2016.vap.dat.new",
    "            cru_ts4.01.1901.2016.tmp.dat.new",
    "            cru_ts4.01.1901.2016.dtr.dat.new",
    "            cru_ts4.01.1901.2016.frs.dat.new",
    EMPTY,
    EMPTY,
    " Good Luck.",
    " " + INITIALS + "-Arnhem, 2011",
    EMPTY,
]

MENU = [
    EMPTY,
    "    Select the Variable you want to extract:",
    EMPTY,
    EMPTY,
    "     Variable Type            Name    Units     Length",
    "  [1] Precipitation             pre       mm      1901-2016",
    "  [2] Mean temperature          tmp     degC*10   1901-2016",
    "  [3] Diurnal Temp. Range       dtr     degC*10   1901-2016",
    "  [4] Min.Temperature           tmn     degC*10   1901-2016",
    "  [5] Max.Temperature           tmx     degC*10   1901-2016",
    "  [6] Vapour pressure           vap     hPa *10   1901-2016",
    "  [7] PET                                         1901-2016",
    "  [8] cloud cover               cld      %*10     1901-2016",
    "  [9] frost day frequency*100   frs    days*100   1901-2016",
    " [10] WET                                         1901-2016",
    " [11] GLOBAL CRUts.3.25 based  scPDSI             1901-2016",
    "  [0] Exit Program",
    EMPTY,
]

CITATION_CRU_TS = [
    EMPTY,
    " The proper citation for these data is:",
    EMPTY,
    " University of East Anglia Climatic Research Unit; Harris, I.C.; ",
    " Jones, P.D. (2017): " + "CRU TS4.01: Climatic Research Unit (CRU) ",
    " Time-Series (TS) version 4.01 of high-resolution gridded data of  ",
    " month-by-month variation in climate (Jan. 1901- Dec. 2016).  ",
    " Centre for Environmental Data Analysis, 04 December 2017. ",
    " doi:10.5285/58a8802721c94c66ae45c3baa4d814d0",
    EMPTY,
]

CITATION_SCPDSI = [
    EMPTY,
    " The proper citation for these data is:",
    " van der Schrier, G., J. Barichivich, K.R. Briffa and P.D. Jones (2013),",
    " A scPDSI-based global data set of dry and wet spells for 1901-2009,",
    " J. Geophys. Res. Atmos. 118, 4025-4048, doi:10.1002/jgrd.50355",
    " ",
    " and",
    " ",
    " Osborn, T.J., J. Barichivich, I. Harris, G. van der Schrier and P.D. Jones (2017),",
    " Monitoring global drought using the self-calibrating Palmer Drought Severity Index",
    ' [in "State of the Climate in 2016"], Bull. Amer. Meteor. Soc. 98, S32-S33,',
    " doi:10.1175/2017BAMSStateoftheClimate.1",
]

REGION_INTRODUCTION = [
    EMPTY,
    "    Select the Geographical Range of data to extract",
    EMPTY,
    "  This data set is spatially shaped like a rectangle where",
    "  the top left corner is defined by the coordinates",
    EMPTY,
    "  -180.0W Lon./90.0N Lat. and the bottom right coordinates are",
    "  180.0E Lon./-90.0S Lat.  (see diagram below)",
    EMPTY,
    "   -180.0/90.0                                      180.0/90.0",
    "         :------------------------------------------:",
    "         :                                          :",
    "         :                                          :",
    "         :           Our Beautiful Planet           :",
    "         :                                          :",
    "         :                                          :",
    "         :                                          :",
    "         :                                          :",
    "         :------------------------------------------:",
    "   -180.0/-90.0                                     180.0/-90.0",
    EMPTY,
    "  Enter the range of Latitude and Longitude",
    "  from which you would like to extract your data.",
    EMPTY,
    "  Enter values as REAL numbers to the nearest 0.5",
    "  degree. EXAMPLE a Latitude entered as -89.75 defines ",
    "  cells bounded on the bottom by -90.0 degrees SOUTH.",
    "  Similarly a longitude entered as 179.75 are the cells ",
    "  bounded to the right by 180.0 degrees EAST).",
    EMPTY,
    EMPTY,
    "  All LONGITUDES WEST or [LEFT] of Greenwich  ",
    "  are NEGATIVE and EAST or [RIGHT] of Greenwich  ",
    "  are POSITIVE",
    EMPTY,
    "  All LATITUDES SOUTH or [BELOW] the Equator are",
    "  NEGATIVE and NORTH latitudes, [ABOVE] the equator, are",
    "  POSITIVE.",
    EMPTY,
    "  Each grid cell value is the observation for that  ",
    "  cells mid-point. Example: for the cell 90.0 Lat. -180.0",
    "  Lon. The actual grid point value given is centered ",
    "  over (89.75,-179.75).",
    EMPTY,
]

PROMPT_MAX_LAT = "        Enter Max Latitude  [TOP]   ==> "
PROMPT_MIN_LAT = "        Enter Min Latitude  [BOTTOM]==> "
PROMPT_MAX_LON = "        Enter Max Longitude [RIGHT] ==> "
PROMPT_MIN_LON = "        Enter Min Longitude [LEFT]  ==> "

BOX_HEADER = "     Lon.    Lat                                     Lon.     Lat."
BOX_EDGE = ":------------------------------:"
BOX_SIDE = "                  :                              :"
BOX_MIDDLE = "                  :        Your Selection        :"

# -------------------------------------------------- the eleven variables

SCPDSI = 11
FROST_DAYS = 9
FIRST_YEAR = 1901
LAST_YEAR = 2016

# menu number: (DataFileName, OutputPrefix, TitleText, RFMT)
CATALOGUE = {
    1: (
        "cru_ts4.01.1901.2016.pre.dat.new",
        "CRUts4.01ppt.",
        "glo.pre. mm",
        "RFMT=(1x,i4,12f6.1)",
    ),
    2: (
        "cru_ts4.01.1901.2016.tmp.dat.new",
        "CRUts4.01tmp.",
        "glo.tmp. degC*10",
        "RFMT=(1x,i4,12f6.1)",
    ),
    3: (
        "cru_ts4.01.1901.2016.dtr.dat.new",
        "CRUts4.01dtr.",
        "glo.dtr. degC*10",
        "RFMT=(1x,i4,12f6.1)",
    ),
    4: (
        "cru_ts4.01.1901.2016.tmn.dat.new",
        "CRUts4.01tmn.",
        "glo.tmn. degC*10",
        "RFMT=(1x,i4,12f6.1)",
    ),
    5: (
        "cru_ts4.01.1901.2016.tmx.dat.new",
        "CRUts4.01tmx.",
        "glo.tmx. degC*10",
        "RFMT=(1x,i4,12f6.1)",
    ),
    6: (
        "cru_ts4.01.1901.2016.vap.dat.new",
        "CRUts4.01vap.",
        "glo.vap.hPa*10",
        "RFMT=(1x,i4,12f6.1)",
    ),
    7: (
        "cru_ts4.01.1901.2016.pet.dat.new",
        "CRUts4.01pet.",
        "",
        "RFMT=(1x,i4,12f6.1)",
    ),
    8: (
        "cru_ts4.01.1901.2016.cld.dat.new",
        "CRUts4.01cld.",
        "glo.cld. %*10",
        "RFMT=(1x,i4,12f6.1)",
    ),
    9: (
        "cru_ts4.01.1901.2016.frs.dat.new",
        "CRUts4.01frs.",
        "glo.frs.days*100",
        "RFMT=(1x,i4,12f6.2)",
    ),
    10: (
        "cru_ts4.01.1901.2016.wet.dat.new",
        "CRUts4.01wet.",
        "",
        "RFMT=(1x,i4,12f6.1)",
    ),
    11: (
        "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new",
        "scPDSI.dat.",
        "scPDSI",
        "RFMT=(1x,i4,12f6.2)",
    ),
}

# -------------------------------------------------- how a run ends

MESSAGE_CHARACTER = "Illegal character in numeric input"
MESSAGE_END_OF_FILE = "Attempt to read past end of file"


class Stop(Exception):
    """A quiet end of the run, status 0."""


class RunTimeError(Exception):
    """An end of the run with a report on standard error, status 255."""

    def __init__(self, message, action, unit):
        super().__init__(message)
        self.message = message
        self.action = action
        self.unit = unit


class NotAnInteger(Exception):
    """An answer or a field that is not a 32-bit integer."""


# -------------------------------------------------- 32-bit reals


def f32(value):
    """Returns `value` rounded to a 32-bit real; infinity if it is too large."""
    return ctypes.c_float(value).value


def add(a, b):
    return f32(a + b)


def sub(a, b):
    return f32(a - b)


def mul(a, b):
    return f32(a * b)


def div(a, b):
    if b == 0.0:
        if a == 0.0 or math.isnan(a):
            return math.nan
        return math.copysign(math.inf, a) * math.copysign(1.0, b)
    return f32(a / b)


_libm = ctypes.CDLL("libm.so.6")
_libm.logf.argtypes = _libm.expf.argtypes = [ctypes.c_float]
_libm.logf.restype = _libm.expf.restype = ctypes.c_float


def log32(x):
    return _libm.logf(x)


def exp32(x):
    return _libm.expf(x)


def nearest32(exact):
    """Returns the 32-bit real nearest to an exact fraction >= 0, ties to even."""
    exact = Fraction(exact)
    if exact == 0:
        return 0.0
    # Scale so that the 24-bit mantissa is the integer part; the smallest unit is 2^-149.
    # The bit lengths give the power of two of the fraction, or one more or less.
    power = exact.numerator.bit_length() - exact.denominator.bit_length()
    exponent = max(-149, power - 24)
    while exact / Fraction(2) ** exponent >= 2**24:
        exponent += 1
    mantissa = round(exact / Fraction(2) ** exponent)  # rounds halves to even
    value = mantissa * Fraction(2) ** exponent
    return math.inf if value >= Fraction(2) ** 128 else float(value)


# -------------------------------------------------- numbers as text


def fixed_integer(value, width):
    text = str(value)
    return text.rjust(width) if len(text) <= width else "*" * width


def word_of(value):
    """Returns the word for a NaN or an infinity; None for any other real."""
    if math.isnan(value):
        return "NaN"
    if math.isinf(value):
        return "Inf" if value > 0 else "-Inf"
    return None


def fixed_real(value, width, decimals):
    text = word_of(value) or "%.*f" % (decimals, value)
    return text.rjust(width) if len(text) <= width else "*" * width


def shortest_digits(value):
    """Returns digits and exponent of the shortest decimal that parses back to `value`.

    The result (d1 d2 d3 ..., e) means d1.d2d3... x 10^e.  Of several decimals of that
    length the one nearest to the value is taken, an even last digit on a tie.
    """
    exact = Fraction(value)
    exponent = int(("%.16e" % value).split("e")[1])
    for length in range(1, 10):
        unit = Fraction(10) ** (exponent - length + 1)
        below = math.floor(exact / unit)
        candidates = [n for n in (below, below + 1) if nearest32(n * unit) == value]
        if candidates:
            best = min(candidates, key=lambda n: (abs(n * unit - exact), n % 2))
            digits = str(best)
            if len(digits) > length:  # 9.99.. rounded up to 10
                exponent += 1
            return digits.rstrip("0"), exponent
    raise AssertionError("nine digits always read back")


def shortest_real(value):
    """Returns the shortest text of a 32-bit real, fixed rather than scientific in a tie.

    Of equally short whole numbers the nearest one, which is the value itself.
    """
    if word_of(value):
        return word_of(value)
    sign = "-" if math.copysign(1.0, value) < 0 else ""
    if value == 0.0:
        return sign + "0.0"
    digits, exponent = shortest_digits(abs(value))
    tail = "e%s%02d" % ("-" if exponent < 0 else "+", abs(exponent))
    if exponent < 0:
        whole, fraction = "0", "0" * (-exponent - 1) + digits
    else:
        whole = str(int(abs(value)))
        fraction = digits[exponent + 1 :]
    fixed = whole + ("." + fraction if fraction else "")
    scientific = digits[0] + ("." + digits[1:] if digits[1:] else "") + tail
    if len(fixed) <= len(scientific):
        return sign + (fixed if fraction else fixed + ".0")
    return sign + (scientific if digits[1:] else digits[0] + ".0" + tail)


def free_line(*items):
    """Returns a free-form line: texts as they are, numbers with a blank before them."""
    line = " "
    for item in items:
        if isinstance(item, str):
            line += item
        elif isinstance(item, int):
            line += " " + str(item)
        else:
            text = shortest_real(item)
            line += " " + (text.rjust(15) if len(text) <= 15 else "*" * 15)
    return line


# -------------------------------------------------- text as numbers


@functools.lru_cache(maxsize=None)
def read_integer(field):
    """Returns the value of an integer field; 0 for blanks."""
    text = field.replace(" ", "").replace("\t", "")
    if text == "":
        return 0
    digits = text[1:] if text[0] in "+-" else text
    if digits == "" or any(c not in "0123456789" for c in digits):
        raise NotAnInteger
    # Ignore leading zeros; twelve digits are too large for 32 bits already.
    digits = digits.lstrip("0") or "0"
    if len(digits) > 11:
        raise NotAnInteger
    value = -int(digits) if text[0] == "-" else int(digits)
    if not -(2**31) <= value <= 2**31 - 1:
        raise NotAnInteger
    return value


def first_value(line):
    """Returns the first free-form value of a line; "" if there is none."""
    rest = line.lstrip(" \t")
    for i, character in enumerate(rest):
        if character in " \t,/":
            return rest[:i]
    return rest


def read_real(text):
    """Returns the first value of `text` as a 32-bit real; None if it is not one."""
    value = first_value(text)
    negative = value[:1] == "-"
    if value[:1] in ("+", "-"):
        value = value[1:]
    mantissa, exponent = value, 0
    for i, character in enumerate(value):
        if character in "EeDd":
            mantissa = value[:i]
            power = value[i + 1 :]
            sign = -1 if power[:1] == "-" else 1
            if power[:1] in ("+", "-"):
                power = power[1:]
            if power == "" or any(c not in "0123456789" for c in power):
                return None
            exponent = sign * int(power)
            break
    whole, _, fraction = mantissa.partition(".")
    digits = whole + fraction
    if digits == "" or any(c not in "0123456789" for c in digits):
        return None
    # The mantissa of eight characters is in 10^-7..10^8, so beyond these exponents the
    # result is certain.
    exponent = max(-100, min(100, exponent))
    exact = int(digits) * Fraction(10) ** (exponent - len(fraction))
    result = nearest32(exact)
    return -result if negative else result


# -------------------------------------------------- console and files


class Console:
    def __init__(self):
        self.input = sys.stdin.buffer
        self.output = sys.stdout.buffer

    def write(self, text):
        self.output.write(text.encode("latin-1"))

    def line(self, text):
        self.write(text + "\n")

    def lines(self, texts):
        for text in texts:
            self.line(text)

    def flush(self):
        self.output.flush()

    def read_line(self):
        """Returns an answer without its newline and a carriage return before that."""
        self.flush()
        raw = self.input.readline()
        if raw == b"":
            raise RunTimeError(MESSAGE_END_OF_FILE, "READ", 5)
        return without_line_end(raw).decode("latin-1")

    def pause(self, text):
        self.line(text)
        self.read_line()

    def shell(self, command):
        self.flush()
        os.system(command)

    def read_logical(self):
        value = first_value(self.read_line())
        if value[:1] == ".":
            value = value[1:]
        return value[:1] in ("T", "t")

    def read_free_integer(self):
        while True:
            value = first_value(self.read_line())
            if value != "":  # a line without a value is skipped
                return integer_or_end(value)

    def read_word(self):
        return first_value(self.read_line())


def integer_or_end(field):
    try:
        return read_integer(field)
    except NotAnInteger:
        raise RunTimeError(MESSAGE_CHARACTER, "READ", 5) from None


def without_line_end(raw):
    if raw.endswith(b"\n"):
        raw = raw[:-1]
    if raw.endswith(b"\r"):
        raw = raw[:-1]
    return raw


class OutputFile:
    """Channel 14, 15 or 16: a file that is created or truncated."""

    def __init__(self, unit, name):
        self.unit = unit
        self.name = name.rstrip(" ")
        try:
            self.file = open(self.name, "wb")
        except OSError:
            raise RunTimeError("Cannot open file: " + self.name, "OPEN", unit) from None

    def fail(self, error):
        reason = os.strerror(error.errno or errno.EIO)
        message = "Cannot write file: %s: %s" % (self.name, reason)
        raise RunTimeError(message, "WRITE", self.unit)

    def line(self, text):
        try:
            self.file.write((text + "\n").encode("latin-1"))
        except OSError as error:
            self.fail(error)

    def flush(self):
        try:
            self.file.flush()
        except OSError as error:
            self.fail(error)

    def close(self):
        try:
            self.file.close()
        except OSError as error:
            self.fail(error)


def stringclean(text):
    """Returns a fixed-length field without inner blanks; its last character is repeated."""
    field = list(text)
    last = len(field) - 1
    if last < 1:
        return text
    while True:
        for i in range(last):
            if field[i] == " ":
                for k in range(i, last):
                    field[k] = field[k + 1]
        if not any(field[i] == " " and field[i + 1] != " " for i in range(last)):
            return "".join(field)


# -------------------------------------------------- grid geometry


class Selection:
    """Rows and columns of a region.  Kept on purpose: a search inherits some bounds."""

    def __init__(self):
        self.FirstRow = self.LastRow = 0
        self.FirstCol = self.LastCol = 0
        self.EastFirstCol = self.EastLastCol = 0
        self.CrossesDateLine = False  # stays set for the rest of the run
        self.CellLat = {}
        self.CellLon = {}

    def find(self, maxLat, minLat, maxLon, minLon, scpdsi):
        self.CellLon = {1: -179.75}
        for i in range(2, 721):
            self.CellLon[i] = add(self.CellLon[i - 1], 0.5)
        self.CellLat = {1: 89.75 if scpdsi else -89.75}
        for j in range(2, 361):
            self.CellLat[j] = add(self.CellLat[j - 1], -0.5 if scpdsi else 0.5)
        self.FirstRow = self.LastRow = 0
        self.EastFirstCol = self.EastLastCol = 0
        if scpdsi:
            self.rows_north_first(maxLat, minLat)
        else:
            self.rows_south_first(maxLat, minLat)
        if minLon > maxLon:
            self.CrossesDateLine = True
        if self.CrossesDateLine:
            self.columns_date_line(maxLon, minLon)
        else:
            self.columns_normal(maxLon, minLon)

    def rows_south_first(self, maxLat, minLat):
        for j in range(1, 360):
            a, b = self.CellLat[j], self.CellLat[j + 1]
            if a <= minLat <= b:
                self.FirstRow = j + 1
            if a <= maxLat <= b:
                self.LastRow = j
        if minLat <= -89.75:
            self.FirstRow = 1
        if maxLat >= 89.75:
            self.LastRow = 360

    def rows_north_first(self, maxLat, minLat):
        for j in range(2, 361):
            a, b = self.CellLat[j], self.CellLat[j - 1]
            if a <= minLat < b:
                self.LastRow = j
            if a <= maxLat < b:
                self.FirstRow = j - 1
        # Kept on purpose: each pole corrects the other end.
        if minLat <= -89.75:
            self.FirstRow = 360
        if maxLat >= 89.75:
            self.LastRow = 1

    def columns_normal(self, maxLon, minLon):
        for j in range(1, 720):
            a, b = self.CellLon[j], self.CellLon[j + 1]
            if a <= minLon <= b:
                self.FirstCol = j + 1
            if a <= maxLon <= b:
                self.LastCol = j
        if minLon <= -179.75:
            self.FirstCol = 1
        if maxLon >= 179.75:
            self.LastCol = 720

    def columns_date_line(self, maxLon, minLon):
        self.EastLastCol = 720
        self.FirstCol = 1
        for j in range(1, 720):
            a, b = self.CellLon[j], self.CellLon[j + 1]
            if a <= maxLon <= b:
                self.LastCol = j
            if a <= minLon <= b:
                self.EastFirstCol = j + 1

    @property
    def RowCount(self):
        return self.LastRow - self.FirstRow + 1

    @property
    def ColCount1(self):
        return self.LastCol - self.FirstCol + 1

    @property
    def ColCount2(self):
        return self.EastLastCol - self.EastFirstCol + 1

    @property
    def ColCount(self):
        if self.CrossesDateLine:
            return self.ColCount1 + self.ColCount2
        return self.ColCount1

    @property
    def CellCount(self):
        return self.RowCount * self.ColCount

    def fields_and_columns(self):
        """Returns the field and column of each value that is read from a line, in order."""
        if not self.CrossesDateLine:
            return [(c, c) for c in range(max(1, self.FirstCol), self.LastCol + 1)]
        pairs = [(c, c) for c in range(1, self.LastCol + 1)]
        if (self.ColCount1 - 1) + (self.ColCount2 - 1) < 718:
            field = 720 - self.ColCount2 + 1  # after the gap
        else:
            field = self.ColCount1 + 1  # right after the first range, even if they overlap
        for column in range(self.EastFirstCol, self.EastLastCol + 1):
            pairs.append((field, column))
            field += 1
        return pairs

    def strided_cells(self, step):
        """Returns (row, column) of the cells of the lattice in the order of saving."""
        ranges = [(self.FirstCol, self.LastCol)]
        if self.CrossesDateLine:
            ranges.append((self.EastFirstCol, self.EastLastCol))
        for row in range(self.FirstRow, self.LastRow + 1, step):
            for first, last in ranges:
                for column in range(first, last + 1, step):
                    yield row, column


def truncated_quotient(a, b):
    """Returns a / b for b > 0, truncated toward zero."""
    return a // b if a >= 0 else -(-a // b)


def estimated_cells(rows, columns, step):
    return truncated_quotient(rows - 1 + step, step) * truncated_quotient(
        columns + step - 1, step
    )


def percentage(estimate, count):
    return mul(div(f32(estimate), f32(count)), 100.0)


# -------------------------------------------------- statistics


def avevar(data, n):
    s = 0.0
    for value in data:
        s = add(s, value)
    ave = div(s, f32(n))
    ep = var = 0.0
    for value in data:
        dev = sub(value, ave)
        ep = add(ep, dev)
        var = add(var, mul(dev, dev))
    var = div(sub(var, div(mul(ep, ep), f32(n))), f32(n - 1))
    return ave, var


def adjusted_count(N, K):
    q = div(mul(2.0, N), sub(K, div(sub(N, 3.0), sub(N, 1.0))))
    if math.isnan(q) or math.isinf(q) or not -(2**31) <= math.trunc(q) <= 2**31 - 1:
        whole = -(2**31)
    else:
        whole = math.trunc(q)
    return max(whole, 2)


def ftest(data1, n1, data2, n2, bad_argument):
    """Returns (f, prob, d1, d2)."""
    ave1, var1 = avevar(data1, n1)
    ave2, var2 = avevar(data2, n2)
    S4 = 0.0
    for data, ave in ((data1, ave1), (data2, ave2)):
        for value in data:
            dev = sub(value, ave)
            S4 = add(S4, mul(mul(mul(dev, dev), dev), dev))
    N1, N2 = f32(n1), f32(n2)
    m4 = div(S4, add(N2, N1))
    pooled = div(
        add(mul(sub(N2, 1.0), var2), mul(sub(N1, 1.0), var1)),
        add(N2, N1),
    )
    K = div(m4, mul(pooled, pooled))
    d1 = adjusted_count(N1, K)
    d2 = adjusted_count(N2, K)
    if var1 > var2:
        f = div(var1, var2)
        df1, df2 = f32(d1 - 1), f32(d2 - 1)
    else:
        f = div(var2, var1)
        df1, df2 = f32(d2 - 1), f32(d1 - 1)
    x = div(df2, add(mul(df1, f), df2))
    prob = mul(2.0, betai(mul(0.5, df2), mul(df1, 0.5), x, bad_argument))
    if prob > 1.0:
        prob = sub(2.0, prob)
    return f, prob, d1, d2


def betai(a, b, x, bad_argument):
    if x < 0.0 or x > 1.0:
        bad_argument()
    if x == 0.0 or x == 1.0:
        bt = 0.0
    else:
        gammas = sub(sub(gammln(add(a, b)), gammln(a)), gammln(b))
        low = add(gammas, mul(a, log32(x)))
        bt = exp32(add(mul(b, log32(sub(1.0, x))), low))
    if x < div(add(a, 1.0), add(add(a, b), 2.0)):
        return div(mul(bt, betacf(a, b, x)), a)
    return sub(1.0, div(mul(bt, betacf(b, a, sub(1.0, x))), b))


FPMIN = f32(1.0e-30)
EPS = f32(3.0e-7)
MAXIT = 100


def not_too_small(value):
    return FPMIN if abs(value) < FPMIN else value


def betacf(a, b, x):
    qab, qap, qam = add(a, b), add(a, 1.0), sub(a, 1.0)
    c = 1.0
    d = not_too_small(sub(1.0, div(mul(qab, x), qap)))
    d = div(1.0, d)
    h = d
    for count in range(1, MAXIT + 1):
        m, m2 = f32(count), f32(2 * count)
        aa = div(mul(mul(sub(b, m), m), x), mul(add(qam, m2), add(a, m2)))
        d = not_too_small(add(mul(aa, d), 1.0))
        c = not_too_small(add(div(aa, c), 1.0))
        inverse = div(1.0, d)
        h = mul(mul(inverse, h), c)
        aa = div(
            -mul(mul(add(qab, m), add(a, m)), x),
            mul(add(m2, qap), add(m2, a)),
        )
        d = not_too_small(add(1.0, mul(aa, inverse)))
        c = not_too_small(add(div(aa, c), 1.0))
        d = div(1.0, d)
        delta = mul(d, c)
        h = mul(delta, h)
        if abs(sub(delta, 1.0)) < EPS:
            return h
    return h


LANCZOS = [
    76.18009172947146,
    -86.50532032941678,
    24.01409824083091,
    -1.231739572450155,
    0.001208650973866179,
    -5.395239384953e-06,
]


def gammln(xx):
    x = xx
    tmp = x + 5.5
    tmp = (x + 0.5) * math.log(tmp) - tmp
    ser = 1.000000000190015
    y = x
    for coefficient in LANCZOS:
        y = y + 1.0
        ser = ser + coefficient / y
    return f32(tmp + math.log(2.5066282746310007 * ser / x))


# -------------------------------------------------- the program


class Program:
    def __init__(self):
        self.console = Console()
        self.ChangeSearch = True
        self.MenuChoice = 0
        self.MissingCode = 0
        self.OutputPrefix = " " * 13
        self.TitleText = " " * 27
        self.RFMT = " " * 65
        self.DataFileName = " " * 65
        self.TsfName = self.XyName = self.ReportName = " " * 65
        self.input = None
        self.outputs = {}  # channel: OutputFile
        self.maxLat = self.minLat = self.maxLon = self.minLon = 0.0
        self.FYOD = self.LYOD = 0
        self.FtestChosen = False
        self.CutoffYear = 0
        self.SampleScale = 0.0
        self.selection = Selection()
        self.GridValues = {}
        self.ThinningFactor = 1

    # ---- the run

    def main(self):
        """Runs the program. Returns the exit status."""
        try:
            try:
                self.run()
            finally:
                self.close_everything()
        except Stop:
            self.console.flush()
            return 0
        except RunTimeError as error:
            self.console.flush()
            sys.stderr.write(
                "Run-time error:\n%s\n? %s(UNIT=%d,...\n"
                % (error.message, error.action, error.unit)
            )
            sys.stderr.flush()
            return 255

    def close_everything(self):
        if self.input is not None:
            self.input.close()
            self.input = None
        for output in self.outputs.values():
            try:
                output.close()
            except RunTimeError:
                pass  # the reason has been reported already
        self.outputs = {}

    def run(self):
        self.console.shell("clear")
        while True:
            if self.ChangeSearch:
                self.introduction()
            self.console.pause(PAUSE_UPPER)
            self.console.shell("clear")
            self.console.shell("ls *.dat.new")
            self.choose_variable()
            self.open_outputs()
            if self.ChangeSearch:
                self.ask_region()
                self.ask_years()
            self.selection.find(
                self.maxLat,
                self.minLat,
                self.maxLon,
                self.minLon,
                self.MenuChoice == SCPDSI,
            )
            self.read_block()
            self.ask_thinning()
            self.offer_test()
            self.save_cells()
            self.end_questions()

    def introduction(self):
        self.console.lines(BANNER)
        self.console.pause(PAUSE_UPPER)
        self.console.lines(CONDENSING)

    # ---- menu, citation, opening

    def choose_variable(self):
        """Returns if a variable is ready, or if the answer is not the number of one."""
        while True:
            self.console.lines(MENU)
            self.console.write(" Enter a value from 0 to 11 ==> ")
            self.MenuChoice = integer_or_end(self.console.read_line()[:2])
            self.show_citation()
            if self.MenuChoice == 0:
                self.console.line(" ")
                self.console.line("Program Terminating")
                raise Stop
            if not 1 <= self.MenuChoice <= 11:
                return  # no variable: the texts of the last one stay
            if self.set_up_variable():
                return

    def show_citation(self):
        if self.MenuChoice == SCPDSI:
            self.console.lines(CITATION_SCPDSI)
            self.MissingCode = -9999
            self.console.pause(PAUSE_LOWER)
        elif self.MenuChoice >= 12 or self.MenuChoice == 0:
            pass
        else:
            self.console.lines(CITATION_CRU_TS)
            self.MissingCode = -999
            self.console.pause(PAUSE_LOWER)

    def set_up_variable(self):
        name, prefix, title, row_format = CATALOGUE[self.MenuChoice]
        self.DataFileName = name.ljust(65)
        self.OutputPrefix = prefix.ljust(13)
        self.TitleText = title.ljust(27)
        self.RFMT = row_format.ljust(65)
        if self.MenuChoice == FROST_DAYS:
            self.SampleScale = f32(0.01)
        if not os.path.exists(name):
            self.report_missing_file()
            return False
        try:
            self.input = open(name, "rb")
        except OSError:  # a folder, for example
            raise RunTimeError("Cannot open file: " + name, "OPEN", 13) from None
        return True

    def report_missing_file(self):
        if self.MenuChoice == SCPDSI:
            self.console.lines(
                [
                    EMPTY,
                    " WARNING: the file: " + self.DataFileName,
                    "         ** NOT FOUND ** ",
                    EMPTY,
                    " NOTE: the data of van der Schrier et al., 2006",
                    " are not part of the public CRUTS3.0/1 distribution.",
                    " ",
                    " The 1.8GB file scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new ",
                    " must be in the current working directory before",
                    " using this program to extract PDSI. To learn more open the ",
                    " Tallow file that accompanyed this program distribution.",
                    EMPTY,
                ]
            )
        else:
            self.console.line(EMPTY)
            self.console.line(" The file: " + self.DataFileName + " Does not exist. ")
            self.console.line(" Try a different variable.")
        self.console.pause(PAUSE_LOWER)

    def open_outputs(self):
        self.TsfName = stringclean((self.DataFileName[:40] + ".TSF").ljust(65))
        self.XyName = stringclean((self.DataFileName[:40] + ".XY").ljust(65))
        self.outputs[14] = OutputFile(14, self.TsfName)
        self.outputs[15] = OutputFile(15, self.XyName)

    # ---- region and years

    def ask_region(self):
        while True:
            self.console.lines(REGION_INTRODUCTION)
            self.console.pause(PAUSE_REGION)
            self.ask_maxLat()
            self.ask_minLat()
            self.ask_maxLon()
            self.ask_minLon()
            self.show_box()
            self.console.line(EMPTY)
            self.console.write(" Is this ok? [T]rue or [F]alse ==> ")
            if self.console.read_logical():
                return

    def ask_coordinate(self, prompt):
        while True:
            self.console.write(prompt)
            text = self.console.read_line()[:8].ljust(8)
            if "." not in text:
                self.console.line(EMPTY)
                self.console.line("        Value entered must contain a decimal place.")
                self.console.line("         Try Again")
                self.console.line(EMPTY)
                continue
            value = read_real(text)
            if value is None:
                raise RunTimeError(MESSAGE_CHARACTER, "READ", 5)
            return value

    def ask_maxLat(self):
        while True:
            self.maxLat = self.ask_coordinate(PROMPT_MAX_LAT)
            if -90.0 <= self.maxLat <= 90.0:
                return
            self.console.line(EMPTY)
            self.console.line(" Invalid latitude: " + fixed_real(self.maxLat, 6, 2))
            self.console.line(EMPTY)
            self.console.line("        Valid range is 90.0 <-> -90.0")

    def ask_minLat(self):
        while True:
            self.minLat = self.ask_coordinate(PROMPT_MIN_LAT)
            top = fixed_real(self.maxLat, 6, 2)
            if self.minLat > self.maxLat:
                self.console.line(EMPTY)
                self.console.line("        Your Min. Lat is greater than your Max.Lat")
                self.console.line("         MAX. LAT =>  " + top)
                self.console.line("        Valid range is" + top + " -> -90.0")
            elif self.minLat < -90.0:
                self.console.line(EMPTY)
                self.console.line(" Invalid latitude: " + fixed_real(self.minLat, 6, 2))
                self.console.line(EMPTY)
                self.console.line("        Valid range is" + top + " -> -90.0")
            else:
                return

    def ask_maxLon(self):
        while True:
            self.maxLon = self.ask_coordinate(PROMPT_MAX_LON)
            if -180.0 <= self.maxLon <= 180.0:
                return
            self.console.line(EMPTY)
            self.console.line(" Invalid longitude: " + fixed_real(self.maxLon, 7, 2))
            self.console.line(EMPTY)
            self.console.line("        Valid range is -180.0 <-> 180.0")

    def ask_minLon(self):
        while True:
            self.minLon = self.ask_coordinate(PROMPT_MIN_LON)
            # Kept on purpose: scPDSI takes any minimum longitude.
            if self.MenuChoice == SCPDSI or -180.0 <= self.minLon <= 180.0:
                return
            self.console.line(" Invalid longitude: " + fixed_real(self.minLon, 7, 2))
            self.console.line(EMPTY)
            self.console.line("        Valid range is 180.0 <-> -180.0")

    def show_box(self):
        maxLat, minLat = fixed_real(self.maxLat, 8, 2), fixed_real(self.minLat, 8, 2)
        maxLon, minLon = fixed_real(self.maxLon, 8, 2), fixed_real(self.minLon, 8, 2)
        self.console.line(EMPTY)
        self.console.line(" Area defined is :")
        self.console.line(EMPTY)
        self.console.line(BOX_HEADER)
        self.console.line(" " + minLon + "/" + maxLat + BOX_EDGE + maxLon + "/" + maxLat)
        self.console.lines([BOX_SIDE] * 3 + [BOX_MIDDLE] + [BOX_SIDE] * 3)
        self.console.line(" " + minLon + "/" + minLat + BOX_EDGE + maxLon + "/" + minLat)
        self.console.line(BOX_HEADER)

    def ask_years(self):
        first, last = fixed_integer(FIRST_YEAR, 4), fixed_integer(LAST_YEAR, 4)
        while True:
            self.console.line(EMPTY)
            self.console.line(" Define the time span to select data from;")
            self.console.line(" Valid years are " + first + "-" + last)
            while True:
                self.FYOD = self.ask_year(
                    "        Enter the First Year Of Data.", "        FYOD ==> "
                )
                if FIRST_YEAR <= self.FYOD <= LAST_YEAR:
                    break
                self.console.line(EMPTY)
                self.console.line(
                    "        *WARNING* FYOD must be > " + first + " and < " + last
                )
            while True:
                self.LYOD = self.ask_year(
                    "        Enter the Last Year Of Data.", "        LYOD ==> "
                )
                if self.FYOD <= self.LYOD <= LAST_YEAR:
                    break
                self.console.line(EMPTY)
                self.console.line(
                    "        *WARNING* LYOD must be >= "
                    + fixed_integer(self.FYOD, 4)
                    + " and <= "
                    + last
                )
            self.console.line(EMPTY)
            self.console.line(" Values Entered are:")
            self.console.line(EMPTY)
            self.console.line(
                " yrmin= "
                + fixed_integer(self.FYOD, 5)
                + " yrmax= "
                + fixed_integer(self.LYOD, 5)
            )
            self.console.line(EMPTY)
            self.console.write(" Is this ok? [T]rue or [F]alse ==> ")
            if self.console.read_logical():
                return

    def ask_year(self, heading, prompt):
        """Asks again without a message if the answer is not an integer."""
        rejected = False
        while True:
            self.console.line(EMPTY)
            self.console.line(heading)
            self.console.write(prompt)
            try:
                line = self.console.read_line()
            except RunTimeError:
                if rejected:  # the rejected answer is the reason why there is no year
                    raise RunTimeError(MESSAGE_CHARACTER, "READ", 5) from None
                raise
            try:
                return read_integer(line[:4])
            except NotAnInteger:
                rejected = True

    # ---- reading the block

    def skip_line(self):
        if self.input.readline() == b"":
            raise RunTimeError(MESSAGE_END_OF_FILE, "READ", 13)

    def read_block(self):
        if self.input is None:
            raise RunTimeError("Channel is not connected", "READ", 13)
        selection = self.selection
        pairs = selection.fields_and_columns()
        self.GridValues = {}
        for _ in range((self.FYOD - FIRST_YEAR) * 4320):
            self.skip_line()
        for y in range(1, self.LYOD - self.FYOD + 2):
            for m in range(1, 13):
                for row in range(1, 361):
                    if selection.FirstRow <= row <= selection.LastRow:
                        self.read_row(y, m, row, pairs)
                    else:
                        self.skip_line()
        self.input.close()
        self.input = None

    def read_row(self, y, m, row, pairs):
        raw = self.input.readline()
        line = without_line_end(raw)
        if not raw.endswith(b"\n") and len(line) < 3600:
            self.stop_at_end_of_file()
        line = line.decode("latin-1")
        for field, column in pairs:
            value = 0  # fields after the last one read as blank
            if field <= 720:
                text = line[5 * (field - 1) : 5 * field]
                if len(text) < 5:
                    self.stop_at_bad_value()
                try:
                    value = read_integer(text)
                except NotAnInteger:
                    self.stop_at_bad_value()
            # Values are stored as signed 16-bit integers.
            self.GridValues[y, m, row, column] = (value + 32768) % 65536 - 32768

    def stop_at_end_of_file(self):
        self.console.line(EMPTY)
        self.console.line(" End Of File Reached Prematurely :" + self.DataFileName)
        self.console.line(" This should not happen.  Check file for complete content")
        self.console.line(" Program Terminating ")
        self.console.line(EMPTY)
        raise Stop

    def stop_at_bad_value(self):
        self.console.line(EMPTY)
        if self.selection.CrossesDateLine:
            self.console.line(" Error Reading Grid Values: R2")
        else:
            self.console.line(" Error Reading Grid Values: R1")
        self.console.line(" Program Terminating Without Completion")
        self.console.line(" Try re-entering your search criteria again being sure to")
        self.console.line(" enter values as real numbers")
        raise Stop

    # ---- thinning

    def ask_thinning(self):
        rows, columns = self.selection.RowCount, self.selection.ColCount
        count = self.selection.CellCount
        half = 0 if rows < 1 or columns < 1 else estimated_cells(rows, columns, 2)
        say = self.console.line
        say(EMPTY)
        say(" There are theoretically " + fixed_integer(count, 6) + " grid cells within your")
        say(" search region, this includes cells over oceans for which ")
        say(" data are not available. You can choose now to reduce the number ")
        say(" of grid cells saved by entering here an integer between the")
        say(" values of 2 and " + fixed_integer(min(columns, rows), 4))
        say(EMPTY)
        say(" For example: Entering a value of 2 would reduce ")
        say(" the number of cells saved to roughtly " + fixed_integer(half, 8))
        say(" or " + fixed_real(percentage(half, count), 7, 3) + "%")
        while True:
            say(EMPTY)
            say(" Enter [1] to save all " + fixed_integer(count, 6) + " grid cells.")
            self.console.write(" Enter a value greater than 1 to save less ==> ")
            self.ThinningFactor = self.console.read_free_integer()
            if self.ThinningFactor < 1:
                raise RunTimeError("Thinning factor must be 1 or more", "READ", 5)
            estimate = estimated_cells(rows, columns, self.ThinningFactor)
            say(" The number of cells saved will be roughtly " + fixed_integer(estimate, 8))
            say(" or " + fixed_real(percentage(estimate, count), 7, 3) + "%")
            say(EMPTY)
            self.console.write(" IS this ok? [y]es or [n]o ==> ")
            if self.console.read_word()[:1] not in ("n", "N"):
                return

    # ---- variance test

    def offer_test(self):
        self.console.line(EMPTY)
        self.console.line(" OK, You may now (finally) opt to test the within grid")
        self.console.line(" variance for equality. To do this you must enter a year")
        self.console.line(" at which you feel the variance in the grid values may change.")
        self.console.line(EMPTY)
        self.console.write(" Perform Ftest of Vairance? [T]rue or [F]alse ==> ")
        self.FtestChosen = self.console.read_logical()
        if not self.FtestChosen:
            return
        self.console.line(EMPTY)
        self.console.line(" Enter cutoff year for Ftest. The value must be")
        self.console.write(
            " between "
            + fixed_integer(self.FYOD, 4)
            + "-"
            + fixed_integer(self.LYOD, 4)
            + " ==> "
        )
        self.CutoffYear = self.console.read_free_integer()
        blank = self.DataFileName[:60].find(" ") + 1  # its position; 0: there is none
        self.ReportName = stringclean(
            (self.DataFileName[: blank or 61] + ".ftst").ljust(65)
        )
        self.outputs[16] = OutputFile(16, self.ReportName)
        periods = (
            self.FYOD,
            "-",
            self.CutoffYear,
            " ",
            self.CutoffYear + 1,
            "-",
            self.LYOD,
        )
        self.console.line(free_line("Ftest Comparison of Variance: ", *periods))
        self.outputs[16].line(free_line("# Ftest Comparison of Variance: ", *periods))
        self.outputs[16].line(free_line("# Lon.      Lat.     f      prob"))

    def sample(self, row, column, first, last):
        """Returns the values of those year indices in first..last that exist."""
        values = []
        for y in range(max(first, 1), min(last, self.LYOD - self.FYOD + 1) + 1):
            for m in range(1, 13):
                stored = self.GridValues[y, m, row, column]
                if stored != self.MissingCode:
                    values.append(mul(f32(stored), self.SampleScale))
        return values

    def test_cell(self, row, column):
        offset = self.CutoffYear - self.FYOD
        before = self.sample(row, column, 1, offset)
        after = self.sample(row, column, offset + 1, self.LYOD - self.FYOD + 1)
        f, prob, _, _ = ftest(
            before,
            len(before),
            after,
            len(after),
            lambda: self.console.pause(PAUSE_BETAI),
        )
        if math.isnan(f):
            self.console.line("    *** Ftest Nan computed ***")
            return
        longitude = self.selection.CellLon[column]
        latitude = self.selection.CellLat[row]
        self.outputs[16].line(free_line(longitude, latitude, f, prob))

    # ---- saving

    def holds_data(self, row, column):
        if not (1 <= row <= 360 and 1 <= column <= 720):
            return False
        return self.GridValues[1, 1, row, column] != self.MissingCode

    def save_cells(self):
        console, selection = self.console, self.selection
        console.line(EMPTY)
        console.line(
            "  Saving Cell data : "
            + fixed_integer(self.FYOD, 4)
            + " - "
            + fixed_integer(self.LYOD, 4)
        )
        console.line("     #    longitude latitude   dattype       title")
        self.outputs[15].line(free_line("#   Lon.     Lat.      ", self.TsfName))
        saved = 0
        for row, column in selection.strided_cells(self.ThinningFactor):
            if not self.holds_data(row, column):
                continue
            if self.FtestChosen:
                self.test_cell(row, column)
            saved += 1
            self.save_cell(row, column, saved)
        for output in self.outputs.values():
            output.flush()  # notices a full disk before success is claimed
        self.summary(saved)

    def save_cell(self, row, column, number):
        longitude = self.selection.CellLon[column]
        latitude = self.selection.CellLat[row]
        place = " " + fixed_real(longitude, 9, 3) + fixed_real(latitude, 9, 3) + "    "
        # Kept on purpose: after a box across the date line the three blanks are missing.
        between = "" if self.selection.CrossesDateLine else "   "
        self.outputs[14].line(place + self.OutputPrefix + self.TitleText + self.RFMT)
        self.outputs[15].line(place + self.OutputPrefix + between + self.TitleText)
        self.console.line(
            "  "
            + fixed_integer(number, 6)
            + fixed_real(longitude, 10, 3)
            + fixed_real(latitude, 10, 3)
            + "   "
            + self.OutputPrefix
            + "   "
            + self.TitleText
        )
        for y in range(1, self.LYOD - self.FYOD + 2):
            line = " " + fixed_integer(self.FYOD + y - 1, 4)
            for m in range(1, 13):
                line += fixed_integer(self.GridValues[y, m, row, column], 6)
            self.outputs[14].line(line)

    def summary(self, saved):
        self.console.line(EMPTY)
        self.console.line(EMPTY)
        self.console.line(" PROGRAM TERMINATING NORMALLY")
        defined = fixed_integer(self.selection.CellCount, 10)
        self.console.line(" " + defined + " Grids Defined")
        self.console.line(" " + fixed_integer(saved, 10) + " Grids Selected and Saved")
        self.console.line(" Output is in file " + self.TsfName)
        for output in self.outputs.values():
            output.close()
        self.outputs = {}

    def end_questions(self):
        self.console.line(EMPTY)
        self.console.line(" Perform another search?")
        self.console.write(" [t]rue [f]alse ==> ")
        if not self.console.read_logical():
            raise Stop
        self.console.line(EMPTY)
        self.console.line(" Change search parameters?")
        self.console.write(" [t]rue [f]alse ==> ")
        self.ChangeSearch = self.console.read_logical()


# -------------------------------------------------- self-test


def bits(value):
    return struct.unpack("<I", struct.pack("<f", value))[0]


def generated(count, seed, low, high):
    values, state = [], seed
    for _ in range(count):
        state = (state * 1103515245 + 12345) & 0x7FFFFFFF
        values.append(low + (state >> 8) % (high - low + 1))
    return values


def frost_days(integers):
    return [mul(f32(v), f32(0.01)) for v in integers]


def tested(first, second):
    """(f, prob, d1, d2, how often betai reported a bad argument)"""
    complaints = []
    result = ftest(
        frost_days(first),
        len(first),
        frost_days(second),
        len(second),
        lambda: complaints.append(1),
    )
    return (*result, len(complaints))


J = [100, 250, 300, 500, 900, 1200, 1100, 800, 600, 400, 200, 150]
K = [90, 260, 310, 480, 950, 1250, 1000, 850, 580, 420, 180, 160]

# name: (first sample, second sample, bits of f, prob, d1, d2); prob within a relative 1e-5
STATISTICS = {
    "J and K": (J, K, 0x3F82AD5F, 0.963542938, 21, 21),
    "K and J": (K, J, 0x3F82AD5F, 0.963542938, 21, 21),
    "doubled": ([1, 2, 3, 4, 5], [2, 4, 6, 8, 10], 0x40800000, 0.208000004, 5, 5),
    "equal": ([1, 2, 3, 4, 5], [1, 2, 3, 4, 5], 0x3F800000, 0.999999285, 8, 8),
    "one flat": ([5] * 5, [1, 2, 3, 4, 5], 0x7F800000, 0.0, 3, 3),
    "pairs": ([100, 200], [100, 300], 0x40800000, 0.590334356, 2, 2),
    "truncated": ([100, 200, 300], [100, 300, 500], 0x40800000, 0.590334356, 2, 2),
    "L1": (
        generated(120, 1, 0, 3100),
        generated(120, 101, 0, 2500),
        0x3FE08977,
        6.53733805e-05,
        206,
        206,
    ),
    "L2": (
        generated(12, 2, 0, 3100),
        generated(12, 102, 0, 2500),
        0x3FF3DA3D,
        0.121298075,
        25,
        25,
    ),
    "L3": (
        generated(180, 3, 0, 3100),
        generated(180, 103, 0, 2500),
        0x3FE9A9C5,
        2.59556732e-09,
        399,
        399,
    ),
    "L4": (
        generated(12, 4, 0, 3100),
        generated(348, 104, 0, 2500),
        0x3FF7A069,
        0.0145330187,
        22,
        781,
    ),
    "L5": (
        generated(696, 5, 0, 3100),
        generated(696, 105, 0, 2500),
        0x3FD23E0B,
        3.04239638e-23,
        1620,
        1620,
    ),
}

# searches of one run (scPDSI?, maxLat, minLat, maxLon, minLon), then the result of the last one:
# FirstRow, LastRow, FirstCol, LastCol, EastFirstCol or None, CellCount
REGIONS = [
    ([(0, 10, -10, 20, 0)], 161, 200, 361, 400, None, 1600),
    ([(0, 60, 50, 10, 0)], 281, 300, 361, 380, None, 400),
    ([(0, 52, 51, 0.5, -0.5)], 283, 284, 360, 361, None, 4),
    ([(0, 10.25, 10.25, 20, 0)], 202, 201, 361, 400, None, 0),
    ([(0, 10.25, 10, 20, 0)], 201, 201, 361, 400, None, 40),
    ([(0, 10.5, 10.25, 20.25, 0.25)], 202, 201, 362, 401, None, 0),
    ([(0, 10, 10, 20, 20)], 201, 200, 401, 400, None, 0),
    ([(0, f32(51.2), f32(51.1), f32(0.2), f32(0.1))], 283, 282, 361, 360, None, 0),
    ([(0, f32(51.3), f32(51.2), f32(0.3), f32(0.2))], 283, 283, 361, 361, None, 1),
    ([(0, 90, -90, 180, -180)], 1, 360, 1, 720, None, 259200),
    ([(0, 89.75, 89.75, 179.75, 179.75)], 360, 360, 720, 720, None, 1),
    ([(0, -90, -90, -180, -180)], 1, 0, 1, 0, None, 0),
    ([(0, 90, 90, 180, 180)], 0, 360, 0, 720, None, 260281),
    ([(0, 90, f32(89.8), 10, 0)], 0, 360, 361, 380, None, 7220),
    ([(0, 10, -10, 180, f32(179.8))], 161, 200, 0, 720, None, 28840),
    ([(0, 10, -10, -170, 170)], 161, 200, 1, 20, 701, 1600),
    ([(0, 10, -10, -180, 170)], 161, 200, 1, 0, 701, 800),
    ([(0, 10, -10, -170, 180)], 161, 200, 1, 20, 0, 29640),
    ([(0, 10, -10, 0, 0.5)], 161, 200, 1, 360, 362, 28760),
    ([(0, 10, -10, 0.25, 0.5)], 161, 200, 1, 361, 362, 28800),
    ([(1, 10, -10, 20, 0)], 160, 201, 361, 400, None, 1680),
    ([(1, 10.25, 10.25, 20, 0)], 159, 160, 361, 400, None, 80),
    ([(1, 90, -90, 180, -180)], 360, 1, 1, 720, None, -257760),
    ([(1, 90, 0, 20, 0)], 0, 1, 361, 400, None, 80),
    ([(1, 0, -90, 20, 0)], 360, 0, 361, 400, None, -14360),
    ([(1, 0, -89.75, 20, 0)], 360, 360, 361, 400, None, 40),
    ([(1, 60, 50, 10, 500)], 60, 81, 1, 380, 0, 24222),
    ([(0, 10, -10, -170, 170), (0, 10, -10, 20, 0)], 161, 200, 1, 400, 361, 30400),
    ([(0, 10, -10, 20, 0), (0, 10, -10, 180, 180)], 161, 200, 361, 720, None, 14400),
    ([(0, 10, -10, 20, 0), (0, 10, -10, -180, -180)], 161, 200, 1, 400, None, 16000),
    ([(0, 10, -10, 20, 0), (0, 10, -10, -180, 170)], 161, 200, 1, 400, 701, 16800),
    ([(0, 10, -10, -170, 170), (0, 10, -10, 180, -180)], 161, 200, 1, 20, 0, 29640),
]

# rows, columns, factor, estimate, percentage
THINNING = [
    (40, 40, 1, 1600, "100.000"),
    (40, 40, 3, 196, " 12.250"),
    (40, 40, 6, 49, "  3.062"),
    (40, 40, 8, 25, "  1.562"),
    (40, 40, 14, 9, "  0.562"),
    (40, 40, 2147483647, 1, "  0.062"),
    (3, 5, 3, 2, " 13.333"),
    (7, 11, 3, 12, " 15.584"),
    (1, 3, 2, 2, " 66.667"),
    (360, 720, 7, 5356, "  2.066"),
    (361, 721, 2, 65341, " 25.104"),
    (0, 40, 5, 0, "    NaN"),
    (-358, 720, 1, -257760, "100.000"),
    (-358, 720, 2, -64080, " 24.860"),
    (-358, 720, 7, -5150, "  1.998"),
    (-358, 720, 400, 0, " -0.000"),
]

# value, width, decimals, text
FIXED_REALS = [
    (-0.0, 8, 2, "   -0.00"),
    (10.125, 8, 2, "   10.12"),
    (10.375, 8, 2, "   10.38"),
    (f32(10.005), 8, 2, "   10.01"),
    (999999.0, 8, 2, "********"),
    (-100.0, 6, 2, "******"),
    (f32(90.005), 6, 2, " 90.00"),
    (-0.5, 6, 2, " -0.50"),
    (-1000.0, 7, 2, "*******"),
    (math.inf, 7, 2, "    Inf"),
    (-math.inf, 7, 2, "   -Inf"),
    (-179.75, 9, 3, " -179.750"),
]

# answer, 32-bit real or None
COORDINATES = [
    ("45.", 45.0),
    (".5", 0.5),
    ("+45.0", 45.0),
    ("-.5", -0.5),
    ("4.5E1", 45.0),
    ("4.5D1", 45.0),
    ("4 5.0", 4.0),
    ("45.0 N", 45.0),
    ("45.0N", None),
    ("4.5.0", None),
    (".", None),
    ("-.", None),
    ("a.b", None),
    ("90.00001", 90.00000762939453),
    ("90.00000", 90.0),
    ("-179.750", -179.75),
    ("1.0e39", math.inf),
    ("-1.e39", -math.inf),
    ("1.e-50", 0.0),
    ("1.e-45", 2.0**-149),
    ("16777217", 16777216.0),
    ("16777219", 16777220.0),
]

SHORTEST = [
    (f32(1.02091587), "1.0209159"),
    (f32(0.963542938), "0.96354294"),
    (f32(6.53733805e-05), "6.537338e-05"),
    (f32(0.208000004), "0.208"),
    (f32(0.000001), "1.0e-06"),
    (4.0, "4.0"),
    (0.0, "0.0"),
    (-0.25, "-0.25"),
    (-179.75, "-179.75"),
    (16777216.0, "16777216.0"),
    (2.0**-149, "1.0e-45"),
    (math.nan, "NaN"),
    (-math.inf, "-Inf"),
]

BLANKS = [
    ("ab c ", "abc  "),
    ("a  b ", "ab   "),
    ("  abc  ", "abc    "),
    ("ab c", "abcc"),
    ("x y", "xyy"),
    ("a b c", "abccc"),
    ("  a", "aaa"),
    ("   ab", "abbbb"),
    ("     ", "     "),
    (" ", " "),
]


def self_test():
    failures = 0
    checked = 0

    def expect(what, got, wanted):
        nonlocal failures, checked
        checked += 1
        if got != wanted and not (got != got and wanted != wanted):
            failures += 1
            print("FAILED %s: got %r, expected %r" % (what, got, wanted))

    def expect_near(what, got, wanted):
        ok = got == wanted or abs(got - wanted) <= 1e-5 * abs(wanted)
        expect("%s: %r near %r" % (what, got, wanted), ok, True)

    for name, (first, second, f_bits, prob, d1, d2) in STATISTICS.items():
        got = tested(first, second)
        expect(name + " f", bits(got[0]), f_bits)
        expect_near(name + " prob", got[1], prob)
        expect(name + " counts", got[2:], (d1, d2, 0))
    flat = tested([1313] * 300, [1313] * 732)
    expect("flat f", bits(flat[0]), 0xBE9C77DD)
    expect("flat prob", flat[1], math.nan)
    expect("flat complaint", flat[4], 1)
    for first, second in (([], [1, 2, 3]), ([1, 2, 3], []), ([1], [1, 2, 3])):
        got = tested(first, second)
        expect("short sample f", got[0], math.nan)
        expect("short sample prob", got[1], math.nan)
    expect("FPMIN", bits(FPMIN), 0x0DA24260)
    expect("EPS", bits(EPS), 0x34A10FB0)
    for x, wanted in (
        (0.5, 0x3F128682),
        (1.0, 0),
        (1.5, 0xBDF75CAE),
        (2.0, 0xA6000000),
        (10.0, 0x414CD449),
        (100.5, 0x43B4B7C0),
    ):
        expect("gammln %r" % x, bits(gammln(x)), wanted)
    for a, b, x, wanted in (
        (0.5, 0.5, 0.5, 0.5),
        (2.0, 3.0, 0.25, 0.261718631),
        (1.0, 1.0, 0.0, 0.0),
        (1.0, 1.0, 1.0, 1.0),
        (1.0, 1.0, 0.5, 0.5),
        (10.0, 10.0, 0.5, 0.49999851),
        (5.5, 7.0, f32(0.3), 0.158661708),
    ):
        expect_near("betai", betai(a, b, x, lambda: expect("no complaint", 0, 1)), wanted)
    for a, b, x in ((1.0, 1.0, -0.5), (2.0, 3.0, 1.5)):
        complaints = []
        expect("betai", betai(a, b, x, lambda: complaints.append(1)), math.nan)
        expect("betai complaint", complaints, [1])

    for searches, row1, row2, col1, col2, east, count in REGIONS:
        selection = Selection()
        for scpdsi, maxLat, minLat, maxLon, minLon in searches:
            selection.find(maxLat, minLat, maxLon, minLon, bool(scpdsi))
        got = (
            selection.FirstRow,
            selection.LastRow,
            selection.FirstCol,
            selection.LastCol,
            selection.EastFirstCol if selection.CrossesDateLine else None,
            selection.CellCount,
        )
        expect("region %r" % searches, got, (row1, row2, col1, col2, east, count))
    sticky = Selection()
    sticky.find(10, -10, -170, 170, False)
    sticky.find(10, -10, 20, 0, False)
    pairs = sticky.fields_and_columns()
    expect("west fields", pairs[:400], [(c, c) for c in range(1, 401)])
    expect("east fields", pairs[400:], [(c + 40, c) for c in range(361, 721)])
    crossing = Selection()
    crossing.find(10, -10, -170, 170, False)
    for step, columns in ((6, [1, 7, 13, 19, 701, 707, 713, 719]), (20, [1, 701])):
        got = [c for r, c in crossing.strided_cells(step) if r == crossing.FirstRow]
        expect("columns by %d" % step, got, columns)

    for rows, columns, step, estimate, text in THINNING:
        got = estimated_cells(rows, columns, step)
        expect("estimate", got, estimate)
        expect("percentage", fixed_real(percentage(got, rows * columns), 7, 3), text)
    expect("minus nothing", fixed_real(percentage(0, -257760), 7, 3), " -0.000")
    for value, width, decimals, text in FIXED_REALS:
        expect("fixed real %r" % value, fixed_real(value, width, decimals), text)
    for value, width, text in (
        (12345, 4, "****"),
        (-9999, 4, "****"),
        (-14360, 6, "-14360"),
    ):
        expect("fixed integer", fixed_integer(value, width), text)
    for value, text in SHORTEST:
        expect("shortest %r" % value, shortest_real(value), text)
    for text, value in COORDINATES:
        got = read_real(text)
        expect("coordinate " + text, got, value)
    expect("sign of zero", math.copysign(1.0, read_real("-0.0")), -1.0)
    for text, value in (("12", 12), (" 7", 7), ("1 2", 12), ("", 0), ("19 5", 195)):
        expect("integer " + text, read_integer(text), value)
    for text in ("3x", "+", "-", "1.", "--1", "2147483648", "-2147483649", "1_0"):
        try:
            expect("no integer " + text, read_integer(text), "refused")
        except NotAnInteger:
            expect("no integer", True, True)
    expect("least integer", read_integer("-2147483648"), -(2**31))
    for line, value in ((" a b", "a"), (",a", ""), ("/a", ""), ("\ta/b", "a"), ("", "")):
        expect("first value", first_value(line), value)
    for text, cleaned in BLANKS:
        expect("stringclean %r" % text, stringclean(text), cleaned)
    print("%d checks, %d failed" % (checked, failures))
    return 1 if failures else 0

if __name__ == "__main__":
    if sys.argv[1:] == ["--self-test"]:
        sys.exit(self_test())
    sys.exit(Program().main())
