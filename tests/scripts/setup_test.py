"""Tests scripts/setup with a system that lacks what the test says.

    setup_test.py
"""

import os
import re
import shutil
import unittest

from support import TOP, ScriptTest

SETUP = TOP / "scripts" / "setup"


class Setup(ScriptTest):
    def system_with(self, *commands):
        """A folder of commands: stand-ins for those named, and what the script itself uses.

        apt-get writes down what it is asked for.
        """
        folder = self.folder / "bin"
        for name in ("bash", "env", "sort", "cat"):
            folder.mkdir(exist_ok=True)
            os.symlink(shutil.which(name), folder / name)
        for name in commands:
            self.stand_in(folder / name, "exit 0\n")
        log = f"echo \"$@\" >> '{self.folder}/installed'\n"
        self.stand_in(folder / "apt-get", log)
        self.stand_in(folder / "sudo", 'if [[ $1 == -n ]]; then shift; fi; exec "$@"\n')
        return str(folder)

    def test_refuses_a_purpose_that_it_does_not_know(self):
        for purposes in (["nonsense"], ["build", "nonsense"], [""]):
            result = self.run_script(SETUP, *purposes, PATH=self.system_with_all())
            self.assertEqual(result.returncode, 2)
            self.assertIn(f"there is no purpose '{purposes[-1]}'", result.stderr)
            self.assertEqual(result.stdout, "")
        self.assertFalse((self.folder / "installed").exists())

    def test_lists_the_purposes_that_it_knows_and_check_asks_for_no_others(self):
        listed = re.findall(r"^#   ([a-z]+) +", SETUP.read_text(), re.M)
        self.assertIn("readers", listed)
        refusal = self.run_script(SETUP, "nonsense", PATH=self.system_with_all()).stderr
        told = re.findall("[a-z]+", refusal.partition("the purposes are")[2])
        self.assertEqual([word for word in told if word != "and"], listed)
        result = self.run_script(SETUP, *listed, PATH=self.system_with_all())
        self.assertEqual(result.returncode, 0, result.stderr)
        asked = re.findall(r"^ *set_up (.*)", (TOP / "check").read_text(), re.M)
        self.assertTrue(asked)
        self.assertLessEqual(set(" ".join(asked).split()), set(listed))

    def test_the_quick_check_needs_no_other_readers(self):
        quick = re.search(r"check_quickly\(\) {\n  set_up (.*)", (TOP / "check").read_text())
        self.assertEqual(quick[1], "check")

    def system_with_all(self):
        shutil.rmtree(self.folder / "bin", ignore_errors=True)
        return self.system_with("c++", "cmake", "ninja", "gzip", "python3", "git")

    def test_refuses_to_do_nothing(self):
        result = self.run_script(SETUP)
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertIn("usage:", result.stderr)

    def test_is_silent_where_nothing_is_missing(self):
        result = self.run_script(SETUP, "demo", PATH=self.system_with_all())
        self.assertEqual((result.stdout, result.stderr, result.returncode), ("", "", 0))

    def test_installs_what_is_missing_for_all_purposes_once(self):
        path = self.system_with("cmake", "gzip", "git")
        result = self.run_script(SETUP, "demo", "recipes", PATH=path)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(
            (self.folder / "installed").read_text().splitlines()[-1],
            "install -y --no-install-recommends g++ gnuplot-nox ninja-build python3 "
            "r-base-core",
        )


if __name__ == "__main__":
    unittest.main()
