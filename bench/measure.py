#!/usr/bin/env python3
"""Measures whole sessions and prints the results as Markdown; see README.md.

The runs that a table compares alternate, so that a slow period of the machine affects
all of them. The first round is a warm-up and isn't counted. Every output is compared with
that of plain_extract; a difference ends the script with status 1.
"""

import argparse
import contextlib
import dataclasses
import io
import pathlib
import re
import subprocess
import sys

import extract
import machine
from searches import LEAVE_AT_THE_MENU, Search, answers
from stage import Stage, log
from tables import print_table, run_alternately, verdict

TOP = pathlib.Path(__file__).resolve().parent.parent
PAGE = TOP / "docs" / "performance.md"
RESULTS = re.compile(r"(<!-- bench/run -->\n).*?(<!-- end of bench/run -->\n)", re.DOTALL)

GLOBE = Search(90, -90, 180, -180)
EUROPE = Search(72, 35, 40, -10)


@dataclasses.dataclass(frozen=True)
class Job:
    """A search and its goals: ratios to the limit, and memory in MiB."""

    search: Search
    rounds: int
    goal: float
    maximum: float
    memory_goal: int


JOBS = {
    "S": Job(Search(60, 50, 10, 0, 1961, 1990), 31, 1.5, 2.0, 16),
    "M": Job(EUROPE, 15, 1.5, 2.0, 32),
    "L": Job(GLOBE, 7, 1.6, 2.5, 256),
}


def new_outputs(stage, variable, typed):
    """A session in a folder without outputs."""
    stage.remove_outputs(variable)
    taken = stage.run_veldmark(typed)
    stage.compare(variable)
    return taken


def replaced_outputs(stage, variable, typed):
    """A session that replaces the outputs of the previous one, which are synced to disk."""
    taken = stage.run_veldmark(typed)
    stage.compare(variable)
    stage.remove_outputs(variable)
    return taken


def limit_and_session(stage, search, rounds):
    """Measures the limit and a session of precipitation. Returns their runs and the saved cells."""
    cells = stage.expect("pre", search)
    typed = answers("pre", search)
    limit, session = run_alternately(
        rounds,
        lambda: stage.run_limit("pre", search, commands=True),
        lambda: new_outputs(stage, "pre", typed),
    )
    return limit, session, cells


def measure_start(stage, rounds):
    """Measures the start-up cost of a session."""
    commands = "sh -c clear; sh -c clear; sh -c 'ls *.dat.new'"
    nothing, shell, menu = run_alternately(
        rounds or 31,
        lambda: stage.run("/bin/true"),
        lambda: stage.run("/bin/sh", "-c", commands),
        lambda: stage.run_veldmark(LEAVE_AT_THE_MENU),
    )
    print("Starting alone:\n")
    print_table(
        ["Run", "Seconds"],
        [
            ["a program that does nothing", nothing.seconds()],
            ["a shell that runs a session's three commands", shell.seconds()],
            ["a session that is left at the menu", menu.seconds()],
        ],
    )


def measure_job(stage, name, rounds):
    """Measures a job: limit and session with outputs new, then with outputs replaced."""
    job = JOBS[name]
    log(f"job {name}: making the expected outputs")
    stage.expect("pre", job.search)
    typed = answers("pre", job.search)
    log(f"job {name}: measuring")
    return run_alternately(
        rounds or job.rounds,
        lambda: stage.run_limit("pre", job.search, commands=True),
        lambda: new_outputs(stage, "pre", typed),
        lambda: stage.run_limit("pre", job.search, replace=True, commands=True),
        lambda: replaced_outputs(stage, "pre", typed),
    )


def rows_of_job(name, taken):
    job = JOBS[name]
    for outputs, limit, runs in (("new", *taken[:2]), ("replaced", *taken[2:])):
        ratio = runs.median / limit.median
        memory = "goal" if runs.peak <= job.memory_goal else "missed"
        yield [
            f"{name}, outputs {outputs}",
            *(limit.seconds(), runs.seconds(), runs.ratio(limit)),
            *(job.goal, job.maximum, verdict(ratio, job.goal, job.maximum)),
            *(f"{runs.peak:.1f}", job.memory_goal, memory),
        ]


def measure_cold(stage, name, rounds):
    """Measures a job's sessions after the grid file is dropped from the page cache."""
    search = JOBS[name].search
    stage.expect("pre", search)
    typed = answers("pre", search)

    def cold_session():
        stage.drop_from_cache("pre")
        return new_outputs(stage, "pre", typed)

    log(f"job {name}: from a cold disk")
    (runs,) = run_alternately(rounds or 5, cold_session)
    return runs


def print_user_summary(stage, taken, rounds):
    """Prints the cost of a search, in four lines."""
    region, globe = taken["S"][1], taken["L"][1]
    cold = {name: measure_cold(stage, name, rounds) for name in ("S", "L")}
    stage.read_into_cache("pre")
    print(f"- A region, 10 by 10 degrees over 30 years: {region.median:.2f} seconds.")
    print(f"- The globe, all 116 years, 0.6 GB of text: {globe.median:.1f} seconds.")
    print(f"- Memory: {region.peak:.0f} MiB for the region, {globe.peak:.0f} for the globe.")
    print("- From a cold disk, when nothing of the grid file is in memory:", end=" ")
    print(f"{cold['S'].median:.2f} and {cold['L'].median:.1f} seconds.\n")


def measure_jobs(stage, only, rounds):
    stage.prepare("pre")
    taken = {name: measure_job(stage, name, rounds) for name in only}
    if {"S", "L"} <= set(only):
        print_user_summary(stage, taken, rounds)
    rows = [row for name in only for row in rows_of_job(name, taken[name])]
    heading = ["Job", "Limit s", "Veldmark s", "Ratio", "Goal", "Maximum", "Reached"]
    heading += ["Peak MiB", "Goal MiB", "Reached"]
    print_table(heading, rows)
    print("Seconds are medians (least-most); all outputs were as they must be.\n")


def grow_with_first_year(stage, rounds):
    rows = []
    for year in (1901, 1931, 1961, 1991):
        search = dataclasses.replace(EUROPE, first_year=year, last_year=year)
        limit, session, _ = limit_and_session(stage, search, rounds or 9)
        rows.append([year, limit.seconds(), session.seconds(), session.ratio(limit)])
    print("The box of job M, one year:\n")
    print_table(["Year", "Limit s", "Veldmark s", "Ratio"], rows)


def grow_with_cells(stage, rounds):
    boxes = {
        "5 x 5 degrees": Search(55, 50, 10, 5),
        "10 x 10 degrees": Search(60, 50, 10, 0),
        "across the 180 degree meridian": Search(70, 60, -170, 160),
        "20 x 20 degrees": Search(60, 40, 20, 0),
        "40 x 40 degrees": Search(70, 30, 60, 20),
        "the northern half": Search(90, 0, 180, -180),
        "the globe": GLOBE,
    }
    rows = []
    for name, box in boxes.items():
        search = dataclasses.replace(box, first_year=1961, last_year=1990)
        limit, session, saved = limit_and_session(stage, search, rounds or 9)
        row = [name, search.cells(), saved, limit.seconds(), session.seconds()]
        rows.append([*row, session.ratio(limit), f"{session.peak:.1f}"])
    print("Boxes, 1961-1990:\n")
    heading = ["Box", "Cells", "Saved", "Limit s", "Veldmark s", "Ratio", "Peak MiB"]
    print_table(heading, rows)


def grow_with_thinning(stage, rounds):
    rows = []
    for factor in (1, 2, 5, 20):
        search = dataclasses.replace(GLOBE, factor=factor)
        limit, session, saved = limit_and_session(stage, search, rounds or 5)
        row = [factor, saved, limit.seconds(), session.seconds()]
        rows.append([*row, session.ratio(limit), f"{session.peak:.1f}"])
    print("Thinning, the globe, 1901-2016:\n")
    heading = ["Factor", "Saved", "Limit s", "Veldmark s", "Ratio", "Peak MiB"]
    print_table(heading, rows)


def grow_with_searches(stage, rounds):
    """Measures runs of several identical searches, each of which replaces the outputs."""
    rows = []
    for name in ("M", "L"):
        search = JOBS[name].search
        stage.expect("pre", search)
        counts = (1, 2, 4)
        sessions = [answers("pre", search, searches=count) for count in counts]
        actions = [
            lambda typed=typed: new_outputs(stage, "pre", typed) for typed in sessions
        ]
        for count, runs in zip(counts, run_alternately(rounds or 5, *actions)):
            each = f"{runs.median / count:.4f}"
            rows.append([name, count, runs.seconds(), each, f"{runs.peak:.1f}"])
    print("Searches in one run, the same each time:\n")
    print_table(["Job", "Searches", "Seconds", "Seconds a search", "Peak MiB"], rows)


def measure_growth(stage, only, rounds):
    del only
    stage.prepare("pre")
    print("## How cost grows\n")
    measure_start(stage, rounds)
    for grow in (
        grow_with_first_year,
        grow_with_cells,
        grow_with_thinning,
        grow_with_searches,
    ):
        log(grow.__name__.replace("_", " "))
        grow(stage, rounds)


def measure_variance(stage, only, rounds):
    del only
    stage.prepare("frs")
    print("## The variance test\n")
    log("the variance test: making the expected outputs")
    cells = stage.expect("frs", GLOBE)
    without = answers("frs", GLOBE)
    tested = answers("frs", GLOBE, cutoff=1958)
    log("the variance test: measuring")
    base, test = run_alternately(
        rounds or 5,
        lambda: new_outputs(stage, "frs", without),
        lambda: new_outputs(stage, "frs", tested),
    )
    report = stage.data_file("frs").with_name(stage.data_file("frs").name + ".ftst")
    lines = len(report.read_text(encoding="ascii").splitlines()) - 2
    each = (test.median - base.median) / cells * 1e6
    print("Frost days of the globe, 1901-2016, cutoff year 1958:\n")
    print_table(
        ["Session", "Seconds", "Ratio", "Peak MiB"],
        [
            ["without the test", base.seconds(), "1", f"{base.peak:.1f}"],
            ["with the test", test.seconds(), test.ratio(base), f"{test.peak:.1f}"],
        ],
    )
    print(f"{cells} cells saved, {lines} in the report; {each:.2f} us a saved cell.\n")


def measure_loops(stage, only, rounds):
    """Runs the micro-benchmarks, if Google Benchmark was available to build them."""
    del only, rounds
    program = pathlib.Path(stage.bench_program("micro_benchmarks"))
    if not program.exists():
        sys.exit("micro_benchmarks was not built: it needs libbenchmark-dev")
    print("## The hot loops\n\n```", flush=True)
    repeat = ["--benchmark_repetitions=5", "--benchmark_report_aggregates_only=true"]
    subprocess.run([program, *repeat], check=True)
    print("```\n")


WHAT = {
    "jobs": measure_jobs,
    "growth": measure_growth,
    "variance": measure_variance,
    "micro": measure_loops,
    "extract": extract.measure,
}


def parse_arguments():
    parser = argparse.ArgumentParser(
        prog="bench/run",
        description="Measures Veldmark and prints the results as Markdown.",
    )
    parser.add_argument(
        "what",
        nargs="*",
        metavar="WHAT",
        help=f"{', '.join(WHAT)} or all (default: jobs)",
    )
    parser.add_argument(
        "--programs", default=TOP / "build", help="build folder (default: build)"
    )
    parser.add_argument(
        "--folder",
        default=TOP / "bench-run",
        help="where grid files and outputs go (default: bench-run)",
    )
    parser.add_argument("--only", metavar="JOBS", help="of the jobs only these: S,M")
    parser.add_argument("--rounds", type=int, help="rounds of every measurement")
    parser.add_argument(
        "--page", action="store_true", help="put the jobs' results into docs/performance.md"
    )
    arguments = parser.parse_args()
    if "all" in arguments.what:
        arguments.what = list(WHAT)
    arguments.what = arguments.what or ["jobs"]
    arguments.only = arguments.only.split(",") if arguments.only else list(JOBS)
    for given, known in ((arguments.what, WHAT), (arguments.only, JOBS)):
        for name in given:
            if name not in known:
                parser.error(f"{name}: not one of {', '.join(known)}")
    if arguments.rounds is not None and arguments.rounds < 1:
        parser.error("--rounds: at least 1")
    if arguments.page and (arguments.what != ["jobs"] or arguments.only != list(JOBS)):
        parser.error("--page: for all jobs, and for nothing else")
    return arguments


def write_page(results):
    page = PAGE.read_text(encoding="utf-8")
    page, count = RESULTS.subn(lambda marks: marks[1] + results + marks[2], page)
    if count != 1:
        sys.exit(f"{PAGE} has no place for the results")
    PAGE.write_text(page, encoding="utf-8")


def main():
    arguments = parse_arguments()
    stage = Stage(arguments.programs, arguments.folder)
    # Taken before the measurements, which add to the load themselves; shown last.
    described = machine.describe(arguments.programs, arguments.folder)
    results = io.StringIO()
    with contextlib.redirect_stdout(results) if arguments.page else contextlib.nullcontext():
        for name in arguments.what:
            WHAT[name](stage, arguments.only, arguments.rounds)
        print(described, end="")
    if arguments.page:
        write_page(results.getvalue())
    stage.clear()


if __name__ == "__main__":
    main()
