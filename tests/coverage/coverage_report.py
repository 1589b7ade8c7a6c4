#!/usr/bin/env python3
"""Reports the lines of the programs that no test runs; fails for unexplained ones.

    coverage_report.py BUILD

BUILD is the folder of a build with VELDMARK_COVERAGE in which the tests have been run.
`uncovered.txt` beside this file has a line for each line of code that no test can reach,
or should: `FILE: CODE -- REASON`. A line of code that isn't run and isn't listed fails
the report, as does a listed one that is run or gone.
"""

import json
import pathlib
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
EXPLAINED = pathlib.Path(__file__).with_name("uncovered.txt")
PROGRAMS = ["src/", "companion/", "tersify/", "tools/", "extract/"]


def gcovr(build: pathlib.Path, *options: str) -> str:
    """Returns gcovr's output for the sources of the programs."""
    command = ["gcovr", "--root", str(TOP), "--object-directory", str(build)]
    for folder in PROGRAMS:
        command += ["--filter", folder]
    # Nearly every call can throw; these branches are not decisions in the code.
    command += ["--exclude-throw-branches", "--exclude-unreachable-branches", *options]
    return subprocess.run(
        command, check=True, cwd=TOP, stdout=subprocess.PIPE, text=True
    ).stdout


def lines_never_run(build: pathlib.Path) -> set[str]:
    """Returns the lines that no test runs, each as `FILE: CODE`."""
    never = set()
    for file in json.loads(gcovr(build, "--json"))["files"]:
        code = (TOP / file["file"]).read_text(encoding="utf-8").splitlines()
        for line in file["lines"]:
            if line["count"] == 0 and not line["gcovr/noncode"]:
                text = code[line["line_number"] - 1].strip()
                never.add(f"{file['file']}: {text}")
    return never


def explained_lines() -> set[str]:
    """Returns the listed lines without their reasons."""
    listed = set()
    for line in EXPLAINED.read_text(encoding="utf-8").splitlines():
        if not line or line.startswith("#"):
            continue
        place, separator, reason = line.partition(" -- ")
        if not separator or not reason.strip():
            sys.exit(f"{EXPLAINED.name}: no reason for {place}")
        listed.add(place)
    return listed


def main() -> None:
    """Prints the report. Exits with 1 if a line is unexplained or wrongly listed."""
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    build = pathlib.Path(sys.argv[1]).resolve()
    # The whole report, by file, goes beside the build's other results.
    print(gcovr(build, "--txt", str(build / "lines.txt"), "--print-summary"), end="")
    gcovr(build, "--branches", "--txt", str(build / "branches.txt"))
    print(f"by file: {build}/lines.txt and branches.txt")
    never, listed = lines_never_run(build), explained_lines()
    print(f"{len(never)} lines never run, {len(never & listed)} of them explained")
    for line in sorted(never - listed):
        print(f"not run, not explained: {line}")
    for line in sorted(listed - never):
        print(f"explained, but run or gone: {line}")
    sys.exit(never != listed)


if __name__ == "__main__":
    main()
