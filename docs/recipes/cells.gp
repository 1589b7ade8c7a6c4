# Pictures of an extract: the saved cells on a map, one cell's annual means and annual
# cycle, and the variance report on the map.
#
#   gnuplot -c cells.gp STEM [LON LAT]
#
# reads   STEM.TSF and, if there is one, STEM.ftst
# writes  STEM.map.png, STEM.years.png, STEM.cycle.png, STEM.f.png
#
# LON LAT is the centre of the cell for annual means and cycle, in degrees, east and north
# positive; without it the first saved cell is taken. Needs awk, and cells.awk and
# land_mask.txt.gz beside it. The table of scales and units, and which columns of the files
# hold what, are in cells.awk.

if (ARGC != 1 && ARGC != 3) {
  printerr "usage: gnuplot -c cells.gp STEM [LON LAT]"
  exit status 2
}
stem = ARG1
if (strstrt(stem, "'") > 0) {
  printerr "gnuplot can't pass on a name with an apostrophe: ".stem
  exit status 2
}
set print "-"


# --- The numbers: cells.awk makes tables of the files.

folder = ARG0[1:strstrt(ARG0, "cells.gp") - 1]
command(table, files) = "awk -v table=".table." -f '".folder."cells.awk' ".files
TSF = "'".stem.".TSF'"
FTST = "'".stem.".ftst' ".TSF
is_file(file) = system("test -f ".file." && test -r ".file." && echo yes") eq "yes"
if (!is_file(TSF)) {
  printerr "cannot read ".stem.".TSF"
  exit status 1
}

data = system(command("data", TSF))
if (GPVAL_SYSTEM_ERRNO != 0) { exit status 1 } # awk said why
first = int(word(data, 1))
last = int(word(data, 2))
cells = int(word(data, 3))
data = data[strstrt(data, "|") + 1:] # quantity, unit
quantity = data[1:strstrt(data, ",") - 1]
unit = data[strstrt(data, ",") + 2:]
lon = real(ARGC == 3 ? ARG2 : word(system(command("data", TSF)), 4))
lat = real(ARGC == 3 ? ARG3 : word(system(command("data", TSF)), 5))

chosen = sprintf(" -v lon=%.2f -v lat=%.2f", lon, lat)
years = system(command("years".chosen, TSF))
if (words(years) == 0) {
  printerr sprintf("no saved cell has its centre at %g %g", lon, lat)
  exit status 1
}
set print $years
print years
set print $cycle
print system(command("cycle".chosen, TSF))
set print "-"

set table $cells
plot "< ".command("cells", TSF) using 1:2:(strcol(3)):4 with table
unset table
stats $cells using 3 name "MEAN" nooutput
print "data               ".data
print sprintf("cells              %d", cells)
print sprintf("lowest mean        %.4f", MEAN_min)
print sprintf("highest mean       %.4f", MEAN_max)
print sprintf("chosen cell        %.3f %.3f", lon, lat)
print sprintf("annual mean %d   %s", first, word(years, 2))
print sprintf("annual mean %d   %s", last, word(years, words(years)))


# --- What all pictures share.

set border linecolor "#404040"
set grid back linetype 1 linecolor "#d0d0d0" linewidth 1
set tics scale 0
set xtics nomirror
set ytics nomirror
unset key
min(a, b) = a < b ? a : b
max(a, b) = a > b ? a : b
east(v) = sprintf("%g°%s", abs(v), v > 0 ? "E" : v < 0 ? "W" : "")
north(v) = sprintf("%g°%s", abs(v), v > 0 ? "N" : v < 0 ? "S" : "")

# A picture with a frame of width x height pixels: 80 to its left, 70 above it.
open_picture(kind, width, height, bottom) = sprintf( \
  "set terminal pngcairo size %d,%d font 'Sans,11' noenhanced;", \
  width + 110, height + 70 + bottom).sprintf( \
  "set lmargin at screen %f; set rmargin at screen %f;", \
  80.0 / (width + 110), (80.0 + width) / (width + 110)).sprintf( \
  "set tmargin at screen %f; set bmargin at screen %f;", \
  1 - 70.0 / (height + 70 + bottom), 1.0 * bottom / (height + 70 + bottom)). \
  "set output stem.'.".kind.".png'; print 'picture            '.stem.'.".kind.".png'"
write_title(text, subtitle) = sprintf( \
  "set label 1 '%s' at graph 0,1 offset character 0,2.6 font 'Sans:Bold,15';" . \
  "set label 2 '%s' at graph 0,1 offset character 0,1", text, subtitle)

span = sprintf("%d to %d, %s", first, last, system(command("source", TSF)))
count = cells == 1 ? "1 cell" : sprintf("%d cells", cells)
place = sprintf("%s, %s, %s", quantity, north(lat), east(lon))


# --- One cell's annual means. A missing year leaves a gap.

eval open_picture("years", 800, 360, 60)
eval write_title(place, "annual means, ".span)
set xlabel "year" offset 0,0.3
set ylabel data
set xtics ceil((last - first) / 120.0) * (last - first < 12 ? 1 : 10)
beside = 0.02 * (last - first) + 0.5
set xrange [first - beside:last + beside]
low = 1e9
high = -1e9
do for [i = 2:words(years):2] {
  mean = real(word(years, i)) # comparisons with NaN are false
  if (mean < low) { low = mean }
  if (mean > high) { high = mean }
}
if (high < low) { low = high = 0 } # an empty frame: no year is complete
space = max(0.08 * (high - low), 0.05)
set yrange [low - space:high + space]
plot $years using 1:2 with linespoints pointtype 7 pointsize 0.8 linewidth 1.5 \
     linecolor "#3b528b"
set output


# --- Its annual cycle: the mean of each calendar month, its lowest and highest value.

eval open_picture("cycle", 560, 360, 60)
eval write_title(place, "mean, lowest and highest of each month, ".span)
set xlabel "month"
set xtics ()
do for [i = 1:12] { set xtics add ("JFMAMJJASOND"[i:i] i) }
set xrange [*:*]
set yrange [*:*]
if (strlen($cycle[1]) > 0) { # any value at all
  stats $cycle using 3 name "LOW" nooutput
  stats $cycle using 4 name "HIGH" nooutput
  space = max(0.05 * (HIGH_max - LOW_min), 0.05)
  set yrange [LOW_min - space:HIGH_max + space]
}
set xrange [0.5:12.5]
plot $cycle using 1:3:(0):($4 - $3) with vectors nohead linewidth 8 linecolor "#b8c4dc", \
     $cycle using 1:2 with linespoints pointtype 7 pointsize 0.8 linewidth 1.5 \
     linecolor "#3b528b"
set output


# --- The map of the saved cells.

unset xlabel
unset ylabel
set xrange [*:*]
set yrange [*:*]

# Cells on both sides of the 180 degree meridian, and none near Greenwich: one map without
# a gap, with longitudes beyond 180.
stats $cells using 1 name "X" nooutput
stats $cells using 2 name "Y" nooutput
stats $cells using (abs($1)) name "FROM_GREENWICH" nooutput
joined = X_min < 0 && X_max > 0 && FROM_GREENWICH_min > 90
x(lon) = joined && lon < 0 ? lon + 360 : lon
stats $cells using (x($1)) name "X" nooutput

# The frame leaves three degrees or more around the cells, to show where they are, and is
# neither very flat nor very tall. A degree of longitude is drawn as long as
# it is in the middle of the map.
middle_x = (X_max + X_min) / 2
middle_y = (Y_max + Y_min) / 2
shrink = max(cos(middle_y * pi / 180), 0.2)
size_x = X_max - X_min + 0.5
size_y = Y_max - Y_min + 0.5
half_x = size_x / 2 + max(3 / shrink, 0.05 * size_x)
half_y = size_y / 2 + max(3, 0.05 * size_y)
half_y = max(half_y, 0.25 * half_x * shrink)
half_x = min(max(half_x, half_y / (1.15 * shrink)), 180)
south = max(middle_y - half_y, -90)
north_ = min(middle_y + half_y, 90)
ratio = (north_ - south) / (2 * half_x * shrink)
width = ratio < 0.8 ? 800 : floor(640 / ratio + 0.5)
height = ratio < 0.8 ? floor(800 * ratio + 0.5) : 640
degree = width / (2 * half_x) # in pixels
set xrange [middle_x - half_x:middle_x + half_x]
set yrange [south:north_]

# The graticule, drawn over the land and under the cells.
step(size) = size > 45 ? size > 270 ? 45 : size > 135 ? 30 : size > 90 ? 15 : 10 : \
             size > 18 ? 5 : size > 9 ? 2 : size > 4.5 ? 1 : 0.5
set xtics () # the labels follow
set ytics ()
set print $graticule
do for [i = -720:720] {
  v = i * step(2 * half_x)
  if (abs(v - middle_x) <= half_x) {
    set xtics add (east(v > 180 ? v - 360 : v < -180 ? v + 360 : v) v)
    print v, south, 0, north_ - south
  }
  v = i * step(1.5 * (north_ - south))
  if (v >= south && v <= north_) {
    set ytics add (north(v) v)
    print middle_x - half_x, v, 2 * half_x, 0
  }
}
set print "-"

# Land in pale grey, drawn slightly too large, to leave no pale gaps between its rows.
set table $land
plot "< gzip -dc '".folder."land_mask.txt.gz' | ".command("land", "") \
  using 1:2:3 with table
unset table
set style fill solid noborder
seam = 0.2 / degree
runs(turn) = sprintf("$land using ($1 + %d):2:($3 + seam):(0.25 + seam) " . \
                     "with boxxyerror linecolor '#e2e2e2', ", turn)
plot_map = "plot ".runs(-360).runs(0).runs(360). \
           "$graticule using 1:2:3:4 with vectors nohead linecolor '#d0d0d0'"

# A few cells that would be too small to see are drawn as circles, which don't hide the
# nearest other cell; a border would hide the colours of many.
few = cells < 500
circles = few && degree / 2 < 4
radius(nearest) = max(1.5 / degree, min(3 / degree, nearest / 2))
half = few ? 0.25 : 0.25 + seam
border = few ? "border linecolor '#404040'" : "noborder"
cell_at = circles ? "(x($1)):2:(radius($4))" : "(x($1)):2:(half):(half)"
cell_style = circles ? "with circles linewidth 0.5 " : "with boxxyerror linewidth 0.5 "

# Dark blue to yellow, with increasing lightness: also readable in grey and with any kind
# of colour vision.
set palette defined (0 "#440154", 1 "#3b528b", 2 "#21918c", 3 "#5ec962", 4 "#fde725")
set cbtics offset 0,0.4
set cbrange [0:1] # for a map without any complete year
if (MEAN_records > 0) {
  set cbrange [MEAN_min:(MEAN_max > MEAN_min + 0.1 ? MEAN_max : MEAN_min + 0.1)]
}

colour_bar(bottom) = sprintf("set colorbox horizontal user origin %f,%f size %f,%f", \
  80.0 / (width + 110), (bottom - 56.0) / (height + 70 + bottom), \
  400.0 / (width + 110), 14.0 / (height + 70 + bottom))
caption(bottom, text) = sprintf("set label 3 '%s' at screen %f,%f", text, \
  80.0 / (width + 110), (bottom - 98.0) / (height + 70 + bottom))

eval open_picture("map", width, height, 110)
eval colour_bar(110)
eval caption(110, "mean of the years, ".unit)
eval write_title(quantity." of the saved cells", span.", ".count)
eval plot_map.", $cells using ".cell_at." ".cell_style."fillcolor 'white' ". \
     "fillstyle solid ".border. \
     (MEAN_records > 0 ? ", $cells using ".cell_at.":3 ".cell_style. \
      "linecolor palette fillstyle solid ".border : "")
set output


# --- The variance report on the map.

if (!is_file("'".stem.".ftst'")) { exit }
report = system(command("report", FTST))
if (GPVAL_SYSTEM_ERRNO != 0) { exit status 1 } # awk said why
cutoff = int(word(report, 1))
infinite = int(word(report, 3))
ringed = int(word(report, 5))
usual = int(word(report, 6)) # 1 or more
print sprintf("f values           %d", int(word(report, 2)))
print sprintf("infinite f         %d", infinite)
print sprintf("largest finite f   %.6g", real(word(report, 4)))
print sprintf("prob below 0.05    %d", ringed)

# One line for each cell: longitude, latitude, distance, kind, colour, ringed. The kinds:
# 0 without an f, 1 with one, 2 with an infinite one.
set table $f
plot "< ".command("f", FTST) using 1:2:(0):3:4:5:6 with table
unset table
# A kind that no cell has is left out of the plot.
only(condition) = "$f using (".condition." ? x($1) : 1/0)".cell_at[8:]
kinds = ""
if (usual + infinite < cells) {
  kinds = kinds.", ".only("$5 == 0")." ".cell_style. \
          "linecolor '#909090' fillstyle empty"
}
if (usual > 0) {
  kinds = kinds.", ".only("$5 == 1").":6 ".cell_style. \
          "linecolor palette fillstyle solid ".border
}
if (infinite > 0) {
  kinds = kinds.", ".only("$5 == 2")." ".cell_style. \
          "fillcolor 'white' fillstyle solid ".border. \
          ", $f using ($5 == 2 ? x($1) : 1/0):2 with points pointtype 2 pointsize 0.6 ". \
          "linewidth 1.2 linecolor 'black'"
}
ring(nearest) = circles ? radius(nearest) : 0.175
if (ringed > 0) {
  kinds = kinds.", $f using ($7 == 1 ? x($1) : 1/0):2:(ring($4)) with circles ". \
          "linewidth ".(few ? "1.2" : "0.5")." linecolor 'black' fillstyle empty"
}

# White stands for f = 1. The scale is fixed, so that maps can be compared, and
# logarithmic, as f is a ratio; the table has log(f) / log(4).
set palette defined (0 "#ffffff", 1 "#fdd49e", 2 "#fc8d59", 3 "#d7301f", 4 "#a5000f")
set cbrange [0:1]
set cbtics ("1" 0, "1.41" 0.25, "2" 0.5, "2.83" 0.75, "4 or more" 1)
eval open_picture("f", width, height, 180)
eval colour_bar(180)
eval caption(180, "f, the larger variance over the smaller")
# The cutoff year belongs to the second period, whatever the report's labels say.
eval write_title(quantity.": f of the variance test", \
                 sprintf("%d to %d against %d to %d, %s", first, cutoff - 1, \
                         cutoff, last, count))
line(number) = (180 - 102.0 - 22 * number) / (height + 250)
set label 4 "prob below 0.05" at screen 86.0 / (width + 110),line(1) offset 1.2,0 \
  point pointtype 6 pointsize 1.1 linewidth 1.2 linecolor "black"
set label 5 "no f in the report" at screen 86.0 / (width + 110),line(2) offset 1.2,0 \
  point pointtype 6 pointsize 0.8 linewidth 0.5 linecolor "#909090"
set label 6 "f infinite: no variance in one period" \
  at screen 86.0 / (width + 110),line(3) offset 1.2,0 \
  point pointtype 2 pointsize 0.6 linewidth 1.2 linecolor "black"
eval plot_map.kinds
set output
