# Turns an extract into tables with blanks between the columns, in physical units, for
# gnuplot (cells.gp) or a spreadsheet. Any awk will do.
#
#   awk -v table=data  -f cells.awk STEM.TSF            quantity, unit
#   awk -v table=cells -f cells.awk STEM.TSF            longitude latitude mean-of-years
#   awk -v table=years -v lon=5.75 -v lat=52.25 -f cells.awk STEM.TSF
#                                                       year annual-mean
#   awk -v table=list  -f cells.awk STEM.XY             longitude latitude
#   awk -v table=f     -f cells.awk STEM.ftst STEM.XY   longitude latitude f
#
# NaN stands for a mean that is not known, "none" for an f that the report does not
# have. The exit status is 1 when the report and the list of cells do not belong
# together.

BEGIN {
  # The files hold whole numbers. What one unit of the physical quantity is in them:
  #         data set         quantity                        unit            stored as
  describe("CRUts4.01ppt.", "Precipitation",                "mm a month",    10)
  describe("CRUts4.01tmp.", "Mean temperature",             "degrees C",     10)
  describe("CRUts4.01dtr.", "Diurnal temperature range",    "degrees C",     10)
  describe("CRUts4.01tmn.", "Minimum temperature",          "degrees C",     10)
  describe("CRUts4.01tmx.", "Maximum temperature",          "degrees C",     10)
  describe("CRUts4.01vap.", "Vapour pressure",              "hPa",           10)
  describe("CRUts4.01pet.", "Potential evapotranspiration", "mm a day",      10)
  describe("CRUts4.01cld.", "Cloud cover",                  "percent",       10)
  describe("CRUts4.01frs.", "Frost days",                   "days a month", 100)
  describe("CRUts4.01wet.", "Wet days",                     "days a month", 100)
  describe("scPDSI.dat.",   "Drought index scPDSI",         "index",        100)
}

function describe(data_set, quantity, unit, stored_as) {
  text[data_set] = quantity ", " unit
  scale[data_set] = stored_as
}

# Fields have fixed columns: wide numbers touch, so never split on blanks.
function field(first, last) {
  return substr($0, first, last - first + 1) + 0
}

function end_cell() {
  if (table == "cells" && place != "")
    print place, known ? sprintf("%.4f", total / known) : "NaN"
  total = known = 0
}

# The report: two lines of heading, then a cell a line. Cells whose f is no number are
# not there. Inf is: one period had no variance at all.
table == "f" && FILENAME ~ /\.ftst$/ {
  if (FNR > 2) {
    f = substr($0, 35, 15)
    gsub(/ /, "", f)
    f_of[field(3, 17) " " field(19, 33)] = f
    ++unmatched
  }
  next
}

# The list of cells: a line of heading, then a cell a line.
table == "list" || table == "f" {
  if (FNR > 1) {
    place = field(2, 10) " " field(11, 19)
    if (table == "list") print place
    else print place, (place in f_of) ? f_of[place] : "none"
    if (place in f_of) --unmatched
  }
  next
}

# A cell's heading; a year's line has 77 characters.
length($0) > 77 {
  end_cell()
  place = field(2, 10) " " field(11, 19)
  data_set = substr($0, 24, 13)
  sub(/ +$/, "", data_set)
  if (table == "data") {
    print text[data_set]
    exit
  }
  next
}

# A year. Each month counts alike. A year with a missing month has no annual mean:
# without its January it would look too warm.
{
  sum = 0
  complete = 1
  for (first = 6; first <= 72; first += 6) {
    month = field(first, first + 5)
    if (month == -999 || month == -9999) complete = 0 # before scaling
    sum += month
  }
  if (complete) {
    mean = sum / 12 / scale[data_set]
    total += mean
    ++known
  }
  if (table == "years" && place == (lon + 0) " " (lat + 0))
    print field(2, 5), complete ? sprintf("%.4f", mean) : "NaN"
}

END {
  end_cell()
  if (unmatched) exit 1
}
