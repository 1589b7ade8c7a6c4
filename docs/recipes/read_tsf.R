# A function that reads the series of an extract, to be copied. Base R, no packages.
#
#   table <- read_tsf("NAME.TSF")

# The files hold whole numbers. What one unit of the physical quantity is in them, and
# which number stands for a month without a value:
data_sets <- read.table(header = TRUE, sep = "|", strip.white = TRUE, text = "
name          | quantity                     | unit         | stored_as | missing
CRUts4.01ppt. | Precipitation                | mm a month   |  10       | -999
CRUts4.01tmp. | Mean temperature             | \u00b0C      |  10       | -999
CRUts4.01dtr. | Diurnal temperature range    | \u00b0C      |  10       | -999
CRUts4.01tmn. | Minimum temperature          | \u00b0C      |  10       | -999
CRUts4.01tmx. | Maximum temperature          | \u00b0C      |  10       | -999
CRUts4.01vap. | Vapour pressure              | hPa          |  10       | -999
CRUts4.01pet. | Potential evapotranspiration | mm a day     |  10       | -999
CRUts4.01cld. | Cloud cover                  | percent      |  10       | -999
CRUts4.01frs. | Frost days                   | days a month | 100       | -999
CRUts4.01wet. | Wet days                     | days a month | 100       | -999
scPDSI.dat.   | Drought index scPDSI         | index        | 100       | -9999
")

# The data set that a cell's heading names, as above: other releases are stored alike.
data_set_of <- function(heading)
  sub("^CRUts[0-9.]*", "CRUts4.01", trimws(substring(heading, 24, 36)))

# Returns a data frame with longitude, latitude, year, month and value, a row a month,
# cell by cell. Degrees, east and north positive; values in the units above, NA where
# missing.
read_tsf <- function(name) {
  # Fields have fixed columns: wide numbers touch, so never split at blanks.
  field <- function(lines, first, last) as.numeric(substring(lines, first, last))
  lines <- readLines(name, warn = FALSE)
  is_heading <- nchar(lines, "bytes") == 128
  heading <- lines[is_heading]
  set <- data_sets[match(data_set_of(heading), data_sets$name), ]
  cell <- rep(cumsum(is_heading)[!is_heading], each = 12)
  line <- rep(lines[!is_heading], each = 12)
  if (anyNA(set$name) || any(cell == 0) || any(nchar(line, "bytes") != 77) ||
      any(tail(is_heading, 1)))
    stop(name, " is no series file, or is cut off", call. = FALSE)
  stored <- field(line, 6 + 6 * 0:11, 11 + 6 * 0:11) # January to December, again and again
  stored[stored == set$missing[cell]] <- NA          # before scaling
  data.frame(longitude = field(heading, 2, 10)[cell],
             latitude = field(heading, 11, 19)[cell],
             year = field(line, 2, 5), month = rep_len(1:12, length(line)),
             value = stored / set$stored_as[cell])
}
