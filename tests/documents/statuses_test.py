"""Exit statuses, units and messages of the manual pages."""

import re

from examples import entries_of_manual
from support import (
    PAUSE,
    TMP,
    TOP,
    DocumentTest,
    one_line,
    page,
    run,
    search_answers,
    write_grid,
)

BOX = ("10.5", "10.0", "20.5", "20.0")
YEAR = ("1901", "1901")
SEARCH = [PAUSE, PAUSE, *search_answers("2", BOX, YEAR, cutoff="1901"), "F"]


def one_year(folder):
    write_grid(folder / TMP, lambda row: "    1" * 720)


def a_value_that_is_none(folder):
    write_grid(folder / TMP, lambda row: "    x" * 720)


def no_lines_to_skip(folder):
    """Ends where the first wanted line should begin."""
    (folder / TMP).write_text("\n" * 200, encoding="ascii")


def a_short_file(folder):
    """Ends among the lines before the first wanted one."""
    (folder / TMP).write_text("\n" * 100, encoding="ascii")


class VeldmarkStatus(DocumentTest):
    MANUAL = "docs/man/veldmark.1"

    # status, words of the page, command, answers, what makes the grid file
    SCENES = (
        (0, "ended by an answer", [], [PAUSE, PAUSE, "0"], one_year),
        (0, "ended by an answer", [], SEARCH, one_year),
        (0, "a value of the box that is not a number", [], SEARCH, a_value_that_is_none),
        (0, "an end of the file exactly where a row of the box is to be read", [], SEARCH,
         no_lines_to_skip),
        (2, "Wrong command line", ["--nonsense"], None, one_year),
        (255, "an answer that is not a number", [], [PAUSE, PAUSE, "x"], one_year),
        (255, "the end of the input", [], [PAUSE], one_year),
        (255, "ends in the lines that are skipped before a row of the box", [], SEARCH,
         a_short_file),
    )

    def test_is_what_the_page_says(self):
        told = dict(entries_of_manual(page(self.MANUAL), "EXIT STATUS"))
        self.assertEqual({int(status) for status in told}, {scene[0] for scene in self.SCENES})
        for status, words, command, answers, make in self.SCENES:
            with self.subTest(status=status, words=words):
                self.assertIn(words, told[str(status)])
                make(self.folder)
                result = run(["veldmark", *command], self.folder, answers)
                self.assertEqual(result.returncode, status, result.stderr)

    def test_after_a_fault_in_the_grid_file_the_outputs_are_empty(self):
        self.assertIn("the output files are empty", one_line(page(self.MANUAL)))
        for make in (a_value_that_is_none, no_lines_to_skip, a_short_file):
            make(self.folder)
            result = run(["veldmark"], self.folder, SEARCH)
            self.assertNotIn("TERMINATING NORMALLY", result.stdout)
            self.assertEqual((self.folder / f"{TMP}.TSF").stat().st_size, 0)
            self.assertEqual((self.folder / f"{TMP}.XY").stat().st_size, 0)

    def test_of_the_other_pages_is_the_manual_pages(self):
        text = one_line(page("docs/before-you-trust-a-number.md"))
        past, early = self.find(
            r'"Attempt to read past end of file" and status (\d+)\. '
            r'.* Prematurely" and status (\d+)',
            text,
            "a year that isn't there",
        )
        one_year(self.folder)
        for box, words, status in (
            (BOX, "Attempt to read past end of file", past),
            (("10.5", "-90.0", "20.5", "20.0"), "End Of File Reached Prematurely", early),
        ):
            answers = [PAUSE, PAUSE, *search_answers("2", box, ("1901", "1902")), "F"]
            result = run(["veldmark"], self.folder, answers)
            self.assertIn(words, result.stdout + result.stderr)
            self.assertEqual(result.returncode, int(status))


class Units(DocumentTest):
    """What UNIT means in the last line of a report."""

    def ending(self, name):
        """The unit of a run in which a folder stands in the place of `name`."""
        one_year(self.folder)
        if name:
            (self.folder / name).mkdir()
        answers = SEARCH if name else [PAUSE]
        result = run(["veldmark"], self.folder, answers)
        self.assertEqual(result.returncode, 255)
        if name:
            (self.folder / name).rmdir()
        return self.find(r"\(UNIT=(\d+),", result.stderr, "the unit")

    def test_are_those_of_the_manual_page(self):
        told = dict(
            reversed(line.split("\t"))
            for line in page("docs/man/veldmark.1").splitlines()
            if re.match(r"\d+\t", line)
        )
        self.assertEqual(len(told), 5)
        self.assertEqual(told["the console"], self.ending(None))
        for ending in (".TSF", ".XY", ".ftst"):
            self.assertEqual(told[f"NAME{ending}"], self.ending(TMP + ending))
        (self.folder / TMP).unlink()
        (self.folder / TMP).mkdir()
        result = run(["veldmark"], self.folder, SEARCH)
        self.assertIn(f"(UNIT={told['the grid file']},", result.stderr)


# Ends Tersify as soon as it has begun. It may be ready before the signal comes: then again.
INTERRUPTED = """
for i in $(seq 60); do cat good.dat; done > large.dat
for i in $(seq 10); do
  tersify large.dat &
  while [ ! -e large.dat.new.part ] && [ ! -e large.dat.new ]; do :; done
  kill -TERM $!
  wait $! || exit $?
  rm large.dat.new
done
"""

# The same for series_to_grid, which needs no large input.
SERIES = """
{ printf lon,lat; printf ,1901-%02d $(seq 12); echo
  echo 5.25,52.25$(printf ,%s $(seq 12)); } > series
"""
INTERRUPTED_SERIES = SERIES + """
for i in $(seq 10); do
  series_to_grid --years 1901-1930 grid series &
  while [ ! -e grid.part ] && [ ! -e grid ]; do :; done
  kill -TERM $!
  wait $! || exit $?
  rm grid
done
"""


class Companions(DocumentTest):
    # page: (status, words of its page, command)
    SCENES = {
        "docs/man/tersify.1": (
            ("0", "Success", "tersify good.dat"),
            ("1", "could not be condensed", "tersify missing.dat"),
            ("1", "not complete", "tersify --check good.dat.new"),
            ("2", "Wrong command line", "tersify --nonsense"),
            ("2", "no answer to the question for the list file", "tersify < /dev/null"),
            ("128 + n", "SIGTERM", INTERRUPTED),
        ),
        "docs/man/series_to_grid.1": (
            ("0", "is complete", SERIES + "series_to_grid --years 1901-1901 grid series"),
            ("1", "is invalid", "series_to_grid grid missing"),
            ("2", "Wrong command line", "series_to_grid --nonsense"),
            ("128 + n", "SIGTERM", INTERRUPTED_SERIES),
        ),
    }

    def test_status_is_what_the_page_says(self):
        row = " ".join(["-999"] * 720) + "\n"
        (self.folder / "good.dat").write_text(row * 360, encoding="ascii")
        for name, scenes in self.SCENES.items():
            told = dict(entries_of_manual(page(name), "EXIT STATUS"))
            self.assertEqual(set(told), {status for status, _, _ in scenes}, name)
            for status, words, command in scenes:
                with self.subTest(page=name, command=command):
                    self.assertIn(words, told[status])
                    result = run(["bash", "-c", command], self.folder)
                    ended = 128 + 15 if "+" in status else int(status)
                    self.assertEqual(result.returncode, ended, result.stderr)

    def test_every_companion_has_a_page_with_statuses(self):
        for path in sorted((TOP / "docs" / "man").glob("*.1")):
            with self.subTest(page=path.name):
                entries = entries_of_manual(path.read_text(encoding="utf-8"), "EXIT STATUS")
                self.assertGreaterEqual(len(entries), 3)
