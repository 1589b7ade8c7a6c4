"""Compares the series files of veldmark-extract with those of the dialogue.

    same_as_dialogue.py --veldmark PROGRAM --extract PROGRAM [--count N] [--seed S]

Random boxes with edges at whole and half degrees, across the 180 degree meridian too,
all variables, years and thinning factors, on a made grid file of two years. Each dialogue
is a fresh run. Both files must be the same to the byte.
"""

import argparse
import os
import random
import subprocess
import sys
import tempfile
from pathlib import Path

ROWS, COLUMNS, MONTHS = 360, 720, 24
FIRST_YEAR, LAST_YEAR = 1901, 1902
VARIABLES = ["pre", "tmp", "dtr", "tmn", "tmx", "vap", "pet", "cld", "frs", "wet"]
DROUGHT_FILE = "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new"


def file_name(number):
    if number == 11:
        return DROUGHT_FILE
    return f"cru_ts4.01.1901.2016.{VARIABLES[number - 1]}.dat.new"


def write_grid(path, rng, missing):
    """Land and sea; some cells lack months, some of them January."""
    mask = [[rng.random() < 0.3 for _ in range(COLUMNS)] for _ in range(ROWS)]
    sea = f"{missing:5d}"
    with open(path, "w", encoding="ascii", newline="") as out:
        for _ in range(MONTHS):
            for row in mask:
                low = rng.randrange(-900, 9000)
                texts = [f"{low + i:5d}" for i in range(50)] + [sea] * 3
                out.write("".join([rng.choice(texts) if land else sea for land in row]))
                out.write("\n")


class Box:
    def __init__(self, rng):
        self.number = rng.randrange(1, 12)
        most = 178 if self.number == 11 else 180
        south, north = sorted(rng.sample(range(-most, most + 1), 2))
        size = rng.choice([4, 20, 360])  # small boxes find the edges, large ones the rest
        self.south, self.north = south / 2, min(north, south + size) / 2
        west, east = rng.sample(range(-359, 360), 2)
        if west < east:
            east = min(east, west + 3 * size)
            west, east = rng.choice([(west, east), (-360, east), (west, 360)])
        self.west, self.east = west / 2, east / 2
        self.first = rng.randrange(FIRST_YEAR, LAST_YEAR + 1)
        self.last = rng.randrange(self.first, LAST_YEAR + 1)
        self.every = rng.choice([1, 1, 1, 2, 3, 7])

    def answers(self):
        lines = ["", "", str(self.number), "", ""]
        lines += [f"{edge:.1f}" for edge in (self.north, self.south, self.east, self.west)]
        lines += ["T", str(self.first), str(self.last), "T", str(self.every), "y", "F", "F"]
        return "\n".join(lines) + "\n"

    def options(self):
        # In a north-first file the dialogue takes one more row at each end.
        more = 0.5 if self.number == 11 else 0
        return [
            f"--lat={self.south - more}:{self.north + more}",
            f"--lon={self.west}:{self.east}",
            f"--years={self.first}:{self.last}",
            f"--every={self.every}",
        ]

    def __str__(self):
        return f"variable {self.number} " + " ".join(self.options())


def compare(box, veldmark, extract, folder):
    """Returns what differs, empty if nothing does, and whether there were cells."""
    name = file_name(box.number)
    subprocess.run(
        [veldmark], input=box.answers().encode(), cwd=folder, check=True, capture_output=True
    )
    expected = [(folder / (name + ending)).read_bytes() for ending in (".TSF", ".XY")]
    command = [extract, name, "--first-year", "1901", "--format", "tsf"]
    command += ["-o", "out/" + name, "--overwrite", "--quiet", *box.options()]
    made = [folder / "out" / (name + ending) for ending in (".TSF", ".XY")]
    for path in made:
        path.unlink(missing_ok=True)
    result = subprocess.run(command, cwd=folder, check=False, capture_output=True)
    if not expected[0]:
        if result.returncode != 3 or any(path.exists() for path in made):
            return f"no cells, but status {result.returncode}", False
        return None, False
    if result.returncode != 0:
        return f"status {result.returncode}: {result.stderr.decode()}", True
    for path, content in zip(made, expected):
        if path.read_bytes() != content:
            return f"{path.name} differs", True
    return None, True


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--veldmark", required=True)
    parser.add_argument("--extract", required=True)
    parser.add_argument("--count", type=int, default=40)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    veldmark, extract = (str(Path(p).resolve()) for p in (options.veldmark, options.extract))
    rng = random.Random(options.seed)
    failed = with_cells = 0
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        (folder / "out").mkdir()
        write_grid(folder / file_name(1), rng, -999)
        for number in range(2, 11):
            os.link(folder / file_name(1), folder / file_name(number))
        write_grid(folder / DROUGHT_FILE, rng, -9999)
        for _ in range(options.count):
            box = Box(rng)
            fault, cells = compare(box, veldmark, extract, folder)
            with_cells += cells
            if fault:
                failed += 1
                print(f"{box}: {fault}")
    print(f"{options.count - failed} boxes the same, {with_cells} of them with cells; {failed} failed")
    return 1 if failed or with_cells < options.count // 2 else 0


if __name__ == "__main__":
    sys.exit(main())
