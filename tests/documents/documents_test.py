"""Compares what the documents show with what the programs do on the real sample.

    documents_test.py PROGRAM_FOLDER

PROGRAM_FOLDER holds veldmark and series_to_grid. A page that loses an example fails: the
number of examples of each page stands in EXAMPLE_COUNTS.
"""

import gzip
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from examples import examples_of_manual, examples_of_markdown, rows_of_tables

TOP = Path(__file__).resolve().parents[2]
SAMPLE = TOP / "data" / "sample"
PROGRAMS = None  # the folder of the built programs

# Examples, and byte positions that are compared with them.
EXAMPLE_COUNTS = {
    "docs/grid-file.md": (3, 0),
    "docs/time-series-file.md": (4, 23),
    "docs/cell-list-file.md": (4, 11),
    "docs/variance-report-file.md": (3, 19),
    "docs/variance-test.md": (1, 0),
    "docs/before-you-trust-a-number.md": (1, 0),
    "docs/man/veldmark.1": (5, 0),
    "docs/man/veldmark-formats.5": (5, 0),
}

TMP = "cru_ts4.01.1901.2016.tmp.dat.new"
FRS = "cru_ts4.01.1901.2016.frs.dat.new"
SCPDSI = "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new"

YUKON = ("61.5", "60.0", "-138.5", "-140.0")
LINES_PER_YEAR = 12 * 360


def page(name):
    return (TOP / name).read_text(encoding="ascii" if name.endswith("Tallow") else "utf-8")


def one_line(text):
    return " ".join(text.split())


def shell(command, folder):
    environment = dict(os.environ, PATH=f"{PROGRAMS}:{os.environ['PATH']}", TERM="dumb")
    return subprocess.run(
        ["bash", "-c", command],
        cwd=folder,
        env=environment,
        capture_output=True,
        text=True,
        check=False,
    )


def expand(variable, years, folder):
    name = TMP.replace("tmp", variable)
    series = SAMPLE / f"cru_ts4.01_{variable}_1901_2016.csv.gz"
    command = f"gzip -dc '{series}' | series_to_grid --years {years} {name}"
    result = shell(f"set -o pipefail; {command}", folder)
    assert result.returncode == 0, result.stderr


def extract(folder, menu, box, years, cutoff=None):
    """One search of all cells of `box` (top, bottom, right, left). Result: the screen."""
    test = ["F"] if cutoff is None else ["T", cutoff]
    answers = ["", "", menu, "", "", *box, "T", *years, "T", "1", "y", *test, "F"]
    result = subprocess.run(
        [PROGRAMS / "veldmark"],
        input="\n".join(answers) + "\n",
        cwd=folder,
        env=dict(os.environ, TERM="dumb"),
        capture_output=True,
        text=True,
        check=False,
    )
    assert result.returncode == 0, result.stderr
    return result.stdout


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


def write_frost_days(path):
    """The frost days of the sample until 1990, at latitudes 38.75 and 39.25."""
    fields = {}
    for row in (258, 259):
        for month in range(90 * 12):
            fields[month * 360 + row] = {}
    with gzip.open(SAMPLE / "cru_ts4.01_frs_1901_2016.csv.gz", "rt") as lines:
        next(lines)
        for line in lines:
            longitude, latitude, *values = line.split(",")
            row = int((float(latitude) + 89.75) / 0.5) + 1
            column = int((float(longitude) + 179.75) / 0.5) + 1
            if row in (258, 259):
                for month in range(90 * 12):
                    fields[month * 360 + row][column] = int(values[month])
    write_lines(path, 1990, fields)


def coordinates(cell_list):
    """Longitudes and latitudes of a cell list, each in the order of its first cell."""
    cells = [
        (float(line[1:10]), float(line[10:19]))
        for line in cell_list.read_text().splitlines()[1:]
    ]
    longitudes = list(dict.fromkeys(longitude for longitude, _ in cells))
    latitudes = list(dict.fromkeys(latitude for _, latitude in cells))
    return longitudes, latitudes, len(cells)


def degrees(text):
    return [] if text == "none" else [float(word) for word in text.split()]


class DocumentTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def check_example(self, example, folder):
        command = example.command.replace("/usr/share/veldmark/sample", str(SAMPLE))
        result = shell(command, folder)
        self.assertEqual(result.returncode, 0, f"{command}: {result.stderr}")
        # A page can't show that the last line has no line end, as after `head -c`.
        self.assertIn(example.output, (result.stdout, result.stdout + "\n"), command)
        line = result.stdout.splitlines()[0] if example.parts else ""
        end = 0
        for first, last, text in example.parts:
            self.assertEqual(first, end + 1, f"bytes {first}-{last} of {line}")
            part = line[first - 1 : last]
            self.assertEqual(part.rstrip(), text.rstrip(), f"bytes {first}-{last}")
            end = last
        self.assertEqual(end, len(line), "the positions stop before the end of the line")

    def check_page(self, name, read_examples, folder):
        examples = read_examples(page(name))
        count = len(examples), sum(len(example.parts) for example in examples)
        self.assertEqual(count, EXAMPLE_COUNTS[name], f"examples and positions of {name}")
        for example in examples:
            with self.subTest(page=name, command=example.command):
                self.check_example(example, folder)

    def make_frost_day_report(self):
        write_frost_days(self.folder / FRS)
        box = ("39.5", "38.5", "-76.5", "-78.5")
        extract(self.folder, "9", box, ("1961", "1990"), "1976")


class Pages(DocumentTest):
    def test_markdown_pages_show_what_the_demos_folder_holds(self):
        expand("tmp", "1901-1910", self.folder)
        extract(self.folder, "2", YUKON, ("1901", "1910"))
        self.make_frost_day_report()
        for name in EXAMPLE_COUNTS:
            if name.endswith(".md"):
                self.check_page(name, examples_of_markdown, self.folder)

    def test_manual_pages_show_what_their_examples_make(self):
        self.make_frost_day_report()
        for name in ("docs/man/veldmark.1", "docs/man/veldmark-formats.5"):
            self.check_page(name, examples_of_manual, self.folder)

    def test_manual_pages_have_the_programs_version(self):
        version = shell("veldmark --version", self.folder).stdout.split()[1]
        for name in ("veldmark.1", "veldmark-formats.5"):
            title = re.search(r"^\.TH .*$", page(f"docs/man/{name}"), re.MULTILINE).group()
            self.assertIn(f'"Veldmark {version}"', title)

    def test_links_lead_somewhere(self):
        for path in [TOP / "README.md", *sorted((TOP / "docs").glob("*.md"))]:
            text = path.read_text(encoding="utf-8")
            for target in re.findall(r"\]\(([^)#]+)[^)]*\)", text):
                if "://" not in one_line(target):
                    self.assertTrue((path.parent / target).exists(), f"{path}: {target}")


class CheckValue(DocumentTest):
    def test_the_readmes_number_is_in_the_demos_extract(self):
        text = one_line(page("README.md"))
        match = re.search(
            r"mean temperature of July (\d{4}) in the cell at ([\d.]+) N, ([\d.]+) W is "
            r"([\d.]+) degrees C, stored as (\d+)\. `grep [^`]+` .* it is the seventh "
            r"value of the line that begins with (\d{4})\.",
            text,
        )
        self.assertIsNotNone(match, "the README has no number to check")
        year, latitude, longitude, value, stored, line_year = match.groups()
        command = re.search(r"`(grep [^`]+demo-run[^`]+)`", page("README.md")).group(1)
        folder = self.folder / "demo-run"
        folder.mkdir()
        expand("tmp", "1901-1910", folder)
        extract(folder, "2", YUKON, ("1901", "1910"))
        shown = shell(command, self.folder).stdout.splitlines()
        self.assertEqual([-float(longitude), float(latitude)], degrees(shown[0][:19]))
        line = next(line.split() for line in shown if line.startswith(f" {line_year} "))
        self.assertEqual((year, line[7]), (line_year, stored))
        self.assertEqual(float(value) * 10, float(stored))


class Boxes(DocumentTest):
    """Boxes on a grid whose every cell has data: a cell that is not saved wasn't taken."""

    def setUp(self):
        super().setUp()
        row = "    1" * 720 + "\n"
        (self.folder / TMP).write_text(row * LINES_PER_YEAR, encoding="ascii")
        os.link(self.folder / TMP, self.folder / SCPDSI)

    def take(self, menu, box):
        """Result: longitudes and latitudes as saved, cells saved, grids defined."""
        screen = extract(self.folder, menu, box, ("1901", "1901"))
        defined = re.search(r"^ *(-?\d+) Grids Defined$", screen, re.MULTILINE).group(1)
        name = TMP if menu == "2" else SCPDSI
        return *coordinates(self.folder / f"{name}.XY"), int(defined)

    def check_table(self, menu, rows, count):
        self.assertEqual(len(rows), count)
        for *box, latitudes, longitudes, cells in rows:
            with self.subTest(menu=menu, box=box):
                taken_longitudes, taken_latitudes, saved, defined = self.take(menu, box)
                self.assertEqual(sorted(taken_latitudes), sorted(degrees(latitudes)))
                self.assertEqual(sorted(taken_longitudes), sorted(degrees(longitudes)))
                self.assertEqual((saved, defined), (int(cells), int(cells)))

    def test_the_tables_of_boxes_are_what_the_program_takes(self):
        tables = rows_of_tables(page("docs/before-you-trust-a-number.md"), "Top")
        self.assertEqual(len(tables), 2)
        self.check_table("2", tables[0], 8)
        self.check_table("11", tables[1], 5)

    def test_tallows_boxes_are_what_the_program_takes(self):
        text = one_line(page("docs/Tallow"))
        edges = r"top (-?[\d.]+), bottom (-?[\d.]+)"
        boxes = [
            (top, bottom, latitudes.replace(",", "").replace("and", ""))
            for top, bottom, latitudes in re.findall(
                edges + r" gives ((?:[\d.]+,? (?:and )?)+\d+\.[27]5)", text
            )
        ]
        match = re.search(edges + r" CRU TS: ([\d. ]+) index: ([\d. ]+) To ", text)
        self.assertIsNotNone(match)
        top, bottom, south_first, north_first = match.groups()
        self.assertEqual(len(boxes), 2)
        boxes.append((top, bottom, north_first))
        for top, bottom, latitudes in boxes:
            taken = self.take("11", (top, bottom, "0.5", "0.0"))[1]
            self.assertEqual(taken, sorted(degrees(latitudes), reverse=True), (top, bottom))
        taken = self.take("2", (match.group(1), match.group(2), "0.5", "0.0"))[1]
        self.assertEqual(taken, degrees(south_first))

    def test_tallows_widest_box_holds_all_rows(self):
        self.assertIn(
            "Keep the top at 89.5 or below and the bottom at -89.5 or above",
            one_line(page("docs/Tallow")),
        )
        self.assertEqual(len(self.take("11", ("89.5", "-89.5", "0.5", "0.0"))[1]), 360)
        self.assertNotEqual(len(self.take("11", ("90.0", "-89.5", "0.5", "0.0"))[1]), 360)


class Tallow(DocumentTest):
    def test_is_plain_text_of_72_columns(self):
        for line in page("docs/Tallow").splitlines():
            self.assertLessEqual(len(line), 72, line)
            self.assertFalse(re.search(r"^#|\*\*|`|\]\(|\t", line), line)

    def test_names_file_and_citations_as_the_program_does(self):
        text = one_line(page("docs/Tallow"))
        screen = extract_missing_drought_file(self.folder)
        self.assertIn("Tallow file", screen)
        self.assertIn(SCPDSI, screen)
        self.assertIn(SCPDSI, text)
        citations = re.search(
            r"citation for these data is:(.*?) Hit RETURN", one_line(screen)
        ).group(1)
        for citation in citations.split(" and Osborn"):
            self.assertIn(citation.strip(), text.replace("and Osborn", ""))
        self.assertEqual(len(citations.split(" and Osborn")), 2)

    def test_the_example_is_where_the_program_reads(self):
        match = re.search(
            r"July 1905 of the cell at 60\.25 N, 139\.75 W\..* \+ 60 = (\d+) "
            r"place characters (\d+) to (\d+)",
            one_line(page("docs/Tallow")),
        )
        self.assertIsNotNone(match)
        line, first, last = map(int, match.groups())
        self.assertEqual((first % 5, last - first), (1, 4))
        # Every wanted line has to be there; the missing code would hide the cell.
        fields = {
            4 * LINES_PER_YEAR + month * 360 + row: {81: 0}
            for month in range(12)
            for row in (59, 60)
        }
        fields[line] = {(first - 1) // 5 + 1: -432}
        write_lines(self.folder / SCPDSI, 1905, fields)
        extract(self.folder, "11", ("60.25", "60.25", "-139.5", "-140.0"), ("1905", "1905"))
        series = (self.folder / f"{SCPDSI}.TSF").read_text().splitlines()
        self.assertEqual(len(series), 4)
        self.assertEqual(degrees(series[2][:19]), [-139.75, 60.25])
        self.assertEqual(series[3].split(), ["1905", *["0"] * 6, "-432", *["0"] * 5])


def extract_missing_drought_file(folder):
    result = shell("printf '\\n\\n11\\n\\n\\n0\\n' | veldmark", folder)
    assert result.returncode == 0, result.stderr
    return result.stdout


if __name__ == "__main__":
    PROGRAMS = Path(sys.argv.pop(1)).resolve()
    unittest.main()
