"""Measures veldmark-extract: series files, CSV, sites, and netCDF compared with cdo.

Outputs are always new, and each is compared with an independent one: series files with
those of plain_extract, netCDF with cdo's. Of CSV only the number of lines is compared.
"""

import csv
import dataclasses
import gzip
import random
import shutil
import subprocess
import sys

from searches import Search
from stage import LAND_MASK, MIB, log
from tables import print_table, run_alternately


@dataclasses.dataclass(frozen=True)
class Job:
    """A box, the number of rounds, and the goals: ratio to the limit, memory in MiB."""

    search: Search
    box: tuple
    rounds: int
    maximum: float
    memory_goal: int


JOBS = {
    "S": Job(
        Search(60, 50, 10, 0, 1961, 1990),
        ("--lat", "50:60", "--lon", "0:10", "--years", "1961:1990"),
        *(31, 1.4, 16),
    ),
    "M": Job(
        Search(72, 35, 40, -10), ("--lat", "35:72", "--lon", "-10:40"), 15, 1.4, 32
    ),
    "L": Job(Search(90, -90, 180, -180), (), 7, 1.9, 256),
}
MIN_CSV_RATE = 500  # million bytes per second
MAX_SITES_RATIO = 2.0
SITES = 1000


def reached(is_reached):
    return "yes" if is_reached else "no"


def extract(stage, output, *arguments):
    """A run that writes a new output."""
    for old in stage.session.glob(f"{output}*"):
        if not old.is_symlink():
            old.unlink()
    program = stage.programs / "veldmark-extract"
    return stage.run(program, "pre", *arguments, "-o", output, "--quiet")


def series_files(stage, job):
    """A run that writes series files, which must equal those of plain_extract."""
    name = stage.data_file("pre").name
    taken = extract(stage, name, *job.box, "--format", "tsf")
    stage.compare("pre")
    return taken


def measure_series_files(stage, only, rounds):
    rows = []
    for name in only:
        job = JOBS[name]
        log(f"veldmark-extract, series files, job {name}")
        stage.expect("pre", job.search)
        limit, runs = run_alternately(
            rounds or job.rounds,
            lambda job=job: stage.run_limit("pre", job.search),
            lambda job=job: series_files(stage, job),
        )
        ratio = runs.median / limit.median
        row = [name, limit.seconds(), runs.seconds(), runs.ratio(limit), job.maximum]
        row += [reached(ratio <= job.maximum), f"{runs.peak:.1f}", job.memory_goal]
        rows.append([*row, reached(runs.peak <= job.memory_goal)])
    print("Series files (`--format tsf`):\n")
    heading = ["Job", "Limit s", "veldmark-extract s", "Ratio", "Maximum", "Reached"]
    print_table([*heading, "Peak MiB", "Goal MiB", "Reached"], rows)


def expect_lines(path, lines):
    with path.open("rb") as file:
        found = sum(piece.count(b"\n") for piece in iter(lambda: file.read(MIB), b""))
    if found != lines:
        sys.exit(f"DIFFERENT: {path} has {found} lines instead of {lines}")


def measure_csv(stage, only, rounds):
    """Measures the jobs but S, which reads much more than it writes."""
    rows = []
    for name in [name for name in only if name != "S"]:
        job = JOBS[name]
        log(f"veldmark-extract, CSV, job {name}")
        # CSV also holds cells that have data, but not in the first month.
        extract(stage, "cells.csv", *job.box, "--wide")
        years = job.search.last_year - job.search.first_year + 1
        with (stage.session / "cells.csv").open("rb") as file:
            cells = (sum(1 for _ in file) - 1) // years
        for wide, lines in (((), 12 * years), (("--wide",), years)):
            output = stage.session / "series.csv"
            (runs,) = run_alternately(
                rounds or job.rounds,
                lambda: extract(stage, "series.csv", *job.box, *wide),
            )
            expect_lines(output, 1 + cells * lines)
            million = output.stat().st_size / 1e6
            rate = million / runs.median
            output.unlink()
            row = [f"{name}, {'wide' if wide else 'long'}", f"{million:.1f}"]
            row += [runs.seconds(), f"{rate:.0f}", MIN_CSV_RATE]
            rows.append([*row, reached(rate >= MIN_CSV_RATE), f"{runs.peak:.1f}"])
    print("CSV, the time from start to end for all of the text:\n")
    heading = ["Job", "Million bytes", "Seconds", "Million bytes a second", "Minimum"]
    print_table([*heading, "Reached", "Peak MiB"], rows)


def make_sites(path):
    """Writes random points in different land cells. Returns the rows, in the form of `limit`."""
    mask = gzip.decompress(LAND_MASK.read_bytes()).decode("ascii").split()
    land = [
        (row, column)
        for row, line in enumerate(mask)
        for column, kind in enumerate(line)
        if kind == "1"
    ]
    chance = random.Random(1)
    chosen = chance.sample(land, SITES)
    with path.open("w", encoding="ascii", newline="") as file:
        table = csv.writer(file)
        table.writerow(["name", "lat", "lon"])
        for number, (row, column) in enumerate(chosen):
            lat = -90 + 0.5 * row + chance.uniform(0.01, 0.49)
            lon = -180 + 0.5 * column + chance.uniform(0.01, 0.49)
            table.writerow([f"site{number}", f"{lat:.3f}", f"{lon:.3f}"])
    return ",".join(f"{row + 1}-{row + 1}" for row in sorted({r for r, _ in chosen}))


def measure_sites(stage, rounds):
    log("veldmark-extract, sites")
    rows = make_sites(stage.session / "sites.csv")
    grid, folder = stage.data_file("pre"), stage.limit_outputs
    limit, runs = run_alternately(
        rounds or 15,
        lambda: stage.run(stage.bench_program("limit"), grid, rows, 1, 116, folder),
        lambda: extract(stage, "series.csv", "--sites", "sites.csv"),
    )
    ratio = runs.median / limit.median
    print(f"{SITES} sites, 1901-2016, beside reading their lines once:\n")
    heading = ["Reading alone s", "veldmark-extract s", "Ratio", "Maximum", "Reached"]
    row = [limit.seconds(), runs.seconds(), runs.ratio(limit), MAX_SITES_RATIO]
    row += [reached(ratio <= MAX_SITES_RATIO), f"{runs.peak:.1f}"]
    print_table([*heading, "Peak MiB"], [row])


def cdo(stage, source, search):
    """Runs the climate operators on a box, with the packing of the source."""
    output = stage.session / "operators.nc"
    output.unlink(missing_ok=True)
    box = (search.min_lon, search.max_lon, search.min_lat, search.max_lat)
    operators = ["-sellonlatbox," + ",".join(map(str, box)), source, output]
    if (search.first_year, search.last_year) != (1901, 2016):
        operators.insert(0, f"-selyear,{search.first_year}/{search.last_year}")
    return stage.run(shutil.which("cdo"), "-s", *operators)


def expect_same_values(stage):
    """Compares the last netCDF files, with a tolerance for the floats of published files."""
    names = [stage.session / name for name in ("operators.nc", "box.nc")]
    command = ["cdo", "-s", "diffn,abslim=0.001", *map(str, names)]
    done = subprocess.run(command, stdout=subprocess.PIPE, check=False)
    if done.returncode != 0 or done.stdout:
        sys.exit(f"DIFFERENT: {names[0]} and {names[1]}")


def measure_netcdf(stage, only, rounds):
    """Measures S and M only: for the globe the operators would merely copy the file."""
    log("veldmark-extract, netCDF: the whole grid for the climate operators")
    extract(stage, "globe.nc")
    packed, published = stage.session / "globe.nc", stage.session / "published.nc"
    # The form of the published files: classic format, uncompressed, floats.
    copy = ["cdo", "-s", "-f", "nc2", "-b", "F32", "copy", packed, published]
    subprocess.run(list(map(str, copy)), check=True)
    rows = []
    for name in [name for name in only if name != "L"]:
        job = JOBS[name]
        log(f"veldmark-extract, netCDF, job {name}")
        from_packed, from_published, runs = run_alternately(
            rounds or 5,
            lambda job=job: cdo(stage, packed, job.search),
            lambda job=job: cdo(stage, published, job.search),
            lambda job=job: extract(stage, "box.nc", *job.box),
        )
        expect_same_values(stage)
        row = [name, from_packed.seconds(), from_published.seconds(), runs.seconds()]
        rows.append([*row, runs.ratio(from_packed), runs.ratio(from_published)])
    print("netCDF, beside the climate operators (`cdo`) on the same data as netCDF:\n")
    heading = ["Job", "cdo, netCDF-4 deflated s", "cdo, as published s"]
    heading += ["veldmark-extract s", "Ratio, deflated", "Ratio, as published"]
    print_table(heading, rows)


def measure(stage, only, rounds):
    if not (stage.programs / "veldmark-extract").exists():
        sys.exit("veldmark-extract was not built: it needs libcli11-dev and libcsv-dev")
    stage.prepare("pre")
    print("## veldmark-extract\n")
    measure_series_files(stage, only, rounds)
    measure_csv(stage, only, rounds)
    measure_sites(stage, rounds)
    measure_netcdf(stage, only, rounds)
    print("Seconds are medians (least-most).\n")
