# Turns an extract into tables with blanks between the columns, in physical units, for
# gnuplot (cells.gp) or a spreadsheet. Works with any awk.
#
#   awk -v table=data  -f cells.awk STEM.TSF
#         first year, last year, cells, first cell's longitude and latitude, |quantity, unit
#   awk -v table=source -f cells.awk STEM.TSF
#         the release of the data
#   awk -v table=cells -f cells.awk STEM.TSF
#         longitude, latitude, mean of the years, distance to the nearest other cell
#   awk -v table=years -v lon=5.75 -v lat=52.25 -f cells.awk STEM.TSF
#         year, annual mean
#   awk -v table=cycle -v lon=5.75 -v lat=52.25 -f cells.awk STEM.TSF
#         month, mean, lowest, highest
#   awk -v table=report -f cells.awk STEM.ftst STEM.TSF
#         cutoff year; number of f, of infinite f; largest finite f; number of prob < 0.05,
#         of finite f that are 1 or more
#   awk -v table=f     -f cells.awk STEM.ftst STEM.TSF
#         longitude, latitude, distance, kind (0: no f; 1: f; 2: infinite f), colour (0: f
#         is 1; 1: f is 4), prob < 0.05 (0 or 1)
#   gzip -dc land_mask.txt.gz | awk -v table=land -f cells.awk
#         runs of land: longitude and latitude of the middle, half the length
#
# Degrees, east and north positive. NaN stands for a mean that is not known. Where a file
# is not valid, a message says why and the exit status is 1.

BEGIN {
  # The files hold whole numbers. What one unit of the physical quantity is in them, and
  # which number stands for a month without a value:
  #         data set         quantity                       unit     stored as, missing
  describe("CRUts4.01ppt.", "Precipitation",                "mm a month",    10, -999)
  describe("CRUts4.01tmp.", "Mean temperature",             "°C",            10, -999)
  describe("CRUts4.01dtr.", "Diurnal temperature range",    "°C",            10, -999)
  describe("CRUts4.01tmn.", "Minimum temperature",          "°C",            10, -999)
  describe("CRUts4.01tmx.", "Maximum temperature",          "°C",            10, -999)
  describe("CRUts4.01vap.", "Vapour pressure",              "hPa",           10, -999)
  describe("CRUts4.01pet.", "Potential evapotranspiration", "mm a day",      10, -999)
  describe("CRUts4.01cld.", "Cloud cover",                  "percent",       10, -999)
  describe("CRUts4.01frs.", "Frost days",                   "days a month", 100, -999)
  describe("CRUts4.01wet.", "Wet days",                     "days a month", 100, -999)
  describe("scPDSI.dat.",   "Drought index scPDSI",         "index",        100, -9999)
}

function describe(data_set, quantity, unit, stored_as, missing) {
  text[data_set] = quantity ", " unit
  scale[data_set] = stored_as
  code[data_set] = missing
}

function fail(message) {
  print message > "/dev/stderr"
  failed = 1
  exit 1
}

# Fields have fixed columns: wide numbers touch, so never split at blanks.
function field(first, last) {
  return substr($0, first, last - first + 1) + 0
}

table == "land" { # rows from the south, columns from the west
  start = 0
  for (column = 1; column <= 721; ++column) {
    land = substr($0, column, 1) == "1"
    if (land && !start) start = column
    if (!land && start) {
      print (start + column - 2) / 4 - 180, NR / 2 - 90.25, (column - start) / 4
      start = 0
    }
  }
  next
}

# The report: two lines of heading, then one line for each cell. Cells whose f is NaN are
# left out. Inf is kept: one period had no variance at all.
FILENAME ~ /\.ftst$/ {
  if (FNR == 1) { # ... Variance:  1901- 1959  1960- 2016
    report = FILENAME
    report_first = $6 + 0
    cutoff = $7
    report_last = $9
  }
  if (FNR == 1 ? $5 != "Variance:" : FNR > 2 && length($0) != 65)
    fail(FILENAME " is no variance report, or is cut off")
  if (FNR > 2) {
    f = $3
    f_of[field(3, 17) " " field(19, 33)] = f
    ringed[field(3, 17) " " field(19, 33)] = $4 ~ /[0-9]/ && $4 + 0 < 0.05
    ++count
    below += $4 ~ /[0-9]/ && $4 + 0 < 0.05
    if (f == "Inf") ++infinite
    else if (largest == "" || f + 0 > largest + 0) largest = f
    if (f != "Inf" && f >= 1) ++usual
  }
  next
}

# The heading of a cell.
length($0) == 128 {
  data_set = substr($0, 24, 13)
  sub(/ +$/, "", data_set)
  source = data_set ~ /^CRUts/ ? "CRU TS " substr(data_set, 6) : "scPDSI"
  sub(/[a-z]+\.$/, "", source)
  sub(/^CRUts[0-9.]*/, "CRUts4.01", data_set) # other releases are stored alike
  if (!(data_set in scale)) fail(FILENAME " is no series file")
  ++cells
  place[cells] = field(2, 10) " " field(11, 19)
  longitude[cells] = field(2, 10)
  latitude[cells] = field(11, 19)
  next
}

length($0) != 77 || !cells {
  fail(FILENAME " is no series file, or is cut off (line " FNR ")")
}

# A year. Every month has the same weight. A year with a missing month has no annual mean:
# without its January it would look too warm.
{
  chosen = place[cells] == (lon + 0) " " (lat + 0)
  year = field(2, 5)
  if (first == "") first = year
  if (year > last) last = year
  ++years[cells]
  sum = 0
  complete = 1
  for (month = 1; month <= 12; ++month) {
    value = field(6 * month, 6 * month + 5)
    if (value == code[data_set]) { # before scaling
      complete = 0
      continue
    }
    sum += value
    if (chosen) add_to_cycle(month, value / scale[data_set])
  }
  if (complete) {
    mean = sum / 12 / scale[data_set]
    total[cells] += mean
    ++known[cells]
  }
  if (table == "years" && chosen) print year, complete ? sprintf("%.4f", mean) : "NaN"
}

function add_to_cycle(month, value) {
  month_sum[month] += value
  if (!month_count[month]++) lowest[month] = highest[month] = value
  if (value < lowest[month]) lowest[month] = value
  if (value > highest[month]) highest[month] = value
}

# In degrees; only for a few cells, which are drawn as circles that mustn't overlap.
function nearest(cell,    other, x, y, distance) {
  distance = 360
  for (other = 1; other <= cells && cells < 500; ++other) {
    x = longitude[other] - longitude[cell]
    y = latitude[other] - latitude[cell]
    if (x < 0) x = -x
    if (y < 0) y = -y
    if (y > x) x = y
    if (other != cell && x < distance) distance = x
  }
  return distance
}

function print_f(cell,    f) {
  f = place[cell] in f_of ? f_of[place[cell]] : "none"
  # An f below 1 comes from rounding only.
  kind = f == "Inf" ? 2 : f != "none" && f >= 1 ? 1 : 0
  print place[cell], nearest(cell), kind, kind == 1 ? log(f) / log(4) : 0,
        ringed[place[cell]] + 0
}

END {
  if (failed) exit 1
  if (table == "land") exit
  if (!cells) {
    fail(FILENAME " holds no cell: the search was left before its end, or its box has " \
         "no cell with data")
  }
  for (cell = 1; cell <= cells; ++cell) {
    if (years[cell] != last - first + 1)
      fail(FILENAME " is cut off: its cells have different years")
    matched += place[cell] in f_of
  }
  if ((table == "report" || table == "f") && !report)
    fail(ARGV[1] " is no variance report, or is cut off")
  # The report may be that of an earlier search: one without the test leaves it.
  if (report && (matched != count || report_first != first || report_last != last)) {
    fail(report " is of another search (" report_first " to " report_last \
         "): no picture of it")
  }
  if (table == "source") print source
  if (table == "data") print first, last, cells, place[1], "|" text[data_set]
  if (table == "report") print cutoff, count + 0, infinite + 0, \
                               largest == "" ? "NaN" : largest, below + 0, usual + 0
  for (cell = 1; cell <= cells; ++cell) {
    if (table == "cells")
      print place[cell], known[cell] ? sprintf("%.4f", total[cell] / known[cell]) : "NaN",
            nearest(cell)
    if (table == "f") print_f(cell)
  }
  for (month = 1; month <= 12 && table == "cycle"; ++month)
    if (month_count[month])
      print month, month_sum[month] / month_count[month], lowest[month], highest[month]
}
