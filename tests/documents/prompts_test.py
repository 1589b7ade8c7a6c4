"""The prompts and their answers, as veldmark(1) tells them, and the README's session."""

import re
import subprocess

from demo_folder import program_environment
from examples import entries_of_manual, examples_of_markdown
from support import (
    PAUSE,
    SAMPLE,
    TMP,
    Built,
    DocumentTest,
    extract,
    one_line,
    page,
    run,
    saved_cells,
    search_answers,
    write_grid,
)

MANUAL = "docs/man/veldmark.1"
BEFORE_YOU_TRUST = "docs/before-you-trust-a-number.md"
BOX = ("10.5", "10.0", "20.5", "20.0")
YEAR = ("1901", "1901")
NUMBERS = {"two": 2, "four": 4, "eight": 8}


def manual_entry(prompt):
    """What veldmark(1) says of a prompt; on one line."""
    entries = dict(entries_of_manual(page(MANUAL), "PROMPTS"))
    return next(text for label, text in entries.items() if prompt in label)


class PromptTest(DocumentTest):
    def setUp(self):
        super().setUp()
        write_grid(self.folder / TMP, lambda row: "    1" * 720)

    def play(self, *answers):
        return run(["veldmark"], self.folder, [PAUSE, PAUSE, *answers])

    def whole_screen(self):
        answers = [*search_answers("2", BOX, YEAR, cutoff="1901"), "T", "F"]
        result = self.play(*answers, PAUSE, *["2", PAUSE, "1", "y", "F"], "F")
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout


class Prompts(PromptTest):
    def test_of_the_manual_page_are_shown_in_their_order(self):
        screen = self.whole_screen()
        labels = [label for label, _ in entries_of_manual(page(MANUAL), "PROMPTS")]
        self.assertEqual(len(labels), 9)
        places = [screen.find(label.split(", ")[0].rstrip(",")) for label in labels]
        self.assertNotIn(-1, places, labels)
        self.assertEqual(places, sorted(places))

    def test_widths_are_as_told(self):
        told = {
            prompt: NUMBERS[self.find(r"(\w+) characters", manual_entry(prompt), prompt)]
            for prompt in ("Enter a value from 0", "Enter Max Latitude", "FYOD")
        }
        text = one_line(page(BEFORE_YOU_TRUST))
        words = self.find(
            r"(\w+) at the menu, (\w+) of the first and the last year, (\w+) of a coordinate",
            text,
            "widths",
        )
        menu, year, coordinate = (NUMBERS[word] for word in words)
        self.assertEqual(list(told.values()), [menu, coordinate, year])
        # The last character that is read decides, the one after it does not.
        number = "0" * (menu - 1) + "2" + "9"
        top = "0" * (coordinate - 4) + "10." + "5" + "9"
        first = "1901"[:year].rjust(year, "0") + "7"
        answers = search_answers(number, (top, *BOX[1:]), (first, "1901"))
        screen = self.play(*answers, "F").stdout
        self.assertIn("/   10.50:---", screen)
        self.assertIn("yrmin=  1901 yrmax=  1901", screen)
        self.assertIn("1 Grids Selected and Saved", screen)

    def test_years_are_as_told(self):
        years = self.find(r"(\d{4}) to (\d{4})", manual_entry("FYOD"), MANUAL)
        first, last = map(int, years)
        for year, taken in ((first - 1, 0), (first, 1), (last, 1), (last + 1, 0)):
            with self.subTest(year=year):
                screen = self.play("2", PAUSE, PAUSE, *BOX, "T", str(year)).stdout
                self.assertEqual(screen.count("LYOD ==>"), taken)
                self.assertEqual(screen.count("WARNING"), 1 - taken)


class Session(DocumentTest):
    def test_of_the_readme_is_the_demos(self):
        lines = examples_of_markdown(page("README.md"))[1][0].splitlines()
        self.assertEqual(len(lines), 12)
        Built.demo.copy_to(self.folder)
        command = ["../scripts/play_session", "../build/veldmark", "answers"]
        screen = run(command, self.folder / "demo-run").stdout.splitlines()
        places = [screen.index(line) for line in lines]
        self.assertEqual(places, sorted(places))


class Answers(PromptTest):
    def test_return_alone_at_the_menu_ends_the_program(self):
        self.assertIn("RETURN alone", manual_entry("Enter a value from 0"))
        result = self.play("")
        self.assertEqual(result.returncode, 0)
        self.assertTrue(result.stdout.endswith("Program Terminating\n"), result.stdout)

    def test_yes_starts_the_region_again(self):
        self.assertIn("yes too", manual_entry("Is this ok?"))
        screen = self.play("2", PAUSE, PAUSE, *BOX, "yes").stdout
        self.assertEqual(screen.count("Select the Geographical Range"), 2)

    def test_a_blank_factor_shows_nothing(self):
        self.assertIn("shows nothing", one_line(page(BEFORE_YOU_TRUST)))
        before = self.play("2", PAUSE, PAUSE, *BOX, "T", *YEAR, "T").stdout
        after = self.play("2", PAUSE, PAUSE, *BOX, "T", *YEAR, "T", "", "").stdout
        self.assertEqual(before, after)

    def test_a_year_with_a_decimal_point_is_the_year(self):
        self.assertIn("`1901.0` is the year 1901", one_line(page(BEFORE_YOU_TRUST)))
        screen = extract(self.folder, "2", BOX, ("1901.0", "1901.0"))
        self.assertIn("yrmin=  1901 yrmax=  1901", screen)

    def test_a_number_beyond_the_menu_leaves_hidden_files(self):
        self.assertIn("named `.TSF` and `.XY`", one_line(page(BEFORE_YOU_TRUST)))
        result = self.play("12", PAUSE, *BOX, "T", *YEAR, "T")
        self.assertEqual(result.returncode, 255)
        self.assertEqual((self.folder / ".TSF").stat().st_size, 0)
        self.assertEqual((self.folder / ".XY").stat().st_size, 0)


class Searches(PromptTest):
    def test_choosing_a_variable_empties_its_files(self):
        for name in ("README.md", BEFORE_YOU_TRUST, MANUAL):
            text = one_line(re.sub(r"[*`]|^\.B ", "", page(name), flags=re.MULTILINE))
            self.assertRegex(text, r"empties its \.TSF and \.XY at once|emptied as soon as it")
        extract(self.folder, "2", BOX, YEAR)
        series = self.folder / f"{TMP}.TSF"
        report = self.folder / f"{TMP}.ftst"
        report.write_text("old\n")
        self.assertGreater(series.stat().st_size, 0)
        self.play("2", PAUSE)  # and the input ends at the region
        self.assertEqual(series.stat().st_size, 0)
        self.assertEqual((self.folder / f"{TMP}.XY").stat().st_size, 0)
        self.assertEqual(report.read_text(), "old\n")

    def test_a_second_run_and_a_link_are_refused_as_told(self):
        message = "Cannot open file: {}: another run is writing it"
        text = one_line(page(MANUAL).replace("\\(dq", '"'))
        self.assertIn(f'"{message.format("NAME")}"', text)
        self.assertIn('refused: "Cannot open file: NAME"', text)
        with self.start() as first:
            first.stdin.write("\n\n2\n\n")
            first.stdin.flush()
            # Its files are there when it asks for the region.
            while "HIT RETURN" not in first.stdout.readline():
                pass
            result = self.play("2", PAUSE)
            self.assertIn(message.format(f"{TMP}.TSF"), result.stderr)
            self.assertEqual(result.returncode, 255)
            first.stdin.close()
            first.stdout.read()
        series = self.folder / f"{TMP}.TSF"
        series.unlink()
        series.symlink_to(TMP)
        result = self.play("2", PAUSE)
        self.assertIn(f"Cannot open file: {TMP}.TSF\n", result.stderr)
        self.assertGreater((self.folder / TMP).stat().st_size, 0)

    def start(self):
        return subprocess.Popen(
            ["veldmark"],
            cwd=self.folder,
            env=program_environment(Built.folder),
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )

    def test_a_second_search_goes_as_told(self):
        self.assertIn(
            "keeps region and years: next come a pause, the menu, the pause after the choice "
            "of a variable, and the question for thinning",
            manual_entry("Perform another search?"),
        )
        screen = self.whole_screen().split("Change search parameters?")[1]
        steps = (" Hit RETURN to CONTINUE", "Select the Variable", "citation", "theoretically")
        places = [screen.index(step) for step in steps]
        self.assertEqual(places, sorted(places))
        self.assertNotIn("Select the Geographical Range", screen)
        answers = [*search_answers("2", BOX, YEAR), "T", "T"]
        again = self.play(*answers).stdout.split("Change search parameters?")[1]
        self.assertIn("Program Veldmark_v24", again)

    def test_the_way_from_a_published_file_is_as_the_readme_shows(self):
        text, netcdf, check = self.find(
            r"(?m)^    (tersify \S+) +# text.*\n    (tersify \S+) +# netCDF.*\n"
            r"    (tersify --check \S+)\n",
            page("README.md"),
            "the way",
        )
        name = TMP.removesuffix(".new")
        # That netCDF files become the same copies is tested in tests/tersify.
        self.assertEqual(netcdf, f"tersify {name}.nc.gz")
        series = SAMPLE / "cru_ts4.01_tmp_1901_2016.csv.gz"
        make = f"zcat '{series}' | series_to_grid --years 1901-1901 --published {name}"
        for command in (make, f"gzip {name}", text):
            result = run(["bash", "-c", command], self.folder)
            if "built without zlib" in result.stderr:
                self.skipTest("tersify was built without zlib")
            self.assertEqual(result.returncode, 0, f"{command}: {result.stderr}")
        # Its name promises 116 years.
        result = run(check.split(), self.folder)
        self.assertEqual(result.returncode, 1)
        self.assertIn("the file ends after 4320 of 501120 lines", result.stdout)
        extract(self.folder, "2", ("61.5", "60.0", "-138.5", "-140.0"), YEAR)
        self.assertEqual(len(saved_cells(self.folder / f"{TMP}.XY")), 9)
