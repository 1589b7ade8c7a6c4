"""Tests ./demo and scripts/demo_session as they stand, with the built programs.

    demo_test.py PROGRAM_FOLDER
"""

import gzip
import shlex
import sys
import unittest
from pathlib import Path

from support import TOP, ScriptTest

PROGRAMS = None  # the folder of the built programs

PUBLISHED = "cru_ts4.01.1901.2016.tmp.dat"
CONDENSED = PUBLISHED + ".new"
SERIES = CONDENSED + ".TSF"
CELLS = CONDENSED + ".XY"
OUTPUTS = ["answers", CONDENSED, SERIES, CELLS]


def sample_series():
    """{(longitude, latitude): the values of 1901 to 1910, as in the extract}"""
    name = TOP / "data" / "sample" / "cru_ts4.01_tmp_1901_2016.csv.gz"
    with gzip.open(name, "rt") as lines:
        next(lines)
        rows = [line.split(",") for line in lines]
    return {(float(row[0]), float(row[1])): [int(value) for value in row[2:122]]
            for row in rows}


def extracted_series(path):
    """The same of a time-series file, which must have the heading of mean temperature."""
    lines = path.read_text().splitlines()
    found = {}
    # A line for each cell, and then one for each year.
    for line in lines:
        if "." in line[:19] and "tmp." in line:
            values = found[float(line[:10]), float(line[10:19])] = []
        elif found:
            values += [int(line[start:start + 6]) for start in range(6, 78, 6)]
    return found


class DemoSession(ScriptTest):
    def make(self, **environment):
        return self.run_script(TOP / "scripts" / "demo_session", PROGRAMS, **environment)

    def names(self):
        return sorted(path.name for path in self.folder.iterdir())

    def test_leaves_the_samples_mean_temperature_and_nothing_else(self):
        result = self.make()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.names(), sorted(OUTPUTS))
        series = extracted_series(self.folder / SERIES)
        self.assertEqual(len(series), 71)
        self.assertEqual(series, sample_series())
        self.assertEqual(len((self.folder / CELLS).read_text().splitlines()), 1 + 71)

    def test_shows_the_session_with_its_answers(self):
        result = self.make()
        answers = (self.folder / "answers").read_text().splitlines()
        shown = [line for line in result.stdout.splitlines() if "==> " in line]
        self.assertEqual([line.split("==> ")[1] for line in shown],
                         [answer or "<RETURN>" for answer in answers if answer])
        self.assertEqual(result.stdout.splitlines().count("<RETURN>"), answers.count(""))

    def test_leaves_its_own_files_as_they_are(self):
        self.make()
        before = [self.identity(name) for name in OUTPUTS]
        result = self.make()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual([self.identity(name) for name in OUTPUTS], before)

    def identity(self, name):
        status = (self.folder / name).stat()
        return status.st_ino, status.st_mtime_ns, status.st_ctime_ns

    def test_refuses_a_condensed_file_that_is_not_its_own_and_touches_nothing(self):
        (self.folder / CONDENSED).write_text("real\n")
        (self.folder / SERIES).write_text("a day's work\n")
        result = self.make()
        self.assertEqual(result.returncode, 1)
        for name in (CONDENSED, SERIES):
            self.assertIn(f"Not the demo's, and left as it is: {self.folder / name}\n",
                          result.stderr)
        self.assertEqual((self.folder / CONDENSED).read_text(), "real\n")
        self.assertEqual((self.folder / SERIES).read_text(), "a day's work\n")
        self.assertEqual(self.names(), sorted([CONDENSED, SERIES]))

    def test_leaves_a_published_file_alone(self):
        (self.folder / PUBLISHED).write_text("real\n")
        result = self.make()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual((self.folder / PUBLISHED).read_text(), "real\n")
        self.assertEqual(self.names(), sorted([*OUTPUTS, PUBLISHED]))

    def test_does_not_write_through_a_link(self):
        (self.folder / "elsewhere").mkdir()
        (self.folder / CONDENSED).symlink_to("elsewhere/missing")
        self.assertEqual(self.make().returncode, 1)
        self.assertEqual(list((self.folder / "elsewhere").iterdir()), [])

    def test_leaves_nothing_when_the_session_fails(self):
        programs = self.folder / "programs"
        for name in ("series_to_grid", "tersify"):
            self.stand_in(programs / name, f"exec {shlex.quote(str(PROGRAMS / name))} \"$@\"\n")
        self.stand_in(programs / "veldmark", "exit 3\n")
        result = self.run_script(TOP / "scripts" / "demo_session", programs)
        self.assertEqual(result.returncode, 3)
        self.assertEqual(self.names(), ["programs"])


class Demo(ScriptTest):
    """./demo in a copy of the project that is built already."""

    def setUp(self):
        super().setUp()
        self.top = self.folder / "a $checkout"
        self.copy("demo", "scripts", "docs/recipes", "data/sample", to=self.top)
        for name in ("veldmark", "tersify", "series_to_grid", "veldmark-extract"):
            (self.top / "build").mkdir(exist_ok=True)
            (self.top / "build" / name).symlink_to(PROGRAMS / name)
        if not (PROGRAMS / "veldmark-extract").exists():  # its libraries are not here
            (self.top / "build" / "veldmark-extract").unlink()
            self.stand_in(self.top / "build" / "veldmark-extract", "echo extracted\n")
        for name in ("cmake", "ninja", "c++"):
            self.stand_in(self.folder / "bin" / name, "exit 0\n")
        self.stand_in(self.top / "scripts" / "setup", 'echo "set up: $*"\n')
        self.environment["PATH"] = f"{self.folder / 'bin'}:{self.environment['PATH']}"

    def test_shows_the_way_to_a_picture_and_can_be_run_again(self):
        for _ in range(2):
            result = self.run_script("bash", "demo", folder=self.top)
            self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(extracted_series(self.top / "demo-run" / SERIES), sample_series())
        self.assertTrue((self.top / "demo-run" / f"{CONDENSED}.map.svg").exists())

    def test_ends_with_an_extract_of_the_same_values(self):
        result = self.run_script("bash", "demo", folder=self.top)
        self.assertIn("set up: demo extract\n", result.stdout)
        shown = result.stdout.split("== The same values without questions")[1].splitlines()
        if not (PROGRAMS / "veldmark-extract").exists():
            self.assertEqual(shown[1], "extracted")
            return
        series = sample_series()[-139.75, 60.25]
        years = [[f"{value / 10:.1f}" for value in series[12 * year : 12 * year + 12]]
                 for year in range(5)]
        self.assertEqual(shown[2:8], [*(",".join(["60.25,-139.75", str(1901 + year), *values])
                                        for year, values in enumerate(years)), ""])

    def test_its_last_words_can_be_typed(self):
        result = self.run_script("bash", "demo", folder=self.top)
        words = result.stdout.split("== Now run it yourself")[1].splitlines()
        commands = [line for line in words if line.startswith("  ")]
        self.assertEqual(len(commands), 2)
        tried = self.run_script("bash", "-c", "\n".join([*commands, "ls *.svg"]), TERM="dumb")
        self.assertIn("VELDMARK", tried.stdout.upper())
        self.assertIn(f"{CONDENSED}.map.svg", tried.stdout)

    def test_stays_in_its_own_folder_with_cdpath_exported(self):
        other = self.folder / "other"
        for name in ("demo-run", "scripts", self.top.name):
            (other / name).mkdir(parents=True)
        result = self.run_script("bash", f"{self.top.name}/demo", CDPATH=str(other))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(list((other / "demo-run").iterdir()), [])
        self.assertTrue((self.top / "demo-run" / SERIES).exists())

    def test_keeps_a_real_file_and_says_so(self):
        folder = self.top / "demo-run"
        folder.mkdir()
        (folder / CONDENSED).write_text("real\n")
        (folder / PUBLISHED).write_text("real\n")
        result = self.run_script("bash", "demo", folder=self.top)
        self.assertEqual(result.returncode, 1)
        self.assertIn(f"Not the demo's, and left as it is: {folder / CONDENSED}\n",
                      result.stderr)
        for name in (CONDENSED, PUBLISHED):
            self.assertEqual((folder / name).read_text(), "real\n")


if __name__ == "__main__":
    PROGRAMS = Path(sys.argv.pop(1)).resolve()
    unittest.main()
