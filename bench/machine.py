"""Describes the machine that measurements were made on."""

import os
import pathlib
import platform
import subprocess


def output_of(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, check=True, text=True)
    return done.stdout.strip()


def field_of(path, name):
    """Returns the first value of a `name : value` line of a kernel file."""
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        key, _, value = line.partition(":")
        if key.strip() == name:
            return value.strip()
    return "unknown"


def build_of(programs):
    """Returns the compiler and the build type of a build folder."""
    cache = (pathlib.Path(programs) / "CMakeCache.txt").read_text(encoding="utf-8")
    entries = dict(line.split("=", 1) for line in cache.splitlines() if "=" in line)
    version = output_of(entries["CMAKE_CXX_COMPILER:FILEPATH"], "--version")
    kind = entries.get("CMAKE_BUILD_TYPE:STRING") or "of no kind"
    return f"{version.splitlines()[0]}, {kind}"


def describe(programs, folder):
    """Returns a Markdown table of the machine and its current load."""
    memory = int(field_of("/proc/meminfo", "MemTotal").split()[0]) / 1024**2
    rows = [
        ("Processor", field_of("/proc/cpuinfo", "model name")),
        ("Processors", len(os.sched_getaffinity(0))),
        ("Memory", f"{memory:.1f} GiB"),
        ("File system", output_of("df", "--output=fstype", folder).splitlines()[-1]),
        ("Kernel", f"{platform.system()} {platform.release()}"),
        ("Build", build_of(programs)),
        ("Load at the start (one minute)", f"{os.getloadavg()[0]:.2f}"),
    ]
    lines = ["| Machine | |", "|---|---|"]
    return "\n".join(lines + [f"| {name} | {value} |" for name, value in rows]) + "\n"
