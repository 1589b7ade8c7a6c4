"""Builds changed copies of the program and runs the test suite over them.

A `MutantBuild` is a folder with a copy of the project and its build; the project itself is
only read.  A `Worker` is a folder in it where one mutant at a time is tried.  For each
mutant only the affected translation units are recompiled, without optimisation and with
precompiled standard headers; everything else is linked from the existing build.
"""

import filecmp
import json
import os
import re
import shlex
import shutil
import signal
import subprocess
import time
from typing import Dict, FrozenSet, List, NamedTuple, Optional, Sequence, Set, Tuple

from places import TOPS, Mutant

# The test programs that run first; the others follow in order of name.
_FIRST_SUITES = ("session_tests", "unit_tests", "program_tests")


class Script(NamedTuple):
    """A slower test of built programs."""

    name: str
    words: Tuple[str, ...]  # the script and its arguments
    programs: Tuple[str, ...]  # those that it runs


def _failing(what: str, programs: str, scenes: str) -> Script:
    kind = "every_call_fails_once.py" if what == "calls" else "every_allocation_fails_once.py"
    words = ("tests/faults/" + kind, "{build}/tests/faults/failing_%s.so" % what, "{programs}")
    return Script("failing %s of %s" % (what, programs), (*words, *scenes.split()), (programs,))


_ALL = ("veldmark", "tersify", "series_to_grid", "veldmark-extract")
# They run only for mutants that survive all other tests, and only if a program is built
# from the mutant's file.
_SCRIPTS = (
    Script("documents", ("tests/documents/documents_test.py", "{programs}"), _ALL),
    Script("situations", ("tests/faults/situations_test.py", "{programs}"), _ALL[:3]),
    Script("refused netCDF", ("tests/tersify/netcdf_refusals.py", "--tools", "{programs}"),
           ("tersify",)),
    Script("netCDF copies", ("tests/tersify/netcdf_round_trip.py", "--tools", "{programs}"),
           ("tersify",)),
    Script("a release", ("tests/tersify/release_2024.py", "--tools", "{programs}", "--first",
                         "2021"), ("tersify", "veldmark-extract")),
    Script("same as the dialogue",
           ("tests/extract/same_as_dialogue.py", "--veldmark", "{programs}/veldmark",
            "--extract", "{programs}/veldmark-extract", "--count", "40"), ("veldmark-extract",)),
    Script("sites", ("tests/extract/sites_search.py", "--extract",
                     "{programs}/veldmark-extract"), ("veldmark-extract",)),
    Script("values of the sample", ("tests/extract/sample_values.py", "--tools", "{programs}"),
           ("veldmark-extract",)),
    Script("means and tests", ("tests/extract/means_and_tests.py", "{programs}"),
           ("veldmark-extract",)),
    Script("another release", ("tests/extract/releases.py", "{programs}"),
           ("veldmark-extract",)),
    Script("frost days", ("tests/second_program/frost_days_of_the_sample.py",
                          "{programs}/veldmark"), ("veldmark",)),
    Script("random sessions",
           ("tests/second_program/random_sessions.py", "--program", "{programs}/veldmark",
            "--count", "150", "--seed", "1"), ("veldmark",)),
    Script("invariants",
           ("tests/random_sessions/session_invariants.py", "--program", "{programs}/veldmark",
            "--count", "150", "--seed", "1"), ("veldmark",)),
    _failing("calls", "tersify", "tersify tersify-check tersify-gzip"),
    _failing("calls", "series_to_grid", "series_to_grid"),
    _failing("calls", "veldmark-extract",
             "extract-csv extract-output extract-tsf-replaced extract-netcdf"),
    _failing("calls", "veldmark", "veldmark"),
    _failing("memory", "tersify", "tersify"),
    _failing("memory", "veldmark-extract", "extract-sites"),
    _failing("memory", "veldmark", "veldmark-small"),
)


def _python() -> str:
    """Returns a Python that can write netCDF, as the scripts need, or any other."""
    for python in ("python3", "/usr/bin/python3"):
        found = subprocess.run([python, "-c", "import netCDF4"], stderr=subprocess.DEVNULL)
        if found.returncode == 0:
            return python
    return "python3"


_HELPERS = ("failing_calls", "failing_memory")  # targets that the scripts need besides the programs
# Tests in files with this ending are slow; they run for the same mutants as the scripts.
_SLOW_TESTS = "_sweep_test.cc"

_MOST_MEMORY_KB = 4 * 1024 * 1024
_MOST_FILE_BLOCKS = 8 * 1024 * 1024  # of 512 bytes; full data files have 2.2 GB
_MOST_SHOWN = 4000  # characters kept from the end of a test program's output
_TIMES_USUAL = 10  # a run fails after this many times its usual duration
_SECONDS_MORE = 2.0

KILLED = "killed"
TIMED_OUT = "timed out"
SURVIVED = "survived"
SAME_CODE = "same code"
NO_PROGRAM = "no program"
# Which tests a survivor was tried with.
QUICK_TESTS = "quick tests"
ALL_TESTS = "all tests"


class Verdict(NamedTuple):
    """The result of a mutant, and the test that decided it."""

    result: str
    by: str
    seconds: float


class Unit(NamedTuple):
    """A translation unit of the build."""

    target: str
    source: str  # absolute
    built: str  # the object file of the build
    arguments: Tuple[str, ...]  # for the compiler, without source, output and warnings


class Suite(NamedTuple):
    """One run of a test program."""

    program: str
    tests: str  # the framework's filter


class Run(NamedTuple):
    """How a test program ended."""

    ended_well: bool
    timed_out: bool
    seconds: float
    output: str


class Executable(NamedTuple):
    """A program of the build."""

    name: str
    path: str  # in the folder of the build
    libraries: Tuple[str, ...]  # the project's own, as targets
    foreign: Tuple[str, ...]  # other libraries, as files


def _executables(build: str) -> List[Executable]:
    """Returns the programs and test programs that the build lists, without the fuzz targets
    and the benchmarks."""
    ninja = ["ninja", "-C", build, "-t"]
    targets = subprocess.check_output(ninja + ["targets", "all"], text=True)
    found: List[Executable] = []
    for path, name in re.findall(
        r"^([^/\[\]\n][^\[\]\n]*): CXX_EXECUTABLE_LINKER__([\w-]+)_Release$", targets, re.M
    ):
        if not path.startswith(("tests/fuzz/", "bench/")):
            inputs = subprocess.check_output(ninja + ["query", path], text=True)
            libraries = re.findall(r"^    \| (?!/)(?:.*/)?lib(\w+)\.a$", inputs, re.M)
            foreign = re.findall(r"^    \| (/.*\.(?:a|so))$", inputs, re.M)
            found.append(
                Executable(name, path, tuple(dict.fromkeys(libraries)), tuple(foreign))
            )
    return found


class MutantBuild:
    """The copy of the project, its build, and its dependencies."""

    def __init__(self, project: str, folder: str, jobs: int, sanitized: bool) -> None:
        os.makedirs(folder, exist_ok=True)
        self.folder = folder
        self.sanitized = sanitized
        self.tree = os.path.join(folder, "tree")
        self.build = os.path.join(folder, "build")
        self._jobs = jobs
        self._includes: Dict[str, Tuple[str, ...]] = {}
        self._closures: Dict[str, FrozenSet[str]] = {}
        self.usual_seconds: Dict[Suite, float] = {}
        self._copy(project)
        self._build_all()
        self.units = self._read_units()
        self.suites = self._read_suites()
        folders = {word[2:] for unit in self.units for word in unit.arguments
                   if word.startswith("-I" + self.tree)}
        self._include_folders = sorted(folders)
        self._precompile()

    # ------------------------------------------------ preparing

    def _copy(self, project: str) -> None:
        """Copies the project; unchanged files of an older copy are kept."""
        fresh = self.tree + ".fresh"
        shutil.rmtree(fresh, ignore_errors=True)
        shutil.copytree(
            project, fresh, symlinks=True,
            ignore=shutil.ignore_patterns(".git", "build", "build-*", "__pycache__"),
        )
        for folder, _, names in os.walk(fresh):
            for name in names:
                path = os.path.join(folder, name)
                before = os.path.join(self.tree, os.path.relpath(path, fresh))
                if os.path.isfile(before) and filecmp.cmp(before, path, shallow=False):
                    shutil.copystat(before, path)
                else:
                    os.utime(path)
        shutil.rmtree(self.tree, ignore_errors=True)
        os.rename(fresh, self.tree)

    def _build_all(self) -> None:
        _must_run([
            "cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja",
            "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O1",
            "-DVELDMARK_WERROR=ON",
            "-DVELDMARK_SANITIZE=" + ("ON" if self.sanitized else "OFF"),
            "-DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON",  # _precompile makes its own
        ])
        ninja = ["ninja", "-C", self.build]
        known = subprocess.check_output(ninja + ["-t", "targets", "all"], text=True)
        self.executables = {one.name: one for one in _executables(self.build)}
        self.python = _python()
        self.programs = [
            one.name for one in self.executables.values() if not one.path.startswith("tests/")
        ]
        wanted = list(self.executables) + [
            name for name in _HELPERS if re.search("^%s:" % name, known, re.M)
        ]
        _must_run(ninja + ["-j%d" % self._jobs] + wanted)

    def _read_units(self) -> List[Unit]:
        with open(os.path.join(self.build, "compile_commands.json")) as file:
            commands = json.load(file)
        units: List[Unit] = []
        for command in commands:
            words = shlex.split(command["command"])
            built = words[words.index("-o") + 1]
            target = re.search(r"CMakeFiles/([^/]+)\.dir/", built)
            assert target is not None
            source = command["file"]
            kept = [
                word for word in words
                if word not in ("-c", "-o", built, source, "-O1") and not word.startswith("-W")
            ]
            units.append(
                Unit(target.group(1), source, os.path.join(self.build, built),
                     tuple(kept) + ("-w",))
            )
        return units

    def _read_suites(self) -> Dict[str, Tuple[str, ...]]:
        """Returns the test programs, in the order in which they run, each with the built
        programs that it runs: those whose paths are compiled into it."""
        names = sorted(name for name in self.executables if name.endswith("_tests"))
        names.sort(key=lambda name: (name not in _FIRST_SUITES, name))
        suites: Dict[str, Tuple[str, ...]] = {}
        for name in names:
            words = [word for unit in self.units if unit.target == name
                     for word in unit.arguments if word.startswith("-D")]
            suites[name] = tuple(
                program for program in self.programs
                if any(self.path_of(program) + '"' in word for word in words)
            )
        return suites

    def path_of(self, program: str) -> str:
        """Returns the path of a built program."""
        return os.path.join(self.build, self.executables[program].path)

    def _precompile(self) -> None:
        """Precompiles the standard headers, alone and with the test framework."""
        names: Set[str] = set()
        for top in TOPS + ("tests",):
            for folder, _, files in os.walk(os.path.join(self.tree, top)):
                for file in files:
                    if file.endswith((".cc", ".h")):
                        with open(os.path.join(folder, file)) as source:
                            names.update(
                                re.findall(r"^#include <([a-z_]+)>$", source.read(), re.M)
                            )
        standard = "".join("#include <%s>\n" % name for name in sorted(names))
        for kind, text in (
            ("plain", standard),
            ("tests", standard + "#include <gtest/gtest.h>\n"),
        ):
            header = self._precompiled(kind)
            os.makedirs(os.path.dirname(header), exist_ok=True)
            with open(header, "w") as file:
                file.write(text)
            arguments = [
                word for word in self.units[0].arguments if not word.startswith(("-I", "-D"))
            ]
            _must_run(arguments + ["-O0", "-x", "c++-header", header, "-o", header + ".gch"])

    def _precompiled(self, kind: str) -> str:
        return os.path.join(self.folder, "precompiled", kind, "standard.h")

    # ------------------------------------------------ what depends on what

    def _included_by(self, path: str) -> Tuple[str, ...]:
        """Returns the project's files that a file includes directly."""
        if path not in self._includes:
            with open(path) as file:
                names = re.findall(r'^#include "([^"]+)"', file.read(), re.M)
            tops = [os.path.dirname(path)] + self._include_folders
            found = []
            for name in names:
                candidates = [os.path.join(top, name) for top in tops]
                found += [c for c in candidates if os.path.exists(c)][:1]
            self._includes[path] = tuple(os.path.normpath(path) for path in found)
        return self._includes[path]

    def includes(self, path: str, header: str) -> bool:
        """Returns whether a file includes a header, directly or not."""
        return header in self._closure(path, with_sources=False)

    def mentions(self, path: str, word: str) -> bool:
        """Returns whether a word occurs in a file or in its includes."""
        for file in self._closure(path, with_sources=False):
            with open(file) as source:
                if re.search(r"\b%s\b" % word, source.read()):
                    return True
        return False

    def _closure(self, path: str, with_sources: bool) -> FrozenSet[str]:
        key = "%s %s" % (path, with_sources)
        if key not in self._closures:
            reached: Set[str] = set()
            waiting = [path]
            while waiting:
                file = waiting.pop()
                if file in reached:
                    continue
                reached.add(file)
                waiting += self._included_by(file)
                if with_sources:
                    waiting += self._sources_of(file)
            self._closures[key] = frozenset(reached)
        return self._closures[key]

    def _sources_of(self, header: str) -> List[str]:
        """Returns the sources that define what a header declares: the one of its name, and
        those of its folder that include it and have no header of their own name."""
        if not header.endswith(".h"):
            return []
        own = header[:-2] + ".cc"
        folder = os.path.dirname(header)
        return [own] * os.path.exists(own) + [
            unit.source for unit in self.units
            if os.path.dirname(unit.source) == folder
            and not os.path.exists(unit.source[:-3] + ".h")
            and header in self._included_by(unit.source)
        ]

    def reaches(self, program: str, path: str) -> bool:
        """Returns whether a program is built from a file."""
        return any(
            path in self._closure(unit.source, True)
            for unit in self.units
            if unit.target == program
        )

    def _tests_that_reach(self, program: str, path: str) -> List[Unit]:
        """Returns the translation units of a test program whose tests may notice a change."""
        by_running = any(self.reaches(name, path) for name in self.suites[program])
        return [
            unit for unit in self.units
            if unit.target == program
            and (by_running or path in self._closure(unit.source, True))
        ]

    def units_of(self, program: str) -> List[Unit]:
        """Returns the translation units that a program is linked from."""
        targets = (program,) + self.executables[program].libraries
        return [unit for unit in self.units if unit.target in targets]

    def suites_for(self, file: str) -> List[Suite]:
        """Returns the test runs that may notice a change of a file, its own test first.
        Tests that don't use the file and slow tests are left out."""
        path = os.path.join(self.tree, file)
        own = "tests/" + re.sub("^src/|series_to_grid/", "", os.path.splitext(file)[0])
        own += "_test.cc"
        first: List[Suite] = []
        others: List[Suite] = []
        for program in self.suites:
            names: List[str] = []
            for unit in self._tests_that_reach(program, path):
                if unit.source.endswith(_SLOW_TESTS):
                    continue
                if os.path.relpath(unit.source, self.tree) == own:
                    first.append(Suite(program, _filter(_test_names(unit.source))))
                else:
                    names += _test_names(unit.source)
            if names:
                others.append(Suite(program, _filter(names)))
        return first + others

    def whole_suite(self, program: str) -> Suite:
        """Returns the run of all tests of a program except the slow ones."""
        names: List[str] = []
        for unit in self.units:
            if unit.target == program and not unit.source.endswith(_SLOW_TESTS):
                names += _test_names(unit.source)
        return Suite(program, _filter(names))

    def usual(self, suite: Suite) -> float:
        """Returns the usual duration of a run; if unknown, that of all the program's tests."""
        whole = self.whole_suite(suite.program)
        return self.usual_seconds.get(suite, self.usual_seconds[whole])

    def slow_suites_for(self, file: str) -> List[Suite]:
        """Returns the runs of slow tests that may notice a change of a file."""
        path = os.path.join(self.tree, file)
        suites: List[Suite] = []
        for program in self.suites:
            names: List[str] = []
            for unit in self._tests_that_reach(program, path):
                if unit.source.endswith(_SLOW_TESTS):
                    names += _test_names(unit.source)
            if names:
                suites.append(Suite(program, _filter(names)))
        return suites

    def compiler_call(self, unit: Unit, source: str, built: str, tree: str) -> List[str]:
        """Returns the command that compiles `source`; `tree` is searched for headers first."""
        kind = "tests" if os.sep + "tests" + os.sep in unit.source else "plain"
        first = ["-include", self._precompiled(kind)]
        command, *rest = unit.arguments
        options = first + self.overlay(unit, tree) + rest
        return [command] + options + ["-O0", "-c", source, "-o", built]

    def overlay(self, unit: Unit, tree: str) -> List[str]:
        """Returns the options that make the compiler search `tree` for headers first."""
        if not os.path.isdir(tree):
            return []
        return [
            "-I" + tree + word[2 + len(self.tree):]
            for word in unit.arguments if word.startswith("-I" + self.tree)
        ]


class Worker:
    """A folder in which one mutant at a time is built and tried."""

    def __init__(self, base: MutantBuild, number: int) -> None:
        self._base = base
        self._folder = os.path.join(base.folder, "worker%d" % number)
        shutil.rmtree(self._folder, ignore_errors=True)
        self._programs = os.path.join(self._folder, "programs")
        self._tree = os.path.join(self._folder, "tree")
        self._tmp = os.path.join(self._folder, "tmp")
        for folder in (self._programs, self._tree, self._tmp):
            os.makedirs(folder)
        # Tests that run built programs must run the programs of this worker.
        self._own_units: Dict[str, str] = {}
        self._changed: Dict[str, Optional[str]] = {}
        for unit in base.units:
            if self._runs_programs(unit):
                built = os.path.join(self._folder, "own-%d.o" % len(self._own_units))
                self._call(self._compiler_call(unit, unit.source, built), must=True)
                self._own_units[unit.built] = built

    def _runs_programs(self, unit: Unit) -> bool:
        """Returns whether a test's source or its includes use the path of a built program."""
        for word in unit.arguments:
            macro = re.match(r"-D(\w+)=", word)
            for program in self._base.programs if macro else ():
                if self._base.path_of(program) + '"' in word:
                    assert macro is not None
                    if self._base.mentions(unit.source, macro.group(1)):
                        return True
        return False

    # ------------------------------------------------ building

    def _compiler_call(self, unit: Unit, source: str, built: str) -> List[str]:
        words = self._base.compiler_call(unit, source, built, self._tree)
        for program in self._base.programs:
            before = self._base.path_of(program) + '"'
            after = os.path.join(self._programs, program) + '"'
            words = [
                word.replace(before, after) if word.startswith("-D") else word for word in words
            ]
        return words

    def _call(self, words: Sequence[str], must: bool = False) -> bool:
        done = subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if must and done.returncode != 0:
            raise RuntimeError("%s\n%s" % (shlex.join(words), done.stdout.decode()))
        return done.returncode == 0

    def _is_changed(self, unit: Unit, mutant: Mutant) -> bool:
        path = os.path.join(self._base.tree, mutant.file)
        if path.endswith(".cc"):
            return os.path.normpath(unit.source) == path
        return self._base.includes(unit.source, path)

    def _source_of(self, unit: Unit, mutant: Mutant) -> str:
        path = os.path.join(self._base.tree, mutant.file)
        if os.path.normpath(unit.source) == path:
            return os.path.join(self._tree, mutant.file)
        return unit.source

    def _object(self, unit: Unit, mutant: Optional[Mutant]) -> Optional[str]:
        """Returns the object file of a mutant's unit; None if it doesn't compile."""
        if mutant is None or not self._is_changed(unit, mutant):
            return self._own_units.get(unit.built, unit.built)
        if unit.built not in self._changed:
            built = os.path.join(self._folder, "changed-%d.o" % len(self._changed))
            ok = self._call(self._compiler_call(unit, self._source_of(unit, mutant), built))
            self._changed[unit.built] = built if ok else None
        return self._changed[unit.built]

    def _link(self, program: str, mutant: Optional[Mutant]) -> Optional[str]:
        """Links a program. Returns None if one of its units doesn't compile."""
        path = os.path.join(self._programs, program)
        objects: List[str] = []
        for unit in self._base.units_of(program):
            built = self._object(unit, mutant)
            if built is None:
                return None
            objects.append(built)
        compiler = self._base.units[0].arguments[0]
        libraries = list(self._base.executables[program].foreign) + ["-lpthread"]
        if os.path.exists(path):
            os.remove(path)
        flags = _linker()
        if self._base.sanitized:
            flags.append("-fsanitize=address,undefined")
        linked = self._call([compiler] + flags + objects + libraries + ["-o", path])
        return path if linked else None

    # ------------------------------------------------ running

    def _run(self, words: Sequence[str], most_seconds: float) -> Run:
        shutil.rmtree(self._tmp, ignore_errors=True)
        os.makedirs(self._tmp)
        limits = "ulimit -c 0; ulimit -f %d; " % _MOST_FILE_BLOCKS
        if not self._base.sanitized:  # sanitizers reserve far more than they use
            limits += "ulimit -v %d; " % _MOST_MEMORY_KB
        limits += 'exec "$@"'
        environment = dict(
            os.environ, TMPDIR=self._tmp, GTEST_FAIL_FAST="1", PYTHONDONTWRITEBYTECODE="1"
        )
        output = os.path.join(self._folder, "output.txt")
        begin = time.monotonic()
        timed_out = False
        with open(output, "wb") as file:
            process = subprocess.Popen(
                ["sh", "-c", limits, "sh"] + list(words), cwd=self._tmp, env=environment,
                stdin=subprocess.DEVNULL, stdout=file, stderr=subprocess.STDOUT,
                start_new_session=True,
            )
            timed_out = not _ends_within(process.pid, most_seconds)
            _end_group(process.pid)
            process.wait()
        with open(output, "rb") as file:
            shown = file.read(10_000_000).decode("utf-8", "replace")
        seconds = time.monotonic() - begin
        return Run(process.returncode == 0 and not timed_out, timed_out, seconds, shown)

    def _most_seconds(self, usual: Optional[float]) -> float:
        return 600.0 if usual is None else _TIMES_USUAL * usual + _SECONDS_MORE

    def measure(self, files: Sequence[str]) -> None:
        """Measures every test program, and each file's own tests alone, on the unchanged
        program. All must pass."""
        self._changed = {}
        for program, run_ones in self._base.suites.items():
            for name in run_ones + (program,):
                if self._link(name, None) is None:
                    raise RuntimeError("%s can't be linked" % name)
        suites = [self._base.whole_suite(program) for program in self._base.suites]
        suites += [suite for file in files for suite in self._base.suites_for(file)[:1]]
        for suite in dict.fromkeys(suites):
            run = self._run_suite(suite, None)
            if not run.ended_well:
                shown = run.output[-_MOST_SHOWN:]
                raise RuntimeError("unchanged, %s fails:\n%s" % (suite.program, shown))
            self._base.usual_seconds[suite] = run.seconds

    def _run_suite(self, suite: Suite, usual: Optional[float]) -> Run:
        path = os.path.join(self._programs, suite.program)
        return self._run(
            [path, "--gtest_filter=" + suite.tests, "--gtest_color=no"],
            self._most_seconds(usual),
        )

    # ------------------------------------------------ trying a mutant

    def try_mutant(self, mutant: Mutant) -> Verdict:
        """Builds a mutant and runs the suites until one fails."""
        begin = time.monotonic()
        result, by = self._try(mutant)
        return Verdict(result, by, time.monotonic() - begin)

    def _put(self, mutant: Mutant) -> None:
        """Writes the changed file to the folder that the compiler searches first."""
        shutil.rmtree(self._tree)
        with open(os.path.join(self._base.tree, mutant.file)) as file:
            text = file.read()
        path = os.path.join(self._tree, mutant.file)
        os.makedirs(os.path.dirname(path))
        with open(path, "w") as file:
            file.write(mutant.applied_to(text))
        self._changed = {}

    def _try(self, mutant: Mutant) -> Tuple[str, str]:
        if not any(self._is_changed(unit, mutant) for unit in self._base.units):
            return NO_PROGRAM, "the file is not built"
        self._put(mutant)
        for suite in self._base.suites_for(mutant.file):
            for program in self._base.suites[suite.program] + (suite.program,):
                if self._link(program, mutant) is not None:
                    continue
                if self._fails_in_tests_only():
                    return KILLED, suite.program + " can't be compiled"
                return NO_PROGRAM, ""
            usual = self._base.usual(suite)
            run = self._run_suite(suite, usual)
            if run.timed_out:
                return TIMED_OUT, suite.program
            if not run.ended_well:
                how = "sanitized " if self._base.sanitized else ""
                return KILLED, "%s%s %s" % (how, suite.program, _first_failure(run.output))
        if not self._base.sanitized and self._is_same_code(mutant):
            return SAME_CODE, ""
        return SURVIVED, ALL_TESTS if self._base.sanitized else QUICK_TESTS

    def _fails_in_tests_only(self) -> bool:
        failed = [built for built, changed in self._changed.items() if changed is None]
        tests = os.path.join(self._base.build, "tests") + os.sep
        return bool(failed) and all(built.startswith(tests) for built in failed)

    def _is_same_code(self, mutant: Mutant) -> bool:
        """Returns whether the optimised machine code is unchanged."""
        for unit in self._base.units:
            if not self._is_changed(unit, mutant) or "tests" in unit.target:
                continue
            source = os.path.relpath(unit.source, self._base.tree)
            codes = []
            for tree in (self._base.tree, self._tree):
                built = os.path.join(self._folder, "code.o")
                here = os.path.exists(os.path.join(tree, source))
                top = tree if here else self._base.tree
                words = [unit.arguments[0]] + self._base.overlay(unit, tree)
                words += list(unit.arguments[1:]) + ["-O2", "-c", source, "-o", built]
                done = subprocess.run(words, cwd=top, stderr=subprocess.DEVNULL)
                if done.returncode != 0:
                    return False
                with open(built, "rb") as file:
                    codes.append(file.read())
            if codes[0] != codes[1]:
                return False
        return True

    def try_slow_tests(self, mutant: Mutant) -> Verdict:
        """Runs the slower tests on a mutant that has survived the others."""
        begin = time.monotonic()
        self._put(mutant)
        for suite in self._base.slow_suites_for(mutant.file):
            self._link(suite.program, mutant)
            run = self._run_suite(suite, None)
            if not run.ended_well:
                by = "%s %s" % (suite.program, _first_failure(run.output))
                return Verdict(KILLED, by, time.monotonic() - begin)
        path = os.path.join(self._base.tree, mutant.file)
        reached = [one for one in self._base.programs if self._base.reaches(one, path)]
        for program in self._base.programs if reached else []:
            self._link(program, mutant)
        for script in _SCRIPTS:
            call = self._script_call(script.words)
            if not set(script.programs) & set(reached) or not self._is_there(call):
                continue
            run = self._run(call, self._most_seconds(None))
            if not run.ended_well:
                return Verdict(KILLED, script.name, time.monotonic() - begin)
        return Verdict(SURVIVED, QUICK_TESTS, time.monotonic() - begin)

    @staticmethod
    def _is_there(call: Sequence[str]) -> bool:
        return all(os.path.exists(word) for word in call if os.path.isabs(word))

    def _script_call(self, words: Sequence[str]) -> List[str]:
        script, *rest = words
        arguments = [
            word.replace("{programs}", self._programs).replace("{build}", self._base.build)
            for word in rest
        ]
        return [self._base.python, os.path.join(self._base.tree, script)] + arguments


def _test_names(source: str) -> List[str]:
    """Returns the names of the test suites in a file."""
    with open(source) as file:
        names = re.findall(r"^(?:TYPED_)?TEST(?:_[FP])?\(\s*(\w+),", file.read(), re.M)
    return sorted(set(names))


def _filter(names: List[str]) -> str:
    return ":".join("%s.*:*/%s.*" % (name, name) for name in names)


def _must_run(words: Sequence[str]) -> None:
    done = subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode != 0:
        raise RuntimeError("%s\n%s" % (shlex.join(words), done.stdout.decode()))


def _ends_within(process: int, most_seconds: float) -> bool:
    """Returns whether a child exits in time. Doesn't reap it."""
    begin = time.monotonic()
    options = os.WEXITED | os.WNOWAIT | os.WNOHANG
    while os.waitid(os.P_PID, process, options) is None:
        if time.monotonic() - begin > most_seconds:
            return False
        time.sleep(0.005)
    return True


def _end_group(leader: int) -> None:
    """Kills the process group of a test program, with all that it left running.  The
    leader must not be reaped yet, so that its group id can't have been reused."""
    os.killpg(leader, signal.SIGKILL)


def _linker() -> List[str]:
    for name in ("lld", "gold"):
        if shutil.which("ld." + name):
            return ["-fuse-ld=" + name]
    return []


def _first_failure(output: str) -> str:
    match = re.search(r"^\[  FAILED  \] ([\w./]+)", output, re.M)
    return match.group(1) if match else "ended badly"
