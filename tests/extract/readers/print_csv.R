# Prints what R reads in extracts of cells: file, latitude, longitude, year, month, value.
#
#   Rscript print_csv.R FILE.csv...

for (name in commandArgs(trailingOnly = TRUE)) {
  series <- read.csv(name)
  stopifnot(sapply(series, is.numeric))  # no column fell back on text
  if ("value" %in% names(series)) {
    values <- series$value
    times <- series[c("lat", "lon", "year", "month")]
  } else {  # a line a year
    months <- series[4:15]
    stopifnot(tolower(names(months)) == tolower(month.abb))
    values <- as.vector(t(as.matrix(months)))
    times <- series[rep(seq_len(nrow(series)), each = 12), c("lat", "lon", "year")]
    times$month <- rep(1:12, nrow(series))
  }
  known <- !is.na(values)
  text <- formatC(values[known], digits = 15, format = "g")
  cat(paste(basename(name), times$lat[known], times$lon[known], times$year[known],
            times$month[known], text), sep = "\n")
}
