# Pictures of an extract: the saved cells on a map, one cell's annual means and annual
# cycle, and the variance report on the map. Base R only, no packages.
#
#   Rscript cells.R STEM [LON LAT]
#
# reads   STEM.TSF and, if there is one, STEM.ftst
# writes  STEM.map.png, STEM.years.png, STEM.cycle.png, STEM.f.png
#
# LON LAT is the centre of the cell for annual means and cycle, in degrees, east and north
# positive; without it the first saved cell is taken. Needs read_tsf.R and
# land_mask.txt.gz beside it.

fail <- function(...) {
  message(...)
  quit(status = 1)
}
arguments <- commandArgs(trailingOnly = TRUE)
if (!length(arguments) %in% c(1, 3)) fail("usage: Rscript cells.R STEM [LON LAT]")
stem <- arguments[1]
# The C locale has no degree sign.
if (!l10n_info()[["UTF-8"]]) invisible(Sys.setlocale("LC_CTYPE", "C.UTF-8"))
script <- sub("^--file=", "", grep("^--file=", commandArgs(), value = TRUE))
folder <- dirname(gsub("~+~", " ", script, fixed = TRUE)) # Rscript writes blanks as ~+~
source(file.path(folder, "read_tsf.R"))


# --- The numbers.

tsf <- paste0(stem, ".TSF")
if (file.access(tsf, 4) != 0) fail("cannot read ", tsf)
series <- tryCatch(read_tsf(tsf), error = function(e) fail(conditionMessage(e)))
if (nrow(series) == 0)
  fail(tsf, " holds no cell: the search was left before its end, or its box has no cell ",
       "with data")
# One row for each year.
months <- matrix(series$value, ncol = 12, byrow = TRUE)
series <- series[series$month == 1, c("longitude", "latitude", "year")]
cell <- cumsum(c(TRUE, diff(series$longitude) != 0 | diff(series$latitude) != 0))
first <- min(series$year)
last <- max(series$year)
if (any(tabulate(cell) != last - first + 1))
  fail(tsf, " is cut off: its cells have different years")
# Every month has the same weight. A year with a missing month has no annual mean:
# without its January it would look too warm.
annual <- rowMeans(months)
cells <- data.frame(lon = series$longitude[!duplicated(cell)],
                    lat = series$latitude[!duplicated(cell)],
                    mean = as.vector(tapply(annual, cell, mean, na.rm = TRUE)))
cells$mean[is.nan(cells$mean)] <- NA # a cell without a complete year

chosen <- 1
if (length(arguments) == 3)
  chosen <- which(cells$lon == as.numeric(arguments[2]) &
                  cells$lat == as.numeric(arguments[3]))
if (length(chosen) != 1)
  fail("no saved cell has its centre at ", arguments[2], " ", arguments[3])
means <- annual[cell == chosen]
months <- months[cell == chosen, , drop = FALSE]

heading <- readLines(tsf, 1)
variable <- data_sets[data_sets$name == data_set_of(heading), ]
say <- function(label, ...) cat(sprintf("%-18s", label), sprintf(...), "\n")
say("data", "%s, %s", variable$quantity, variable$unit)
say("cells", "%d", nrow(cells))
known <- c(cells$mean[!is.na(cells$mean)], if (all(is.na(cells$mean))) NA)
say("lowest mean", "%.4f", min(known))
say("highest mean", "%.4f", max(known))
say("chosen cell", "%.3f %.3f", cells$lon[chosen], cells$lat[chosen])
say(paste("annual mean", first), "%.4f", means[1])
say(paste("annual mean", last), "%.4f", means[length(means)])


# --- Drawing.

# Dark blue to yellow, with increasing lightness: also readable in grey and with any kind
# of colour vision.
dark_to_light <- colorRamp(c("#440154", "#3b528b", "#21918c", "#5ec962", "#fde725"))
# White stands for no change in variance.
from_white <- colorRamp(c("#ffffff", "#fdd49e", "#fc8d59", "#d7301f", "#a5000f"))
colour <- function(scale, share)
  rgb(scale(pmin(pmax(share, 0), 1)), maxColorValue = 255)
blue <- "#3b528b"

degrees <- function(value, positive, negative) {
  paste0(abs(value), "\u00b0",
         ifelse(value > 0, positive, ifelse(value < 0, negative, "")))
}
east <- function(lon) degrees((lon + 180) %% 360 - 180, "E", "W")
north <- function(lat) degrees(lat, "N", "S")

# An empty frame of width x height pixels in which xlim and ylim are data units.
open_picture <- function(kind, title, subtitle, xlim, ylim, width, height, bottom) {
  name <- paste0(stem, ".", kind, ".png")
  png(name, width = width + 110, height = height + 70 + bottom, res = 96)
  par(mai = c(bottom, 80, 70, 30) / 96, las = 1, mgp = c(3, 0.6, 0), xaxs = "i",
      yaxs = "i", tcl = 0)
  plot(xlim, ylim, type = "n", axes = FALSE, ann = FALSE)
  mtext(title, line = 1.8, adj = 0, font = 2, cex = 1.25)
  mtext(subtitle, line = 0.5, adj = 0)
  say("picture", "%s", name)
}

draw_axes <- function(x, x_labels, y, y_labels) {
  abline(v = x, h = y, col = "#d0d0d0")
  axis(1, x, x_labels, lwd = 0)
  axis(2, y, y_labels, lwd = 0)
}

name_axes <- function(x) {
  title(xlab = x, line = 1.9)
  title(ylab = paste(variable$quantity, variable$unit, sep = ", "))
}

close_picture <- function() {
  box(col = "#404040")
  invisible(dev.off())
}

# A colour bar below the map: labels at shares, 0 to 1, of its length.
draw_colour_bar <- function(scale, shares, labels, caption) {
  pixel_x <- diff(par("usr")[1:2]) / frame_width
  pixel_y <- diff(par("usr")[3:4]) / frame_height
  left <- par("usr")[1]
  top <- par("usr")[3] - 42 * pixel_y
  rect(left + 4 * pixel_x * 0:99, top - 14 * pixel_y, left + 4 * pixel_x * 1:100, top,
       col = colour(scale, (0:99 + 0.5) / 100), border = NA, xpd = NA)
  rect(left, top - 14 * pixel_y, left + 400 * pixel_x, top, border = "#404040", lwd = 0.5,
       xpd = NA)
  text(left + 400 * pixel_x * shares, top - 26 * pixel_y, labels, xpd = NA, cex = 0.9)
  text(left, top - 49 * pixel_y, caption, adj = 0, xpd = NA)
}

# Cells on both sides of the 180 degree meridian, and none near Greenwich: one map without
# a gap, with longitudes beyond 180.
x <- cells$lon
if (min(x) < 0 && max(x) > 0 && min(abs(x)) > 90) x[x < 0] <- x[x < 0] + 360
y <- cells$lat

# The frame leaves three degrees or more around the cells, to show where they are, and is
# neither very flat nor very tall. A degree of longitude is drawn as long as
# it is in the middle of the map.
middle <- c(mean(range(x)), mean(range(y)))
shrink <- max(cos(middle[2] * pi / 180), 0.2)
size <- c(diff(range(x)), diff(range(y))) + 0.5
half <- size / 2 + pmax(c(3 / shrink, 3), 0.05 * size)
half[2] <- max(half[2], 0.25 * half[1] * shrink)
half[1] <- min(max(half[1], half[2] / (1.15 * shrink)), 180)
xlim <- middle[1] + c(-1, 1) * half[1]
ylim <- pmin(pmax(middle[2] + c(-1, 1) * half[2], -90), 90)
ratio <- diff(ylim) / (diff(xlim) * shrink)
frame_width <- if (ratio < 0.8) 800 else round(640 / ratio)
frame_height <- if (ratio < 0.8) round(800 * ratio) else 640

# A few cells that would be too small to see are drawn as circles, which don't hide the
# nearest other cell; a border would hide the colours of many. Radius in degrees.
few <- nrow(cells) < 500
degree <- frame_width / diff(xlim) # in pixels
circles <- few && degree / 2 < 4
if (circles) {
  distance <- as.matrix(dist(cells[c("lon", "lat")], "maximum"))
  diag(distance) <- 360
  radius <- pmax(1.5 / degree, pmin(3 / degree, apply(distance, 1, min) / 2))
}

# An empty map: land in pale grey, and the graticule.
open_map <- function(kind, title, subtitle, bottom) {
  open_picture(kind, title, subtitle, xlim, ylim, frame_width, frame_height, bottom)
  # Rows from south to north, each from the west.
  land <- strsplit(readLines(file.path(folder, "land_mask.txt.gz")), "")
  land <- which(do.call(cbind, land) == "1", arr.ind = TRUE)
  for (turn in c(-360, 0, 360)) {
    lon <- land[, 1] / 2 - 180.25 + turn
    lat <- land[, 2] / 2 - 90.25
    near <- lon > xlim[1] - 1 & lon < xlim[2] + 1 & lat > ylim[1] - 1 & lat < ylim[2] + 1
    draw_squares(lon[near], lat[near], col = "#e2e2e2")
  }
  steps <- c(0.5, 1, 2, 5, 10, 15, 30, 45, 90)
  step <- function(limits, most) steps[which(diff(limits) / steps <= most)[1]]
  lon <- step(xlim, 9) * (-720:720)
  lat <- step(ylim, 6) * (-180:180)
  lon <- lon[lon >= xlim[1] & lon <= xlim[2]]
  lat <- lat[lat >= ylim[1] & lat <= ylim[2]]
  draw_axes(lon, east(lon), lat, north(lat))
}

# Draws cells in true size; those without a border a little larger, to leave no pale gaps.
draw_squares <- function(x, y, border = NA, ...) {
  half <- 0.25 + if (is.na(border[1])) 0.2 / degree else 0
  if (length(x)) rect(x - half, y - half, x + half, y + half, border = border, ...)
}

# Draws the cells in which `which` is true, in true size or as circles.
draw_cells <- function(which, col = NA, border = if (few) "#404040" else NA) {
  if (!any(which)) return(invisible())
  if (circles)
    symbols(x[which], y[which], circles = radius[which], inches = FALSE, add = TRUE,
            bg = col, fg = border, lwd = 0.5)
  else
    draw_squares(x[which], y[which], border, col = col, lwd = 0.5)
}

source_name <- substring(heading, 24, 36) # "CRUts4.01tmp." or "scPDSI.dat."
source_name <- if (startsWith(source_name, "CRUts"))
  sub("^CRUts([0-9.]*).*", "CRU TS \\1", source_name) else "scPDSI"
span <- sprintf("%d to %d, %s", first, last, source_name)
count <- if (nrow(cells) == 1) "1 cell" else paste(nrow(cells), "cells")
where <- paste(variable$quantity, north(cells$lat[chosen]), east(cells$lon[chosen]),
               sep = ", ")

# The map of the saved cells.
open_map("map", paste(variable$quantity, "of the saved cells"),
         paste(span, count, sep = ", "), 110)
low <- min(known, Inf, na.rm = TRUE)
if (is.infinite(low)) low <- 0
high <- max(known, low + 0.1, na.rm = TRUE)
draw_cells(is.na(cells$mean), "white", "#404040")
has_mean <- !is.na(cells$mean)
draw_cells(has_mean, colour(dark_to_light, (cells$mean[has_mean] - low) / (high - low)))
at <- pretty(c(low, high), 5)
at <- at[at >= low & at <= high]
draw_colour_bar(dark_to_light, (at - low) / (high - low), at,
                paste("mean of the years,", variable$unit))
close_picture()

# One cell's annual means. A missing year leaves a gap.
limits <- range(means, if (all(is.na(means))) 0, na.rm = TRUE)
beside <- 0.02 * (last - first) + 0.5
open_picture("years", where, paste("annual means,", span),
             c(first - beside, last + beside),
             limits + c(-1, 1) * max(0.08 * diff(limits), 0.05), 800, 360, 60)
at <- pretty(c(first, last), 10)
at <- at[at == round(at) & at > first - beside & at < last + beside]
draw_axes(at, at, pretty(limits, 7), pretty(limits, 7))
lines(first:last, means, type = "o", pch = 16, cex = 0.8, col = blue, lwd = 1.5)
name_axes("year")
close_picture()

# One cell's annual cycle: the mean of each calendar month, its lowest and highest value.
limits <- range(months, if (all(is.na(months))) 0, na.rm = TRUE)
open_picture("cycle", where, paste("mean, lowest and highest of each month,", span),
             c(0.5, 12.5), limits + c(-1, 1) * max(0.05 * diff(limits), 0.05),
             560, 360, 60)
draw_axes(1:12, strsplit("JFMAMJJASOND", "")[[1]], pretty(limits, 7), pretty(limits, 7))
for (month in which(colSums(!is.na(months)) > 0))
  lines(rep(month, 2), range(months[, month], na.rm = TRUE), col = "#b8c4dc", lwd = 8,
        lend = "butt")
lines(1:12, colMeans(months, na.rm = TRUE), type = "o", pch = 16, cex = 0.8, col = blue,
      lwd = 1.5)
name_axes("month")
close_picture()


# --- The variance report.

ftst <- paste0(stem, ".ftst")
if (!file.exists(ftst)) quit()
lines <- readLines(ftst, warn = FALSE)
# ... Variance:  1901- 1959  1960- 2016. The cutoff year belongs to the second period,
# whatever these labels say.
words <- strsplit(trimws(lines[1]), " +")[[1]]
lines <- lines[-(1:2)]
if (!"Variance:" %in% words || any(nchar(lines, "bytes") != 65))
  fail(ftst, " is no variance report, or is cut off")
period <- as.numeric(sub("-$", "", words[c(6, 7, 9)]))
field <- function(lines, first, last) as.numeric(substring(lines, first, last))
# Cells whose f is NaN are left out. Inf is kept: one period had no variance at all.
place <- match(paste(field(lines, 3, 17), field(lines, 19, 33)),
               paste(cells$lon, cells$lat))
# The report may be that of an earlier search: one without the test leaves it unchanged.
if (anyNA(place) || period[1] != first || period[3] != last)
  fail(sprintf("%s is of another search (%d to %d): no picture of it", ftst, period[1],
               period[3]))
f <- prob <- rep(NA_real_, nrow(cells))
f[place] <- field(lines, 35, 49)
prob[place] <- field(lines, 51, 65)
finite <- is.finite(f)
infinite <- !is.na(f) & f == Inf
say("f values", "%d", length(lines))
say("infinite f", "%d", sum(infinite))
say("largest finite f", "%.6g", if (any(finite)) max(f[finite]) else NA)
say("prob below 0.05", "%d", sum(prob < 0.05, na.rm = TRUE))

# f from white at 1 to dark red at 4 and more; cells with prob < 0.05 are ringed. The
# scale is fixed, so that maps can be compared, and logarithmic, as f is a ratio.
open_map("f", paste0(variable$quantity, ": f of the variance test"),
         sprintf("%d to %d against %d to %d, %s", first, period[2] - 1, period[2],
                 last, count), 180)
usual <- finite & f >= 1 # an f below 1 comes from rounding only
draw_cells(!usual & !infinite, border = "#909090")
draw_cells(usual, colour(from_white, log(f[usual]) / log(4)))
draw_cells(infinite, "white")
points(x[infinite], y[infinite], pch = 4, cex = 0.6, lwd = 1.2)
ringed <- which(prob < 0.05)
if (length(ringed))
  symbols(x[ringed], y[ringed], add = TRUE, inches = FALSE, lwd = if (few) 1.2 else 0.5,
          circles = if (circles) radius[ringed] else rep(0.175, length(ringed)))
draw_colour_bar(from_white, 0:4 / 4, c("1", "1.41", "2", "2.83", "4 or more"),
                "f, the larger variance over the smaller")
legend(par("usr")[1], par("usr")[3] - 105 * diff(ylim) / frame_height, xpd = NA,
       bty = "n", x.intersp = 0.6, pch = c(1, 1, 4), pt.cex = c(1.1, 0.8, 0.7),
       col = c("black", "#909090", "black"), pt.lwd = c(1.2, 0.5, 1.2),
       legend = c("prob below 0.05", "no f in the report",
                  "f infinite: no variance in one period"))
close_picture()
