"""docs/Tallow: the page that the program names when the drought index is missing."""

import re

from support import (
    LINES_PER_YEAR,
    PAUSE,
    SCPDSI,
    DocumentTest,
    degrees,
    extract,
    one_line,
    page,
    run,
    write_lines,
)


class Tallow(DocumentTest):
    def test_is_plain_text_of_72_columns(self):
        for line in page("docs/Tallow").splitlines():
            self.assertLessEqual(len(line), 72, line)
            self.assertTrue(line.isascii(), line)
            self.assertFalse(re.search(r"^#|\*\*|`|\]\(|\t", line), line)

    def test_names_file_and_citations_as_the_program_does(self):
        text = one_line(page("docs/Tallow"))
        shown = run(["veldmark"], self.folder, [PAUSE, PAUSE, "11", PAUSE, PAUSE, "0"])
        self.assertEqual(shown.returncode, 0, shown.stderr)
        self.assertIn("Tallow file", shown.stdout)
        self.assertIn(SCPDSI, shown.stdout)
        self.assertIn(SCPDSI, text)
        screen = one_line(shown.stdout)
        citations = self.find(r"citation for these data is:(.*?) Hit RETURN", screen, "they")
        parts = citations.split(" and Osborn")
        for citation in parts:
            self.assertIn(citation.strip(), text.replace("and Osborn", ""))
        self.assertEqual(len(parts), 2)

    def test_the_example_is_where_the_program_reads(self):
        line, first, last = map(
            int,
            self.find(
                r"July 1905 of the cell at 60\.25 N, 139\.75 W\..* \+ 60 = (\d+) "
                r"value characters (\d+) to (\d+)",
                one_line(page("docs/Tallow")),
                "the example",
            ),
        )
        self.assertEqual((first % 5, last - first), (1, 4))
        # Every requested line has to be there; the missing code would hide the cell.
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

    def test_sizes_follow_from_the_layout(self):
        lines = 116 * LINES_PER_YEAR
        text = one_line(page("docs/Tallow"))
        self.assertIn(f"a whole file {lines} lines and {lines * 3601} bytes", text)
