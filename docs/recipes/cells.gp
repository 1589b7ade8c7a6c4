# Three pictures of an extract: the saved cells on a map, one cell's annual means, and
# the f values of the variance report on the map. Needs awk, and cells.awk beside it.
#
#   gnuplot -c cells.gp STEM [LON LAT]
#
# reads   STEM.TSF, STEM.XY and, if there is one, STEM.ftst
# writes  STEM.map.png, STEM.years.png, STEM.f.png
#
# LON LAT is the centre of the cell for the annual means, in degrees, east and north
# positive; without it the first saved cell is taken. The table of scales and units, and
# which columns of the files hold what, are in cells.awk.

if (ARGC != 1 && ARGC != 3) {
  printerr "usage: gnuplot -c cells.gp STEM [LON LAT]"
  exit status 2
}
stem = ARG1
set encoding utf8
set print "-"


# --- Reading: cells.awk makes tables of the files.

folder = ARG0[1:strstrt(ARG0, "cells.gp") - 1]
command(options, files) = "awk ".options." -f '".folder."cells.awk' ".files
awk(options, files) = system(command(options, files)) # for a few numbers
TSF = "'".stem.".TSF'"
XY = "'".stem.".XY'"

data = awk("-v table=data", TSF) # quantity, unit
quantity = data[1:strstrt(data, ",") - 1]
unit = data[strstrt(data, ",") + 2:]

cells = int(awk("-v table=list", XY." | wc -l"))
if (cells == 0 || cells != int(awk("-v table=cells", TSF." | wc -l"))) {
  printerr stem.".XY and .TSF do not belong together, or hold no cell"
  exit status 1
}

set table $cells
plot "< ".command("-v table=cells", TSF) using (strcol(1)):(strcol(2)):(strcol(3)) \
  with table
unset table

first_cell = system("head -n 2 ".XY." | ".command("-v table=list", "-"))
lon = real(ARGC == 3 ? ARG2 : word(first_cell, 1))
lat = real(ARGC == 3 ? ARG3 : word(first_cell, 2))
years = awk(sprintf("-v table=years -v lon=%.2f -v lat=%.2f", lon, lat), TSF)
if (words(years) == 0) {
  printerr sprintf("no saved cell has its centre at %g %g", lon, lat)
  exit status 1
}
set print $years
print years
set print "-"
first = int(word(years, 1))
last = int(word(years, words(years) - 1))

stats $cells using 3 name "MEAN" nooutput
print "data               ".data
print sprintf("cells              %d", cells)
print sprintf("lowest mean        %.4f", MEAN_min)
print sprintf("highest mean       %.4f", MEAN_max)
print sprintf("chosen cell        %.3f %.3f", lon, lat)
print sprintf("annual mean %d   %s", first, word(years, 2))
print sprintf("annual mean %d   %s", last, word(years, words(years)))

FTST = "'".stem.".ftst'"
has_report = system("test -f ".FTST." && echo yes") eq "yes"
is_infinite(i) = strcol(i) eq "Inf"
is_finite(i) = !is_infinite(i) && strcol(i) ne "none"
if (has_report) {
  nothing = awk("-v table=f", FTST." ".XY." > /dev/null")
  if (GPVAL_SYSTEM_ERRNO != 0) {
    printerr stem.".ftst belongs to another search"
    exit status 1
  }
  set table $f
  plot "< ".command("-v table=f", FTST." ".XY) \
    using (strcol(1)):(strcol(2)):(strcol(3)) with table
  unset table
  stats $f using (is_infinite(3) ? 1 : 0) name "INFINITE" nooutput
  stats $f using (is_finite(3) ? 1 : 0) name "FINITE" nooutput
  largest = NaN
  if (FINITE_sum > 0) {
    stats $f using (is_finite(3) ? $3 : 1/0) name "F" nooutput
    largest = F_max
  }
  print sprintf("f values           %d", FINITE_sum + INFINITE_sum)
  print sprintf("infinite f         %d", INFINITE_sum)
  print sprintf("largest finite f   %.6g", largest)
}


# --- What the pictures share.

set terminal pngcairo size 910,560 font "Sans,11" noenhanced
set border linecolor "#404040"
set grid back linetype 1 linecolor "#d0d0d0" linewidth 1
set tics scale 0
unset key
set lmargin at screen 0.09
set rmargin at screen 0.97
set tmargin at screen 0.85
set bmargin at screen 0.13
write_title(text, subtitle) = sprintf( \
  "set label 1 '%s' at screen 0.09,0.945 font 'Sans:Bold,16';" . \
  "set label 2 '%s' at screen 0.09,0.89", text, subtitle)

east(v) = sprintf("%g°%s", abs(v), v > 0 ? "E" : v < 0 ? "W" : "")
north(v) = sprintf("%g°%s", abs(v), v > 0 ? "N" : v < 0 ? "S" : "")


# --- One cell's annual means. A missing year leaves a gap.

eval write_title(sprintf("%s, %s, %s", quantity, north(lat), east(lon)), \
                 "annual means of the twelve months")
set xlabel "year"
set ylabel unit
set xrange [first - 0.5:last + 0.5]
set xtics nomirror ceil((last - first) / 120.0) * (last - first < 12 ? 1 : 10)
low = 1e9
high = -1e9
do for [i = 2:words(years):2] {
  mean = real(word(years, i)) # NaN is neither less nor more than anything
  if (mean < low) { low = mean }
  if (mean > high) { high = mean }
}
if (high < low) { low = high = 0 } # an empty frame: no year is complete
space = high > low ? 0.08 * (high - low) : 0.05
set yrange [low - space:high + space]
set output stem.".years.png"
print "picture            ".stem.".years.png"
plot $years using 1:2 with linespoints pointtype 7 pointsize 0.8 linewidth 1.5 \
     linecolor "#3b528b"
set output


# --- The map of the saved cells.

unset xlabel
unset ylabel
set xrange [*:*]
set yrange [*:*]

# Cells on both sides of the 180 degree meridian, and nowhere near Greenwich: one map
# without a hole, which runs on beyond 180.
stats $cells using 1 name "X" nooutput
stats $cells using 2 name "Y" nooutput
stats $cells using (abs($1)) name "FROM_GREENWICH" nooutput
joined = X_min < 0 && X_max > 0 && FROM_GREENWICH_min > 90
place(x) = joined && x < 0 ? x + 360 : x
stats $cells using (place($1)) name "X" nooutput

# A degree of longitude is drawn as long as it is in the middle of the map; the frame
# has 800 by 350 pixels, and the narrower range is widened to fill it.
margin = (X_max - X_min) * 0.05
if (margin < 0.5) { margin = 0.5 }
if (margin > 5) { margin = 5 }
middle_x = (X_max + X_min) / 2
middle_y = (Y_max + Y_min) / 2
shrink = cos(middle_y * pi / 180)
half_x = (X_max - X_min) / 2 + margin
half_y = (Y_max - Y_min) / 2 + margin
if (half_x * shrink / half_y < 800 / 350.0) {
  half_x = half_y / shrink * 800 / 350
} else {
  half_y = half_x * shrink * 350 / 800
}
set xrange [middle_x - half_x:middle_x + half_x]
set yrange [middle_y - half_y:middle_y + half_y]
set bmargin at screen 0.225

step(size) = size > 180 ? 45 : size > 110 ? 30 : size > 60 ? 15 : size > 36 ? 10 : \
             size > 18 ? 5 : size > 9 ? 2 : size > 4.5 ? 1 : 0.5
set xtics nomirror () # the labels follow
set ytics nomirror ()
do for [i = -360:720] {
  v = i * step(2 * half_x)
  shown = v > 180 ? v - 360 : v
  if (abs(v - middle_x) < half_x) { set xtics add (east(shown) v) }
  v = i * step(2 * half_y)
  if (abs(v - middle_y) < half_y && abs(v) <= 90) { set ytics add (north(v) v) }
}

# Dark blue to yellow, ever lighter: readable with any kind of colour vision, in grey
# as well.
set palette defined (0 "#440154", 1 "#3b528b", 2 "#21918c", 3 "#5ec962", 4 "#fde725")
set colorbox horizontal user origin 0.09,0.105 size 0.44,0.03
set cbtics offset 0,0.4
set label 3 at screen 0.09,0.025

# Few cells on a large map are drawn larger than they are; many get no border, which
# would hide their colour.
half = cells < 500 && 0.014 * half_x > 0.25 ? 0.014 * half_x : 0.25
set style fill solid border linecolor "#404040"
if (cells >= 500) { set style fill solid noborder }
if (cells >= 500 && half_x > 45) { half = 0.3 } # no pale seams between small cells

subtitle = sprintf("%d to %d, %s, %d cells", first, last, \
                   quantity[1:7] eq "Drought" ? "scPDSI 3.25" : "CRU TS 4.01", cells)
eval write_title(quantity." of the saved cells", subtitle)
set label 3 "mean of the years, ".unit
set cbrange [MEAN_min:(MEAN_max > MEAN_min ? MEAN_max : MEAN_min + 0.1)]
set output stem.".map.png"
print "picture            ".stem.".map.png"
plot $cells using (place($1)):2:(half):(half) with boxxyerror linecolor "white", \
     $cells using (place($1)):2:(half):(half):3 with boxxyerror linecolor palette
set output


# --- The f values on the map.

if (!has_report) { exit }

# A single cell with f = 1000 would leave one colour for all others: beyond 4 the
# colours change no more. An f below 1 comes from rounding only, and is left out.
is_usual(i) = is_finite(i) && column(i) >= 1
top = largest > 4 ? 4 : largest > 1.01 ? largest : 1.01
set logscale cb
set cbrange [1:top]
set cbtics ("1" 1)
do for [i = 1:4] {
  label = i == 4 && largest > top ? "4 or more" : sprintf("%.3g", top ** (i / 4.0))
  set cbtics add (label top ** (i / 4.0))
}

# The first year of the second period is the cutoff year, whatever the report's labels
# say: ... Variance:  1901- 1959  1960- 2016.
cutoff = int(word(system("head -n 1 ".FTST), 7))
eval write_title(quantity.": f of the variance test", \
                 sprintf("%d to %d against %d to %d, %d cells", first, cutoff - 1, \
                         cutoff, last, cells))
set label 3 "f, the larger variance over the smaller"
set label 4 "f infinite: no variance in one period" at screen 0.63,0.12 offset 1.5,0 \
  point pointtype 4 pointsize 1.7 linewidth 1.5 linecolor "black"
set label 5 "" at screen 0.63,0.12 \
  point pointtype 2 pointsize 1.2 linewidth 1.5 linecolor "black"
set label 6 "no f: no variance in either period" at screen 0.63,0.075 offset 1.5,0 \
  point pointtype 4 pointsize 0.8 linecolor "#909090"
set output stem.".f.png"
print "picture            ".stem.".f.png"
# Where a report has none of one kind, a warning says "no valid points".
plot $f using (is_usual(3) || is_infinite(3) ? 1/0 : place($1)):2 \
       with points pointtype 4 pointsize 0.8 linecolor "#909090", \
     $f using (is_usual(3) ? place($1) : 1/0):2:(half):(half):3 \
       with boxxyerror linecolor palette, \
     $f using (is_infinite(3) ? place($1) : 1/0):2 \
       with points pointtype 5 pointsize 1.7 linecolor "white", \
     $f using (is_infinite(3) ? place($1) : 1/0):2 \
       with points pointtype 4 pointsize 1.7 linewidth 1.5 linecolor "black", \
     $f using (is_infinite(3) ? place($1) : 1/0):2 \
       with points pointtype 2 pointsize 1.2 linewidth 1.5 linecolor "black"
set output
