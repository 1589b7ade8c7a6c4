"""Tests scripts/valgrind_session: with the built programs, and with a faulty one.

    valgrind_session_test.py PROGRAM_FOLDER
"""

import sys
import unittest
from pathlib import Path

from support import TOP, ScriptTest

PROGRAMS = None  # the folder of the built programs
SCRIPT = TOP / "scripts" / "valgrind_session"

LEAKS = "int main() { new int[10]; }\n"
READS_UNSET_MEMORY = """
int main() {
  int* p = new int[2];
  const bool set = *p == 12345;
  delete[] p;
  return set ? 1 : 0;
}
"""


class ValgrindSession(ScriptTest):
    def programs_with(self, veldmark):
        """A folder of programs in which veldmark is made from this source."""
        folder = self.folder / "programs"
        folder.mkdir()
        (folder / "series_to_grid").symlink_to(PROGRAMS / "series_to_grid")
        (folder / "tersify").symlink_to(PROGRAMS / "tersify")
        (self.folder / "veldmark.cc").write_text(veldmark)
        made = self.run_script("c++", "-O0", "veldmark.cc", "-o", folder / "veldmark")
        self.assertEqual(made.returncode, 0, made.stderr)
        return folder

    def test_finds_nothing_in_the_built_programs(self):
        result = self.run_script(SCRIPT, PROGRAMS)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("valgrind found nothing", result.stdout)
        self.assertIn("cru_ts4.01.1901.2016.frs.dat.new.ftst", result.stdout)

    def test_fails_on_a_leak(self):
        result = self.run_script(SCRIPT, self.programs_with(LEAKS))
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("definitely lost", result.stderr)
        self.assertNotIn("found nothing", result.stdout)

    def test_fails_on_memory_that_was_not_set(self):
        result = self.run_script(SCRIPT, self.programs_with(READS_UNSET_MEMORY))
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("uninitialised", result.stderr)

    def test_fails_where_outputs_differ(self):
        # Each run has its own process.
        source = '#include <cstdio>\n#include <unistd.h>\nint main() { printf("%d", getpid()); }'
        result = self.run_script(SCRIPT, self.programs_with(source))
        self.assertNotEqual(result.returncode, 0)
        self.assertNotIn("found nothing", result.stdout)


if __name__ == "__main__":
    PROGRAMS = Path(sys.argv.pop(1)).resolve()
    unittest.main()
