"""Tests scripts/configure with the project's presets and a project without languages.

    configure_test.py
"""

import json
import shutil
import unittest

from support import TOP, ScriptTest

PROJECT = "cmake_minimum_required(VERSION 3.25)\nproject(nothing LANGUAGES NONE)\n"


class Configure(ScriptTest):
    def setUp(self):
        super().setUp()
        self.top = self.folder / "a checkout"
        self.copy("scripts/configure", "CMakePresets.json", to=self.top)
        (self.top / "CMakeLists.txt").write_text(PROJECT)

    def configure(self, *arguments, top=None, **environment):
        return self.run_script((top or self.top) / "scripts" / "configure", *arguments,
                               **environment)

    def cached(self, entry, top=None, build="build"):
        cache = (top or self.top) / build / "CMakeCache.txt"
        return next(line.split("=", 1)[1] for line in cache.read_text().splitlines()
                    if line.startswith(entry + ":"))

    def test_sets_up_the_folder_of_each_preset(self):
        presets = json.loads((TOP / "CMakePresets.json").read_text())["configurePresets"]
        names = [preset["name"] for preset in presets if not preset.get("hidden")]
        self.assertIn("release", names)
        for name in names:
            result = self.configure(name)
            self.assertEqual((result.returncode, result.stderr), (0, ""), name)
            build = "build" if name == "release" else f"build-{name}"
            self.assertEqual(self.cached("CMAKE_GENERATOR", build=build), "Ninja")

    def test_keeps_a_folder_of_its_own(self):
        self.configure("release", "-DKEPT:STRING=yes")
        result = self.configure("release")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(self.cached("KEPT"), "yes")

    def test_starts_a_folder_of_another_generator_afresh(self):
        self.run_script("cmake", "-S", self.top, "-B", self.top / "build", "-G",
                        "Unix Makefiles", "-DCMAKE_MAKE_PROGRAM=/bin/true")
        self.assertEqual(self.cached("CMAKE_GENERATOR"), "Unix Makefiles")
        result = self.configure("release")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("set up afresh", result.stderr)
        self.assertEqual(self.cached("CMAKE_GENERATOR"), "Ninja")

    def test_starts_the_folder_of_a_moved_checkout_afresh(self):
        self.configure("release")
        moved = self.folder / "moved"
        self.top.rename(moved)
        result = self.configure("release", top=moved)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.cached("CMAKE_HOME_DIRECTORY", top=moved), str(moved))

    def test_starts_the_folder_of_a_copied_checkout_afresh(self):
        self.configure("release")
        copy = self.folder / "copy"
        shutil.copytree(self.top, copy)
        result = self.configure("release", top=copy)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.cached("CMAKE_HOME_DIRECTORY", top=copy), str(copy))

    def test_starts_a_folder_that_was_renamed_afresh(self):
        self.configure("release")
        (self.top / "build").rename(self.top / "build-check")
        result = self.configure("check")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.cached("CMAKE_CACHEFILE_DIR", build="build-check"),
                         str(self.top / "build-check"))

    def test_takes_the_same_folder_by_another_name_for_the_same(self):
        self.configure("release", "-DKEPT:STRING=yes")
        other = self.folder / "other name"
        other.symlink_to(self.top)
        result = self.configure("release", top=other)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(self.cached("KEPT"), "yes")

    def test_shows_what_cmake_says_when_it_fails(self):
        (self.top / "CMakeLists.txt").write_text(PROJECT + 'message(FATAL_ERROR "no luck")\n')
        result = self.configure("release")
        self.assertEqual(result.returncode, 1)
        self.assertIn("no luck", result.stderr)

    def test_finds_its_own_top_with_cdpath_exported(self):
        (self.folder / "elsewhere" / "scripts").mkdir(parents=True)
        result = self.run_script("bash", "scripts/configure", "release", folder=self.top,
                                 CDPATH=str(self.folder / "elsewhere"))
        self.assertEqual((result.returncode, result.stdout), (0, ""))
        self.assertTrue((self.top / "build" / "CMakeCache.txt").exists())


if __name__ == "__main__":
    unittest.main()
