# Three pictures of an extract: the saved cells on a map, one cell's annual means, and
# the f values of the variance report on the map. Base R only, no packages.
#
#   Rscript cells.R STEM [LON LAT]
#
# reads   STEM.TSF, STEM.XY and, if there is one, STEM.ftst
# writes  STEM.map.png, STEM.years.png, STEM.f.png
#
# LON LAT is the centre of the cell for the annual means, in degrees, east and north
# positive; without it the first saved cell is taken.

# The files hold whole numbers. What one unit of the physical quantity is in them:
variables <- read.table(header = TRUE, sep = "|", strip.white = TRUE, text = "
data.set      | quantity                     | unit         | stored.as
CRUts4.01ppt. | Precipitation                | mm a month   | 10
CRUts4.01tmp. | Mean temperature             | degrees C    | 10
CRUts4.01dtr. | Diurnal temperature range    | degrees C    | 10
CRUts4.01tmn. | Minimum temperature          | degrees C    | 10
CRUts4.01tmx. | Maximum temperature          | degrees C    | 10
CRUts4.01vap. | Vapour pressure              | hPa          | 10
CRUts4.01pet. | Potential evapotranspiration | mm a day     | 10
CRUts4.01cld. | Cloud cover                  | percent      | 10
CRUts4.01frs. | Frost days                   | days a month | 100
CRUts4.01wet. | Wet days                     | days a month | 100
scPDSI.dat.   | Drought index scPDSI         | index        | 100
")
missing <- c(-999, -9999)

arguments <- commandArgs(trailingOnly = TRUE)
if (!length(arguments) %in% c(1, 3)) stop("usage: Rscript cells.R STEM [LON LAT]")
stem <- arguments[1]


# --- Reading. Fields have fixed columns: wide numbers touch, so never split on blanks.

field <- function(lines, first, last) as.numeric(substring(lines, first, last))

lines <- readLines(paste0(stem, ".XY"))[-1]
cells <- data.frame(lon = field(lines, 2, 10), lat = field(lines, 11, 19))

lines <- readLines(paste0(stem, ".TSF"))
is.heading <- nchar(lines) > 77 # a year's line has 77 characters
if (nrow(cells) == 0 || sum(is.heading) != nrow(cells))
  stop(stem, ".XY and .TSF do not belong together, or hold no cell")
data.set <- trimws(substring(lines[1], 24, 36))
variable <- variables[variables$data.set == data.set, ]
cell.of.line <- cumsum(is.heading)[!is.heading]
lines <- lines[!is.heading]

year <- field(lines, 2, 5)
months <- sapply(0:11, function(m) field(lines, 6 + 6 * m, 11 + 6 * m))
months <- matrix(months, ncol = 12)
months[months %in% missing] <- NA # before scaling
# Each month counts alike. A year with a missing month has no annual mean: without its
# January it would look too warm.
annual <- rowMeans(months) / variable$stored.as
cells$mean <- as.vector(tapply(annual, cell.of.line, mean, na.rm = TRUE))
cells$mean[is.nan(cells$mean)] <- NA # a cell without a complete year

chosen <- 1
if (length(arguments) == 3) {
  at <- as.numeric(arguments[2:3])
  chosen <- which(cells$lon == at[1] & cells$lat == at[2])
  if (length(chosen) != 1)
    stop("no saved cell has its centre at ", arguments[2], " ", arguments[3])
}
years <- year[cell.of.line == chosen]
means <- annual[cell.of.line == chosen]

say <- function(label, ...) cat(sprintf("%-18s", label), sprintf(...), "\n")
say("data", "%s, %s", variable$quantity, variable$unit)
say("cells", "%d", nrow(cells))
say("lowest mean", "%.4f", min(cells$mean, na.rm = TRUE))
say("highest mean", "%.4f", max(cells$mean, na.rm = TRUE))
say("chosen cell", "%.3f %.3f", cells$lon[chosen], cells$lat[chosen])
for (i in c(1, length(years))) say(paste("annual mean", years[i]), "%.4f", means[i])


# --- Drawing.

# Dark blue to yellow, ever lighter: readable with any kind of colour vision, in grey
# as well.
colours <- colorRampPalette(
  c("#440154", "#3b528b", "#21918c", "#5ec962", "#fde725"))(100)
colour <- function(share) colours[1 + round(99 * pmin(pmax(share, 0), 1))]

degrees <- function(value, positive, negative) {
  paste0(abs(value), "\u00b0",
         ifelse(value > 0, positive, ifelse(value < 0, negative, "")))
}

open.picture <- function(kind, bottom) {
  name <- paste0(stem, ".", kind, ".png")
  png(name, width = 910, height = 560, res = 96)
  par(mar = c(bottom, 4.5, 4, 1), las = 1, tcl = 0, mgp = c(3, 0.6, 0))
  say("picture", "%s", name)
}

write.title <- function(title, subtitle) {
  mtext(title, line = 1.8, adj = 0, font = 2, cex = 1.4)
  mtext(subtitle, line = 0.5, adj = 0)
}

# Cells on both sides of the 180 degree meridian, and nowhere near Greenwich: one map
# without a hole, which runs on beyond 180.
x <- cells$lon
if (min(x) < 0 && max(x) > 0 && min(abs(x)) > 90) x[x < 0] <- x[x < 0] + 360
y <- cells$lat

# Many cells get no border, which would hide their colour.
few <- length(x) < 500
cell.border <- if (few) "#404040" else NA

# An empty map with its graticule. Result: half the side of a cell's square, in degrees.
draw.graticule <- function() {
  margin <- min(max(0.5, 0.05 * diff(range(x))), 5)
  # A degree of longitude is drawn as long as it is in the middle of the map.
  plot(range(x) + c(-margin, margin), range(y) + c(-margin, margin), type = "n",
       asp = 1 / cos(mean(range(y)) * pi / 180), axes = FALSE, ann = FALSE,
       xaxs = "i", yaxs = "i")
  edges <- par("usr")
  steps <- c(0.5, 1, 2, 5, 10, 15, 30, 45, 90)
  step <- function(size) steps[which(size / steps <= 9)[1]]
  lon <- step(edges[2] - edges[1]) * (-360:360)
  lat <- step(edges[4] - edges[3]) * (-180:180)
  lon <- lon[lon > edges[1] & lon < edges[2]]
  lat <- lat[lat > edges[3] & lat < edges[4] & abs(lat) <= 90]
  abline(v = lon, h = lat, col = "#d0d0d0")
  axis(1, lon, degrees((lon + 180) %% 360 - 180, "E", "W"), lwd = 0)
  axis(2, lat, degrees(lat, "N", "S"), lwd = 0)
  box(col = "#404040")
  # Few cells on a large map are drawn larger than they are.
  if (few) max(0.25, 0.007 * (edges[2] - edges[1])) else 0.25
}

draw.squares <- function(which, half, ...) {
  if (any(which))
    rect(x[which] - half, y[which] - half, x[which] + half, y[which] + half, ...)
}

# A colour bar below the map: labels at shares, 0 to 1, of its length.
draw.colour.bar <- function(shares, labels, caption) {
  edges <- par("usr")
  # The height of a line of text, in degrees.
  line <- (edges[4] - edges[3]) / par("pin")[2] * par("csi")
  length <- (edges[2] - edges[1]) / 2
  top <- edges[3] - 2.6 * line
  left <- edges[1] + length * (0:99) / 100
  rect(left, top - 0.9 * line, left + length / 99, top, col = colours, border = NA,
       xpd = NA)
  text(edges[1] + length * shares, top - 1.6 * line, labels, xpd = NA, cex = 0.9)
  text(edges[1], top - 2.8 * line, caption, adj = 0, xpd = NA)
}

span <- sprintf("%d to %d, %s, %d cells", years[1], years[length(years)],
                if (data.set == "scPDSI.dat.") "scPDSI 3.25" else "CRU TS 4.01",
                nrow(cells))

# The map of the saved cells.
open.picture("map", 6.5)
half <- draw.graticule()
low <- min(cells$mean, na.rm = TRUE)
high <- max(cells$mean, low + 0.1, na.rm = TRUE)
draw.squares(is.na(cells$mean), half, border = "#404040")
known <- !is.na(cells$mean)
draw.squares(known, half, col = colour((cells$mean[known] - low) / (high - low)),
             border = cell.border, lwd = 0.5)
at <- pretty(c(low, high), 5)
at <- at[at >= low & at <= high]
draw.colour.bar((at - low) / (high - low), at,
                paste("mean of the years,", variable$unit))
write.title(paste(variable$quantity, "of the saved cells"), span)
invisible(dev.off())

# One cell's annual means. A missing year leaves a gap.
open.picture("years", 4)
if (any(!is.na(means))) {
  limits <- range(means, na.rm = TRUE)
  plot(years, means, type = "n", axes = FALSE, ann = FALSE,
       ylim = limits + c(-1, 1) * max(0.05 * diff(limits), 0.05))
  at <- pretty(years, 10)
  abline(v = at[at == round(at)], h = pretty(means, 7), col = "#d0d0d0")
  axis(1, at[at == round(at)], lwd = 0)
  axis(2, pretty(means, 7), lwd = 0)
  lines(years, means, type = "o", pch = 16, cex = 0.8, col = "#3b528b", lwd = 1.5)
  box(col = "#404040")
  title(xlab = "year", line = 2.2)
  title(ylab = variable$unit)
} else {
  plot.new() # no complete year
}
write.title(paste0(variable$quantity, ", ", degrees(cells$lat[chosen], "N", "S"), ", ",
                   degrees(cells$lon[chosen], "E", "W")),
            "annual means of the twelve months")
invisible(dev.off())

# The f values on the map.
if (file.exists(paste0(stem, ".ftst"))) {
  lines <- readLines(paste0(stem, ".ftst"))
  # ... Variance:  1901- 1959  1960- 2016. The cutoff year belongs to the second period,
  # whatever these labels say.
  cutoff <- as.numeric(strsplit(trimws(lines[1]), " +")[[1]][7])
  lines <- lines[-(1:2)]
  # Cells whose f is no number are not there. Inf is: one period had no variance at all.
  place <- match(paste(field(lines, 3, 17), field(lines, 19, 33)),
                 paste(cells$lon, cells$lat))
  if (anyNA(place)) stop(stem, ".ftst belongs to another search")
  cells$f <- rep(NA_real_, nrow(cells))
  cells$f[place] <- field(lines, 35, 49)
  finite <- is.finite(cells$f)
  infinite <- !is.na(cells$f) & cells$f == Inf
  largest <- if (any(finite)) max(cells$f[finite]) else NA
  say("f values", "%d", length(lines))
  say("infinite f", "%d", sum(infinite))
  say("largest finite f", "%.6g", largest)

  open.picture("f", 6.5)
  half <- draw.graticule()
  # A single cell with f = 1000 would leave one colour for all others: beyond 4 the
  # colours change no more. An f below 1 comes from rounding only, and is left out.
  usual <- finite & cells$f >= 1
  top <- min(max(largest, 1.01, na.rm = TRUE), 4)
  draw.squares(!usual & !infinite, half / 2, border = "#909090")
  draw.squares(usual, half, col = colour(log(cells$f[usual]) / log(top)),
               border = cell.border, lwd = 0.5)
  draw.squares(infinite, half, col = "white", lwd = 1.5)
  points(x[infinite], y[infinite], pch = 4, cex = 0.9, lwd = 1.5)
  labels <- signif(top^(0:4 / 4), 3)
  if (any(usual) && largest > top) labels[5] <- "4 or more"
  draw.colour.bar(0:4 / 4, labels, "f, the larger variance over the smaller")
  legend(grconvertX(0.57, "npc"), grconvertY(0.02, "ndc"), yjust = 0, xpd = NA,
         bty = "n", pch = c(7, 0), col = c("black", "#909090"), pt.cex = c(1.3, 0.8),
         legend = c("f infinite: no variance in one period",
                    "no f: no variance in either period"))
  write.title(paste0(variable$quantity, ": f of the variance test"),
              sprintf("%d to %d against %d to %d, %d cells", years[1], cutoff - 1,
                      cutoff, years[length(years)], nrow(cells)))
  invisible(dev.off())
}
