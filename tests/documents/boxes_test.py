"""Boxes, on grids whose every cell has data: a cell that is not saved wasn't taken."""

import os
import re

from examples import rows_of_tables
from support import (
    LINES_PER_YEAR,
    SCPDSI,
    TMP,
    DocumentTest,
    column_numbers,
    degrees,
    extract,
    grids_defined,
    one_line,
    page,
    saved_cells,
    write_grid,
)

YEAR = ("1901", "1901")


class BoxTest(DocumentTest):
    def setUp(self):
        super().setUp()
        write_grid(self.folder / TMP, column_numbers)
        os.link(self.folder / TMP, self.folder / SCPDSI)

    def take(self, menu, box):
        """Longitudes and latitudes in their order, cells saved, grids defined."""
        screen = extract(self.folder, menu, box, YEAR)
        cells = saved_cells(self.folder / f"{TMP if menu == '2' else SCPDSI}.XY")
        longitudes = list(dict.fromkeys(longitude for longitude, _ in cells))
        latitudes = list(dict.fromkeys(latitude for _, latitude in cells))
        return longitudes, latitudes, len(cells), grids_defined(screen)

    def values_in_wrong_cells(self, name):
        """How many of the saved cells hold the value of another one, and of how many."""
        lines = (self.folder / f"{name}.TSF").read_text(encoding="ascii").splitlines()
        wrong = 0
        for heading, year in zip(lines[::2], lines[1::2], strict=True):
            latitude = float(heading[10:19])
            from_edge = 89.75 - latitude if name == SCPDSI else latitude + 89.75
            column = int((float(heading[1:10]) + 179.75) / 0.5) + 1
            value = column + 1000 * ((int(from_edge / 0.5) + 1) % 30)
            wrong += int(year[5:11]) != value
        return wrong, len(lines) // 2


class Tables(BoxTest):
    def check(self, menu, rows, count):
        self.assertEqual(len(rows), count)
        for *box, latitudes, longitudes, cells in rows:
            with self.subTest(menu=menu, box=box):
                taken_longitudes, taken_latitudes, saved, defined = self.take(menu, box)
                self.assertEqual(sorted(taken_latitudes), sorted(degrees(latitudes)))
                self.assertEqual(sorted(taken_longitudes), sorted(degrees(longitudes)))
                self.assertEqual((saved, defined), (int(cells), int(cells)))

    def test_of_boxes_are_what_the_program_takes(self):
        tables = rows_of_tables(page("docs/before-you-trust-a-number.md"), "Top")
        self.assertEqual(len(tables), 2)
        self.check("2", tables[0], 10)
        self.check("11", tables[1], 5)


class Meridian(BoxTest):
    def test_a_left_edge_of_180_gives_wrong_values(self):
        text = one_line(page("docs/before-you-trust-a-number.md"))
        *box, good, bad = self.find(
            r"Top ([\d.-]+), bottom ([\d.-]+), right ([\d.-]+) and left ([\d.-]+) is a box of "
            r'(\d+) cells\. With a left edge of 180\.0 it has (\d+) "Grids Defined"',
            text,
            "the box at the meridian",
        )
        *_, saved, defined = self.take("2", box)
        self.assertEqual((saved, defined), (int(good), int(good)))
        self.assertEqual(self.values_in_wrong_cells(TMP), (0, int(good)))
        box[3] = "180.0"
        *_, saved, defined = self.take("2", box)
        self.assertEqual(defined, int(bad))
        self.assertEqual(self.values_in_wrong_cells(TMP), (saved, saved))
        for edges in (("1.0", "0.0", "180.0", "179.0"), ("1.0", "0.0", "-179.0", "179.0")):
            self.take("2", edges)
            self.assertEqual(self.values_in_wrong_cells(TMP)[0], 0)

    def test_a_left_edge_beyond_the_last_centre_gives_wrong_values_or_all_columns(self):
        last = self.find(
            r"left edge above ([\d.]+) or a right edge below -\1: every value may then be wrong, or "
            r"every column is taken",
            one_line(page("docs/before-you-trust-a-number.md")),
            "the last centre",
        )
        beyond = str(float(last) + 0.05)
        *_, saved, _ = self.take("2", ("1.0", "0.0", "-179.0", beyond))
        self.assertGreater(saved, 0)
        self.assertEqual(self.values_in_wrong_cells(TMP), (saved, saved))
        longitudes, *_ = self.take("2", ("1.0", "0.0", "180.0", beyond))
        self.assertEqual(len(longitudes), 720)
        *_, saved, _ = self.take("2", ("1.0", "0.0", "180.0", last))
        self.assertEqual(self.values_in_wrong_cells(TMP), (0, saved))

    def test_a_bottom_edge_beyond_the_last_centre_takes_every_row(self):
        last = self.find(
            r"bottom edge above ([\d.]+) takes every row: keep it at \1 or below",
            one_line(page("docs/before-you-trust-a-number.md")),
            "the last centre",
        )
        _, latitudes, *_ = self.take("2", ("90.0", str(float(last) + 0.05), "1.0", "0.0"))
        self.assertEqual(len(latitudes), 360)
        _, latitudes, *_ = self.take("2", ("90.0", last, "1.0", "0.0"))
        self.assertEqual(latitudes, [89.75])

    def test_a_left_edge_of_any_size_is_taken_for_the_drought_index(self):
        left = self.find(
            r"beyond 179\.75 \((\d+\.0) for 78 W",
            one_line(page("docs/before-you-trust-a-number.md")),
            "the left edge",
        )
        *_, saved, _ = self.take("11", ("10.5", "10.0", "87.0", left))
        self.assertGreater(saved, 0)
        self.assertEqual(self.values_in_wrong_cells(SCPDSI), (saved, saved))


class TallowsBoxes(BoxTest):
    def test_are_what_the_program_takes(self):
        text = one_line(page("docs/Tallow"))
        edges = r"top (-?[\d.]+), bottom (-?[\d.]+)"
        boxes = [
            (top, bottom, latitudes.replace(",", "").replace("and", ""))
            for top, bottom, latitudes in re.findall(
                edges + r" gives ((?:[\d.]+,? (?:and )?)+\d+\.[27]5)", text
            )
        ]
        top, bottom, south_first, north_first = self.find(
            edges + r" CRU TS: ([\d. ]+) index: ([\d. ]+) To ", text, "the first box"
        )
        self.assertEqual(len(boxes), 2)
        boxes.append((top, bottom, north_first))
        for upper, lower, latitudes in boxes:
            taken = self.take("11", (upper, lower, "0.5", "0.0"))[1]
            self.assertEqual(taken, sorted(degrees(latitudes), reverse=True), (upper, lower))
        taken = self.take("2", (top, bottom, "0.5", "0.0"))[1]
        self.assertEqual(taken, degrees(south_first))

    def test_the_widest_holds_all_rows(self):
        self.assertIn(
            "Keep the top at 89.5 or below and the bottom at -89.5 or above",
            one_line(page("docs/Tallow")),
        )
        self.assertEqual(len(self.take("11", ("89.5", "-89.5", "0.5", "0.0"))[1]), 360)
        self.assertNotEqual(len(self.take("11", ("90.0", "-89.5", "0.5", "0.0"))[1]), 360)


class GridFile(DocumentTest):
    def test_sizes_and_lines_follow_from_the_counts(self):
        text = one_line(page("docs/grid-file.md")).replace(",", "")
        lines = 116 * LINES_PER_YEAR
        self.assertIn(f"A whole file has {lines} lines", text)
        self.assertIn(f"a whole file has {lines * 3601} bytes with LF", text)
        year, row, line = self.find(
            r"Year (\d{4}) July row (\d+) is line (\d+)\.", text, "the line of a year"
        )
        expected = (int(year) - 1901) * LINES_PER_YEAR + 6 * 360 + int(row)
        self.assertEqual(int(line), expected)
