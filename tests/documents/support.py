"""What the tests of the documents share: pages, programs, grids and sessions."""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from demo_folder import TOP, DemoFolders, program_environment

SAMPLE = TOP / "data" / "sample"
TMP = "cru_ts4.01.1901.2016.tmp.dat.new"
FRS = "cru_ts4.01.1901.2016.frs.dat.new"
SCPDSI = "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new"
LINES_PER_YEAR = 12 * 360

PAUSE = ""


class Built:
    """The built programs; set once, by the test's command line."""

    folder = None
    demo = None

    @classmethod
    def use(cls, folder):
        cls.folder = Path(folder).resolve()
        cls.demo = DemoFolders(cls.folder)

    @classmethod
    def has(cls, program):
        """Was this program built? One of them needs libraries that may be missing."""
        return (cls.folder / program).exists()


def page(name):
    return (TOP / name).read_text(encoding="utf-8")


def one_line(text):
    return " ".join(text.split())


def degrees(text):
    return [] if text == "none" else [float(word) for word in text.split()]


def run(arguments, folder, answers=None):
    """Runs a built program with its answers typed ahead. Returns the finished process."""
    environment = program_environment(Built.folder)
    typed = "" if answers is None else "".join(f"{answer}\n" for answer in answers)
    return subprocess.run(
        arguments,
        input=typed,
        cwd=folder,
        env=environment,
        capture_output=True,
        text=True,
        check=False,
        timeout=120,
    )


def search_answers(menu, box, years, cutoff=None):
    """One search of all cells of `box` (top, bottom, right, left), up to its summary."""
    test = ["F"] if cutoff is None else ["T", cutoff]
    return [menu, PAUSE, PAUSE, *box, "T", *years, "T", "1", "y", *test]


def extract(folder, menu, box, years, cutoff=None):
    """A run of one search. Returns the screen."""
    answers = [PAUSE, PAUSE, *search_answers(menu, box, years, cutoff), "F"]
    result = run(["veldmark"], folder, answers)
    if result.returncode != 0:
        raise AssertionError(f"veldmark: {result.stderr}")
    return result.stdout


def write_grid(path, row_text):
    """A grid file of 1901; `row_text(row)` makes a row of every month."""
    month = "".join(row_text(row) + "\n" for row in range(1, 361))
    path.write_text(month * 12, encoding="ascii")


def column_numbers(row):
    """A row whose values tell their column, and which of 30 rows it is."""
    return "".join(f"{column + 1000 * (row % 30):5d}" for column in range(1, 721))


def write_lines(path, last_year, fields):
    """A grid file with `fields` {line: {column: value}}; all other lines are empty."""
    with path.open("w", encoding="ascii") as file:
        for line in range(1, (last_year - 1900) * LINES_PER_YEAR + 1):
            if line in fields:
                row = [" -999"] * 720
                for column, value in fields[line].items():
                    row[column - 1] = f"{value:5d}"
                file.write("".join(row))
            file.write("\n")


def grids_defined(screen):
    return int(re.search(r"^ *(-?\d+) Grids Defined$", screen, re.MULTILINE).group(1))


def saved_cells(cell_list):
    """(longitude, latitude) of a cell list's cells, in their order."""
    lines = cell_list.read_text(encoding="ascii").splitlines()[1:]
    return [(float(line[1:10]), float(line[10:19])) for line in lines]


class DocumentTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def find(self, pattern, text, what):
        """The groups of the one place of `text` that `pattern` matches."""
        found = re.findall(pattern, text)
        self.assertEqual(len(found), 1, f"{what}: {pattern}")
        return found[0]
