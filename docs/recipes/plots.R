# Annual means of the plots in an extract of sites, as a table and as a picture. Base R
# only, no packages.
#
#   Rscript plots.R SERIES.csv
#
# reads   SERIES.csv, written by veldmark-extract with --sites (not with --wide)
# writes  SERIES.years.png; the table goes to the screen
#
# The plots are told apart by the table's first column. A year with a missing month has no
# mean.

name <- commandArgs(trailingOnly = TRUE)
if (length(name) != 1) {
  message("usage: Rscript plots.R SERIES.csv")
  quit(status = 2)
}
series <- read.csv(name, check.names = FALSE)
plots <- unique(series[[1]])
means <- lapply(plots, function(plot) {
  tapply(series$value[series[[1]] == plot], series$year[series[[1]] == plot], mean)
})
if (all(is.na(unlist(means)))) {
  message("plots.R: ", name, " has no complete year")
  quit(status = 1)
}

for (i in seq_along(plots)) {
  known <- means[[i]][!is.na(means[[i]])]
  cat(sprintf("%s %s %.3f\n", plots[i], names(known), known), sep = "")
}

colours <- c("#3b528b", "#b5442e", "#2b8a57", "#8a6d1f", "#7b3f8c", "#555555")
picture <- sub("\\.csv$", ".years.png", name)
png(picture, width = 900, height = 480, res = 96)
years <- sort(unique(series$year))
plot(range(years), range(unlist(means), na.rm = TRUE), type = "n", las = 1,
     xlab = "year", ylab = "value", main = "Annual means")
for (i in seq_along(plots)) {
  colour <- colours[(i - 1) %% length(colours) + 1]
  lines(as.numeric(names(means[[i]])), means[[i]], type = "o", pch = 19, col = colour)
}
legend("topleft", legend = plots, col = colours[(seq_along(plots) - 1) %% 6 + 1], lty = 1,
       pch = 19, bty = "n")
invisible(dev.off())
cat(sprintf("%-18s %s\n", "picture", picture))
