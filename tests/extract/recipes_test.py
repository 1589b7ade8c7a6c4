"""Runs a recipe for sites on the sample, in Python or in R.

    recipes_test.py python|R PROGRAM_FOLDER

It must print the annual means that are worked out here from the producers' series, with
a year left out that lacks a month, and make its picture. Where R is not installed the
status is 77, for a skipped test; with CI=true in the environment it is a failure.
"""

import csv
import gzip
import os
import shutil
import subprocess
import sys
import tempfile
from decimal import Decimal
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
SAMPLE = TOP / "data" / "sample" / "cru_ts4.01_tmp_1901_2016.csv.gz"
GRID = "cru_ts4.01.1901.1903.tmp.dat.new"
SITES = {"west": (60.3, -139.7), "a, b": (60.8, -138.7)}
CELLS = {"west": ("-139.75", "60.25"), "a, b": ("-138.75", "60.75")}
LINES_PER_YEAR = 12 * 360
SKIPPED = 77


def expected_table():
    """Returns the lines of the table; the first site has no value in March 1902."""
    table = ""
    with gzip.open(SAMPLE, "rt") as lines:
        series = {tuple(row[:2]): row[2:] for row in csv.reader(lines)}
    for name, cell in CELLS.items():
        for year in range(3):
            if name == "west" and year == 1:
                continue
            months = [Decimal(value) / 10 for value in series[cell][12 * year : 12 * year + 12]]
            table += f"{name} {1901 + year} {sum(months) / 12:.3f}\n"
    return table


def make_series(tools, folder):
    with gzip.open(SAMPLE) as text:
        subprocess.run([tools / "series_to_grid", "--years", "1901-1903", folder / GRID],
                       input=text.read(), check=True, capture_output=True)
    with open(folder / GRID, "r+b") as grid:
        line = LINES_PER_YEAR + 2 * 360 + 301 - 1  # March 1902, 60.25 N
        grid.seek(line * 3601 + 5 * 80)
        grid.write(b" -999")
    with open(folder / "sites.csv", "w", newline="", encoding="utf-8") as out:
        writer = csv.writer(out)
        writer.writerow(["plot", "lat", "lon"])
        writer.writerows([name, *place] for name, place in SITES.items())
    subprocess.run([tools / "veldmark-extract", GRID, "--sites", "sites.csv", "--quiet",
                    "-o", "series.csv"], cwd=folder, check=True)


def check_recipe(command, picture, folder):
    result = subprocess.run([*command, "series.csv"], cwd=folder, check=False,
                            capture_output=True, text=True)
    assert result.returncode == 0, result.stderr
    table, _, last = result.stdout.rpartition("picture")
    assert table == expected_table(), f"{command}: {table}\nnot\n{expected_table()}"
    assert last.strip() == picture
    assert (folder / picture).stat().st_size > 1000


def main():
    language, tools = sys.argv[1], Path(sys.argv[2]).resolve()
    recipes = TOP / "docs" / "recipes"
    command, picture = {
        "python": ([sys.executable, recipes / "plots.py"], "series.years.svg"),
        "R": (["Rscript", recipes / "plots.R"], "series.years.png"),
    }[language]
    if not shutil.which(command[0]):
        print(f"not installed: {command[0]}")
        return 1 if os.environ.get("CI") == "true" else SKIPPED
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        make_series(tools, folder)
        check_recipe(command, picture, folder)
    print(f"the recipe in {language} agrees with the sample")
    return 0


if __name__ == "__main__":
    sys.exit(main())
