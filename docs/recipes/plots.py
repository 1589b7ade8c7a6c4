#!/usr/bin/env python3
# Annual means of the plots in an extract of sites, as a table and as a picture. Python's
# standard library only.
#
#   python3 plots.py SERIES.csv
#
# reads   SERIES.csv, written by veldmark-extract with --sites (not with --wide)
# writes  SERIES.years.svg (a browser shows it); the table goes to the screen
#
# The plots are told apart by the table's first column. A year with a missing month has no
# mean. Needs picture.py beside it.
import csv
import sys

from picture import Picture, ticks

COLOURS = ["#3b528b", "#b5442e", "#2b8a57", "#8a6d1f", "#7b3f8c", "#555555"]


def annual_means(name):
    """{plot: {year: mean of its twelve months}}, plots in the order of the file."""
    months = {}
    with open(name, newline="", encoding="utf-8") as lines:
        for row in csv.DictReader(lines):
            plot = next(iter(row.values()))
            years = months.setdefault(plot, {})
            if row["value"]:
                years.setdefault(int(row["year"]), []).append(float(row["value"]))
    return {plot: {year: sum(values) / 12 for year, values in years.items() if len(values) == 12}
            for plot, years in months.items()}


def draw(name, means):
    years = [year for of_plot in means.values() for year in of_plot]
    values = [value for of_plot in means.values() for value in of_plot.values()]
    space = max(0.08 * (max(values) - min(values)), 0.05)
    picture = Picture("Annual means", ", ".join(means), (min(years) - 0.5, max(years) + 0.5),
                      (min(values) - space, max(values) + space), 800, 360, bottom=60)
    for year in ticks(*picture.x_range, 12):
        if year == int(year):
            picture.x_tick(year, "%d" % year)
    for value in ticks(*picture.y_range, 7):
        picture.y_tick(value, "%g" % value)
    for number, of_plot in enumerate(means.values()):
        stroke = COLOURS[number % len(COLOURS)]
        for year, value in of_plot.items():
            picture.add("circle", class_="year", cx=picture.x(year), cy=picture.y(value),
                        r=3, fill=stroke)
            if year - 1 in of_plot:
                picture.line(picture.x(year - 1), picture.y(of_plot[year - 1]),
                             picture.x(year), picture.y(value), stroke, 1.5)
    picture.axis_titles("year", "value")
    picture.save(name)


def main(name):
    means = annual_means(name)
    if not any(means.values()):
        sys.exit("plots.py: %s has no complete year" % name)
    for plot, of_plot in means.items():
        for year, value in of_plot.items():
            print("%s %d %.3f" % (plot, year, value))
    draw(name.removesuffix(".csv") + ".years.svg", means)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: python3 plots.py SERIES.csv")
    main(sys.argv[1])
