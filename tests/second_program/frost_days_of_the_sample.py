"""Tests the variance of real frost-day series with both programs.

    frost_days_of_the_sample.py PROGRAM

For some cells of the real sample: all 116 years, a cutoff in the middle. Screen, series,
cell list and variance report of PROGRAM must be those of the second program.
"""

import gzip
import subprocess
import sys
import tempfile
from pathlib import Path

from transcript_sessions import HERE, Grid, data_file_name, folder_content

SAMPLE = HERE.parents[1] / "data" / "sample" / "cru_ts4.01_frs_1901_2016.csv.gz"
PLACES = ((-121.25, 61.25), (-76.75, 38.75), (14.75, 48.75), (-72.25, 42.75))
CUTOFF_YEAR = 1959


def sample_series():
    with gzip.open(SAMPLE, "rt") as lines:
        next(lines)
        for line in lines:
            longitude, latitude, *values = line.split(",")
            yield (float(longitude), float(latitude)), [int(value) for value in values]


def grid_of_row(place, series):
    """Returns a grid file with the sample's values in the row of `place`; other lines are empty."""
    row = int((place[1] + 89.75) / 0.5) + 1
    grid = Grid(2016, row, row, -999)
    for (longitude, latitude), values in series.items():
        if latitude == place[1]:
            column = int((longitude + 179.75) / 0.5) + 1
            for index, value in enumerate(values):
                year, month = 1901 + index // 12, index % 12 + 1
                grid.set_field(year, month, row, column, f"{value:5d}")
    return grid.text()


def answers_for(place):
    longitude, latitude = place
    region = [latitude + 0.25, latitude - 0.25, longitude + 0.25, longitude - 0.25]
    answers = ["", "", "9", "", "", *map(str, region), "T", "1901", "2016", "T"]
    answers += ["1", "y", "T", str(CUTOFF_YEAR), "F"]
    return "\n".join(answers) + "\n"


def run(command, place, grid):
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        (folder / data_file_name("frs")).write_text(grid)
        result = subprocess.run(
            command,
            input=answers_for(place).encode(),
            capture_output=True,
            cwd=folder,
            check=False,
        )
        return result.stdout, result.stderr, result.returncode, folder_content(folder)


def main():
    program = str(Path(sys.argv[1]).resolve())
    series = dict(sample_series())
    failed = 0
    for place in PLACES:
        grid = grid_of_row(place, series)
        first = run([program], place, grid)
        second = run([sys.executable, HERE / "second_program.py"], place, grid)
        report = first[3].get(data_file_name("frs") + ".ftst", (0, b""))[1].splitlines()
        if first != second or first[2] != 0 or len(report) != 3:
            failed += 1
            print(f"{place}: different, or no line in the report")
        else:
            print(report[2].decode())
    print(f"{len(PLACES) - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
