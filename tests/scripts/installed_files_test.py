"""Tests what `cmake --install` puts where, and scripts/check_installed, which looks at it.

    installed_files_test.py BUILD_FOLDER
"""

import re
import sys
import unittest
from pathlib import Path

from support import TOP, ScriptTest

BUILD = None  # the folder of the build
DOCUMENTS = "usr/share/doc/veldmark"


class InstalledFiles(ScriptTest):
    def setUp(self):
        super().setUp()
        self.root = self.folder / "root"
        result = self.run_script("cmake", "--install", BUILD, "--prefix", "/usr",
                                 DESTDIR=str(self.root))
        self.assertEqual(result.returncode, 0, result.stderr)

    def check(self):
        built = (Path(BUILD) / "veldmark-extract").exists()
        without = [] if built else ["--without", "veldmark-extract"]
        return self.run_script(TOP / "scripts" / "check_installed", self.root, *without)

    def expect_fault(self, text):
        result = self.check()
        self.assertEqual(result.returncode, 1)
        self.assertIn(text, result.stderr)

    def test_they_are_the_users_files_and_their_links_hold(self):
        result = self.check()
        self.assertEqual((result.stderr, result.returncode), ("", 0))

    def test_nothing_but_links_and_what_is_for_developers_is_taken_out_of_pages(self):
        for page in self.root.glob(f"{DOCUMENTS}/**/*.md"):
            source = TOP / page.relative_to(self.root / DOCUMENTS)
            text = source.read_text(encoding="utf-8").split("\n## For developers\n")[0]
            self.assertEqual(without_links(page.read_text(encoding="utf-8")),
                             without_links(text).rstrip("\n") + "\n", page)

    def test_a_file_that_is_missing_or_foreign_is_found(self):
        missing = self.root / DOCUMENTS / "docs" / "recipes" / "cells.py"
        missing.rename(missing.with_name("other.py"))
        self.expect_fault("docs/recipes/cells.py is missing\n")
        self.expect_fault("docs/recipes/other.py is not one of the project's\n")

    def test_a_link_that_leads_nowhere_is_found(self):
        page = self.root / DOCUMENTS / "README.md"
        page.write_text(page.read_text(encoding="utf-8") + "[more](docs/testing.md#x)\n",
                        encoding="utf-8")
        self.expect_fault(f"{DOCUMENTS}/README.md: nothing at docs/testing.md\n")

    def test_a_series_with_another_content_is_found(self):
        series = self.root / "usr/share/veldmark/sample/cru_ts4.01_pre_1901_2016.csv.gz"
        series.write_bytes(series.read_bytes()[:-1])
        self.expect_fault("is not as data/sample/cru_ts4.01_pre_1901_2016.csv.gz\n")

    def test_an_empty_page_is_found(self):
        (self.root / DOCUMENTS / "docs" / "variance-test.md").write_text("")
        self.expect_fault("docs/variance-test.md is empty\n")


def without_links(text):
    return re.sub(r"\[([^]]*)\]\([^)]+\)", r"\1", text)


if __name__ == "__main__":
    BUILD = Path(sys.argv.pop(1)).resolve()
    unittest.main()
