"""Compares the sites of veldmark-extract with a plain search of the whole grid.

    sites_search.py --extract PROGRAM [--count N] [--seed S]

Random points, on centres, edges, corners, the poles and the 180 degree meridian too, with
and without a radius, on a made grid file of one year. Then 100,000 sites in one table.
"""

import argparse
import csv
import io
import math
import random
import subprocess
import sys
import tempfile
from pathlib import Path

NAME = "cru_ts4.01.1901.1901.tmp.dat.new"
ROWS, COLUMNS = 360, 720
MANY = 100_000


def made_grid(rng):
    """The text of a year, and {(row, column): values of January to December}."""
    cells = {}
    for row in range(ROWS):
        for column in range(COLUMNS):
            if rng.random() < (0.9 if (row // 40 + column // 60) % 3 == 0 else 0.02):
                cells[row, column] = [rng.choice([-999, *range(-300, 300)]) for _ in range(12)]
    lines = []
    for month in range(12):
        for row in range(ROWS):
            fields = [f"{cells[row, c][month]:5d}" if (row, c) in cells else " -999"
                      for c in range(COLUMNS)]
            lines.append("".join(fields) + "\n")
    return "".join(lines), {k: v for k, v in cells.items() if any(x != -999 for x in v)}


def centre(cell):
    return -89.75 + 0.5 * cell[0], -179.75 + 0.5 * cell[1]


def vector(lat, lon):
    lat, lon = math.radians(lat), math.radians(lon)
    return math.cos(lat) * math.cos(lon), math.cos(lat) * math.sin(lon), math.sin(lat)


def distance(a, b):
    """Returns the distance in kilometres, computed from the chord between the points."""
    chord = math.dist(vector(*a), vector(*b))
    return 2 * 6371.0088 * math.asin(min(1.0, chord / 2))


def own_cell(lat, lon):
    """Returns the cell whose half-open ranges contain the point."""
    lon = (lon + 180) % 360 - 180
    row = next((r for r in range(ROWS) if -90 + r / 2 <= lat < -89.5 + r / 2), ROWS - 1)
    column = next(c for c in range(COLUMNS) if -180 + c / 2 <= lon < -179.5 + c / 2)
    return row, column


def expected_cell(point, cells, radius):
    own = own_cell(*point)
    if own in cells:
        return own
    if radius is None:
        return None
    ranked = sorted((round(distance(point, centre(cell)), 6), cell) for cell in cells
                    if abs(centre(cell)[0] - point[0]) * 111 <= radius)
    return ranked[0][1] if ranked and distance(point, centre(ranked[0][1])) <= radius else None


def random_point(rng):
    kind = rng.randrange(8)
    if kind == 0:
        return rng.choice([90.0, -90.0]), rng.uniform(-180, 180)
    if kind == 1:
        return rng.uniform(-90, 90), rng.choice([180.0, -180.0, 179.9, 180.1, 0.0, 360.0])
    if kind == 2:  # centres
        return centre((rng.randrange(ROWS), rng.randrange(COLUMNS)))
    if kind == 3:  # corners
        return rng.randrange(-180, 181) / 2, rng.randrange(-360, 721) / 2
    if kind == 4:  # edges
        return rng.randrange(-180, 181) / 2, rng.uniform(-180, 360)
    return round(rng.uniform(-90, 90), 3), round(rng.uniform(-180, 360), 3)


def run(extract, folder, options):
    return subprocess.run([extract, NAME, "--sites", "sites.csv", *options], cwd=folder,
                          check=False, capture_output=True, text=True)


def write_sites(folder, points):
    with open(folder / "sites.csv", "w", newline="", encoding="utf-8") as out:
        writer = csv.writer(out)
        writer.writerow(["name", "lat", "lon", "remark"])
        for number, (lat, lon) in enumerate(points):
            writer.writerow([f"plot, {number}", repr(lat), repr(lon), f'"{number}"'])


def check_search(extract, folder, cells, points, radius):
    options = ["--wide", "--stored"] + ([] if radius is None else ["--radius", str(radius)])
    result = run(extract, folder, options)
    assert result.returncode == 0, result.stderr
    rows = {row["name"]: row for row in csv.DictReader(io.StringIO(result.stdout))}
    left_out = 0
    for number, point in enumerate(points):
        name = f"plot, {number}"
        cell = expected_cell(point, cells, radius)
        if cell is None:
            left_out += 1
            assert name not in rows, f"{point} got {rows[name]}"
            assert f"{name} (" in result.stderr, f"{point} is not named"
            continue
        row = rows[name]
        found = float(row["cell_lat"]), float(row["cell_lon"])
        assert found == centre(cell), f"{point}, radius {radius}: {found}, not {centre(cell)}"
        assert abs(float(row["distance_km"]) - distance(point, found)) < 0.0501
        assert row["remark"] == f'"{number}"' and row["lat"] == repr(point[0])
        values = [row[m] for m in
                  "jan feb mar apr may jun jul aug sep oct nov dec".split()]
        assert values == [str(v) if v != -999 else "" for v in cells[cell]], f"{point}"
    return len(points) - left_out, left_out


def check_many(extract, folder, cells, rng):
    """A table of 100,000 sites: each on the centre of a cell with data."""
    chosen = rng.choices(sorted(cells), k=MANY)
    write_sites(folder, [centre(cell) for cell in chosen])
    result = run(extract, folder, ["--wide", "--stored", "--quiet"])
    assert result.returncode == 0 and result.stderr == "", result.stderr
    rows = list(csv.DictReader(io.StringIO(result.stdout)))
    assert len(rows) == MANY
    for cell, row in zip(chosen, rows):
        values = cells[cell]
        assert row["jan"] == (str(values[0]) if values[0] != -999 else "")
        assert row["dec"] == (str(values[11]) if values[11] != -999 else "")
        assert row["distance_km"] == "0.0"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--extract", required=True)
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    extract = str(Path(options.extract).resolve())
    rng = random.Random(options.seed)
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        text, cells = made_grid(rng)
        (folder / NAME).write_text(text, encoding="ascii")
        points = [random_point(rng) for _ in range(options.count)]
        write_sites(folder, points)
        for radius in (None, 40, 150):
            found, left_out = check_search(extract, folder, cells, points, radius)
            print(f"radius {radius}: {found} sites found, {left_out} left out")
            assert found > 0 and left_out > 0
        check_many(extract, folder, cells, rng)
        print(f"{MANY} sites in one table")
    return 0


if __name__ == "__main__":
    sys.exit(main())
