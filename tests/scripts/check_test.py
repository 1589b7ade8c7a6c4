"""Tests how ./check ends, with stand-ins for the tools that it calls.

    check_test.py
"""

import os
import unittest

from support import ScriptTest

TESTS = """  Test   #1: Sessions/TranscriptCase
  Test   #2: SecondProgram.Agrees
  Test   #3: RandomSessions.Keep
  Test   #4: Documents.Show
  Test   #5: Faults.Every
  Test   #6: Extract.Series

Total Tests: 6
"""

LISTS_TESTS = """
echo "ctest $*" >> "$CALLS"
for argument; do [[ $argument == -N ]] && cat "$LISTED"; done
exit 0
"""


class Check(ScriptTest):
    def setUp(self):
        super().setUp()
        self.copy("check", ".ci/run", to=self.folder)
        calls = self.folder / "calls"
        calls.touch()
        (self.folder / "listed").write_text(TESTS)
        self.environment.update(
            PATH=f"{self.folder / 'bin'}:{self.environment['PATH']}",
            CALLS=str(calls), LISTED=str(self.folder / "listed"))
        for name in ("scripts/setup", "scripts/configure", "scripts/check_package",
                     "tests/fuzz/run", "tests/figures", "bin/cmake", "bin/clang-format",
                     "bin/clang-tidy", "bin/cppcheck"):
            self.replace(name, f'echo "{name} $*" >> "$CALLS"\n')
        self.replace("bin/ctest", LISTS_TESTS)
        self.replace("bin/git", "echo src/driver/main.cc\n")

    def replace(self, name, script):
        self.stand_in(self.folder / name, script)

    def check(self, *options, **environment):
        return self.run_script("bash", "./check", *options, **environment)

    def calls(self):
        return (self.folder / "calls").read_text()

    def test_ends_with_a_sentence(self):
        result = self.check()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stdout.splitlines()[-1],
                         r"^All is well: 6 tests passed in \d+ min \d+ s\.$")

    def test_the_quick_check_needs_no_analysers_and_runs_no_long_test(self):
        self.check()
        self.assertIn("scripts/setup check\n", self.calls())
        self.assertEqual(self.calls().count("scripts/setup"), 1)
        for line in self.calls().splitlines():
            if line.startswith("ctest"):
                self.assertIn("--label-exclude long", line)
            for tool in ("clang", "cppcheck", "check_package", "fuzz"):
                self.assertNotIn(tool, line)

    def test_the_whole_check_runs_everything(self):
        result = self.check("--all")
        self.assertEqual(result.returncode, 0, result.stderr)
        for line in self.calls().splitlines():
            if line.startswith("ctest --preset sanitize"):
                self.assertIn("--label-exclude full_size", line)
            else:
                self.assertNotIn("label", line)
        for call in ("clang-format", "clang-tidy", "cppcheck", "check_package", "fuzz/run",
                     "figures --check", "configure sanitize", "ctest --preset check",
                     "ctest --preset sanitize"):
            self.assertIn(call, self.calls())
        self.assertIn("All is well: 6 tests passed, 6 again", result.stdout.splitlines()[-1])

    def test_a_failure_is_said_in_the_last_line(self):
        for tool in ("scripts/setup", "scripts/configure", "bin/cmake", "bin/clang-format",
                     "bin/clang-tidy", "bin/cppcheck", "scripts/check_package", "bin/ctest",
                     "tests/fuzz/run", "tests/figures"):
            with self.subTest(tool=tool):
                path = self.folder / tool
                before = path.read_text()
                self.replace(tool, "exit 3\n")
                result = self.check("--all")
                self.assertNotEqual(result.returncode, 0)
                self.assertIn("./check FAILED: ", result.stderr.splitlines()[-1])
                self.assertNotIn("All is well", result.stdout)
                path.write_text(before)

    def test_tests_that_fail_fail_the_check(self):
        for options, preset in (([], "check"), (["--all"], "check"), (["--all"], "sanitize")):
            passes = f'[[ $* == *-N* || $* != *{preset}* ]]'
            self.replace("bin/ctest", LISTS_TESTS.replace("exit 0", passes))
            result = self.check(*options)
            self.assertNotEqual(result.returncode, 0)
            self.assertIn("./check FAILED: ", result.stderr.splitlines()[-1])

    def test_a_kind_of_test_that_is_missing_fails_the_check(self):
        for kind in ("Transcript", "SecondProgram", "RandomSessions", "Documents"):
            (self.folder / "listed").write_text(TESTS.replace(kind, "Other"))
            result = self.check()
            self.assertNotEqual(result.returncode, 0)
            self.assertIn(f"the tests hold no {kind}", result.stderr)

    def test_an_extraction_that_is_left_out_fails_the_whole_check(self):
        (self.folder / "listed").write_text(TESTS.replace("Extract", "Other"))
        result = self.check("--all")
        self.assertEqual(result.returncode, 1)
        self.assertIn("veldmark-extract is not built", result.stderr)

    def test_what_was_not_run_is_named_and_fails_only_in_ci(self):
        self.replace("scripts/check_package", "exit 77\n")
        (self.folder / "listed").write_text(TESTS.replace("Faults", "Other"))
        result = self.check("--all")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout.splitlines()[-3:-1], [
            "Not run: the Debian package in a clean system.",
            "Not run: the tests of failing calls, which are for x86-64 Linux."])
        self.assertIn("All is well", result.stdout.splitlines()[-1])
        result = self.check("--all", CI="true")
        self.assertEqual(result.returncode, 1)
        self.assertIn("./check FAILED: ", result.stderr.splitlines()[-1])
        self.assertNotIn("All is well", result.stdout)

    def test_ci_runs_the_whole_check_and_takes_nothing_less(self):
        result = self.run_script("bash", ".ci/run")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("fuzz/run", self.calls())
        self.replace("scripts/check_package", "exit 77\n")
        self.assertEqual(self.run_script("bash", ".ci/run").returncode, 1)

    def test_sources_that_git_cannot_list_are_refused_at_once(self):
        # The analysers would wait for a pipe that nobody writes to.
        for tool in ("bin/clang-format", "bin/clang-tidy", "bin/cppcheck"):
            self.replace(tool, "cat\n")
        reader, writer = os.pipe()
        self.addCleanup(os.close, reader)
        self.addCleanup(os.close, writer)
        for script in ("exit 128\n", "exit 0\n"):
            self.replace("bin/git", script)
            result = self.check("--all", stdin=reader)
            self.assertNotEqual(result.returncode, 0)
            self.assertIn("is this a git checkout?", result.stderr)

    def test_an_option_that_it_does_not_know_is_refused(self):
        for options in (["--nonsense"], ["--all", "more"]):
            result = self.check(*options)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertIn("usage: ./check", result.stderr)
        self.assertEqual(self.calls(), "")

    def test_stays_in_its_own_folder_with_cdpath_exported(self):
        other = self.folder / "other"
        (other / self.folder.name).mkdir(parents=True)
        result = self.run_script("bash", f"{self.folder.name}/check", CDPATH=str(other),
                                 folder=self.folder.parent)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("All is well", result.stdout)


if __name__ == "__main__":
    unittest.main()
