"""Numbers that the pages quote: values to check, units, counts of cells."""

import gzip
import os
import re
import sys

from examples import rows_of_tables
from pages import PAGES
from support import (
    PAUSE,
    SAMPLE,
    SCPDSI,
    TMP,
    TOP,
    Built,
    DocumentTest,
    extract,
    one_line,
    page,
    run,
    saved_cells,
    write_grid,
)

sys.path.insert(0, str(TOP / "docs" / "recipes"))
from read_tsf import DATA_SETS  # noqa: E402

VARIABLES = "pre tmp dtr tmn tmx vap pet cld frs wet".split()
BEFORE_YOU_TRUST = "docs/before-you-trust-a-number.md"
WORDS = {"tenths": 10, "hundredths": 100}


def sample_series(variable):
    """{(longitude, latitude) as written: stored values from January 1901 on}"""
    with gzip.open(SAMPLE / f"cru_ts4.01_{variable}_1901_2016.csv.gz", "rt") as lines:
        next(lines)
        cells = [line.strip().split(",") for line in lines]
    return {(cell[0], cell[1]): [int(value) for value in cell[2:]] for cell in cells}


class CheckValue(DocumentTest):
    PLACE = r"60\.25 N, 139\.75 W"
    # The two ways in which the pages say it: (stored value, degrees).
    STORED_FIRST = r"stored as (-?\d+), that is (-?[\d.]+) degrees C"
    DEGREES_FIRST = r"is (-?[\d.]+) degrees C, stored as (-?\d+)"

    def true_value(self):
        return sample_series("tmp")["-139.75", "60.25"][4 * 12 + 6]

    def test_is_the_producers_on_every_page(self):
        stored = str(self.true_value())
        degrees = f"{self.true_value() / 10:.1f}"
        pages = 0
        for name in PAGES:
            text = one_line(page(name))
            told = re.findall(self.STORED_FIRST, text)
            told += [pair[::-1] for pair in re.findall(self.DEGREES_FIRST, text)]
            with self.subTest(page=name):
                self.assertEqual(len(told), len(re.findall(r"stored as -?\d", text)))
                self.assertEqual(set(told) - {(stored, degrees)}, set())
                if told:
                    self.assertRegex(text, self.PLACE)
                    pages += 1
        self.assertGreaterEqual(pages, 3)

    def test_examples_of_units_are_worked_out(self):
        degrees, rain, days = self.find(
            r"So 50 is (\S+) degrees C, 7 mm of rain is (\d+), and 31 days are (\d+)",
            one_line(page(BEFORE_YOU_TRUST)),
            "the examples",
        )
        self.assertEqual((degrees, rain, days), ("5.0", "70", "3100"))

    def test_is_the_seventh_value_of_the_last_line(self):
        for name in ("README.md", BEFORE_YOU_TRUST):
            text = page(name)
            self.assertIn("seventh value after the year in the last line", one_line(text))
            lines = self.find(
                r"(?m)^    \$ grep -A5 -e '-139\.750   60\.250' .*\n((?:    .*\n)+)",
                text,
                "the lines of the cell",
            ).splitlines()
            last = lines[-1].split()
            self.assertEqual((last[0], int(last[7])), ("1905", self.true_value()))

    def test_is_the_ordinary_july_of_the_examples(self):
        value = int(sample_series("tmp")["-48.25", "-25.25"][4 * 12 + 6])
        text = one_line(page("docs/time-series-file.md"))
        self.assertIn(f"July 1905 is {value} tenths, {value / 10:.1f} degrees C", text)


class Counts(DocumentTest):
    def test_of_the_demos_cells_are_its_extracts(self):
        Built.demo.copy_to(self.folder)
        count = len(saved_cells(self.folder / "demo-run" / f"{TMP}.XY"))
        for name in ("README.md", "docs/time-series-file.md", "docs/cell-list-file.md"):
            with self.subTest(page=name):
                self.assertEqual(re.findall(r"\b(\d+) cells\b", page(name)), [str(count)])

    def test_of_the_samples_cells_are_its_files(self):
        (rows,) = rows_of_tables(page("data/sample/README.md"), "File")
        files = sorted(path.name for path in SAMPLE.glob("*.csv.gz"))
        self.assertEqual(sorted(row[0].strip("`") for row in rows), files)
        for file, cells, _, _ in rows:
            variable = file.strip("`").split("_")[2]
            self.assertEqual(int(cells), len(sample_series(variable)), file)


class Units(DocumentTest):
    def factors(self):
        """{variable: the number to divide by} of the page's table."""
        (rows,) = rows_of_tables(page(BEFORE_YOU_TRUST), "Variable")
        return {
            name.strip("`"): int(divisor)
            for names, divisor, _ in rows
            for name in names.split()
        }

    def test_of_each_variable_are_in_the_table(self):
        self.assertEqual(set(self.factors()), {*VARIABLES, "scPDSI"})

    def test_are_those_that_the_menu_names(self):
        screen = run(["veldmark"], self.folder, [PAUSE, PAUSE, "0"]).stdout
        factors = self.factors()
        line = r"(?m)^ +\[ ?\d+\] .*? (\w{3}) +\S+ ?\*(\d+) +1901-2016$"
        named = re.findall(line, screen)
        self.assertEqual({name for name, _ in named}, {*VARIABLES} - {"pre", "pet", "wet"})
        for name, factor in named:
            self.assertEqual(factors[name], int(factor), name)

    def test_are_those_of_the_sample(self):
        (rows,) = rows_of_tables(page("data/sample/README.md"), "File")
        for file, _, _, stored in rows:
            variable = file.strip("`").split("_")[2]
            self.assertEqual(self.factors()[variable], WORDS[stored.split()[0]], file)

    def test_are_those_of_the_recipes(self):
        (rows,) = rows_of_tables(page(BEFORE_YOU_TRUST), "Variable")
        self.assertEqual(len(DATA_SETS), 11)
        for data_set, (_, unit, factor, _) in DATA_SETS.items():
            name = "scPDSI" if data_set == "scPDSI.dat." else data_set[-4:-1]
            name = "pre" if name == "ppt" else name
            self.assertEqual(self.factors()[name], factor, name)
            (told,) = (row[2] for row in rows if name in re.findall(r"\w+", row[0]))
            self.assertIn(unit.replace("°C", "degrees C"), told.replace("*", ""), name)

    def test_of_days_fit_into_a_month(self):
        for variable in ("frs", "wet"):
            most = max(max(values) for values in sample_series(variable).values())
            self.assertLessEqual(most / self.factors()[variable], 31)
            self.assertGreater(most / self.factors()[variable], 28)

    def test_of_the_manual_page_are_the_tables(self):
        source = page("docs/man/veldmark-formats.5")
        text = one_line(re.sub(r"(?m)^\.(?:RB|BR)? ?|[\"()]|\\", "", source))
        words = r"The stored integers are tenths:(.*?); or hundredths:(.*?)\. The missing"
        tenths, hundredths = self.find(words, text, "the units")
        factors = self.factors()
        for variable in VARIABLES:
            names = tenths if factors[variable] == 10 else hundredths
            self.assertIn(variable, names.replace(",", " ").split())
        self.assertIn("drought index", hundredths)


class Titles(DocumentTest):
    def test_are_what_each_variable_writes(self):
        (rows,) = rows_of_tables(page("docs/time-series-file.md"), "Menu")
        self.assertEqual([row[0] for row in rows], [str(n) for n in range(1, 12)])
        write_grid(self.folder / TMP, lambda row: "    1" * 720)
        names = [TMP.replace("tmp", variable) for variable in VARIABLES] + [SCPDSI]
        for number, data_set, title, format_text in rows:
            name = names[int(number) - 1]
            if name != TMP:
                os.link(self.folder / TMP, self.folder / name)
            extract(self.folder, number, ("10.5", "10.0", "20.5", "20.0"), ("1901", "1901"))
            heading = (self.folder / f"{name}.TSF").read_text().splitlines()[0]
            shown = [heading[23:36], heading[36:63], heading[63:128]]
            told = [text.strip("`") for text in (data_set, title, format_text)]
            self.assertEqual([text.rstrip() for text in shown], told, number)

    def test_name_the_unit_for_as_many_as_the_page_says(self):
        (rows,) = rows_of_tables(page("docs/time-series-file.md"), "Menu")
        scaled = [row for row in rows if "*10" in row[2]]
        words = {7: "seven"}
        text = one_line(page("docs/time-series-file.md"))
        self.assertIn(f"for {words[len(scaled)]} of the eleven only", text)


class Building(DocumentTest):
    def test_by_hand_is_as_the_demo_builds(self):
        preset, build = self.find(
            r"(?m)^    cmake --preset (\w+)\n    (cmake --build .*)$", page("README.md"), "it"
        )
        demo = page("demo")
        self.assertRegex(demo, rf"(?m)^scripts/configure {preset}$")
        # By hand it needs no libraries; the demo sets up those of the last program.
        self.assertRegex(demo, rf"(?m)^{build} veldmark-extract$")
        generator = self.find(r'"generator": "(\w+)"', page("CMakePresets.json"), "generator")
        self.assertIn(generator.lower(), page("README.md"))


class Citation(DocumentTest):
    def test_has_the_programs_identifiers(self):
        for menu, count in (("2", 1), ("11", 1)):
            answers = [PAUSE, PAUSE, menu, PAUSE, PAUSE, "0"]
            screen = run(["veldmark"], self.folder, answers).stdout
            (first, *_) = re.findall(r"doi:(\S+)", screen)
            self.assertEqual(page("CITATION.cff").count(f"doi: {first}\n"), count)
        doi = re.search(r"doi:(\S+)", page("README.md")).group(1).rstrip(".,:")
        self.assertIn(f"doi: {doi}\n", page("CITATION.cff"))
        self.assertIn(doi, page("data/sample/README.md"))

    def test_is_where_the_readme_says(self):
        self.assertTrue((TOP / "CITATION.cff").is_file())
        self.assertIn("(CITATION.cff)", page("README.md"))
