"""The suites that catch breaks: the targets and the command of each."""

from __future__ import annotations

import dataclasses

PROGRAMS = ("veldmark", "tersify", "series_to_grid", "veldmark-extract")


@dataclasses.dataclass(frozen=True)
class Catcher:
    """A command that fails with the break and passes without it.

    command    run at the top of the tree; {build} in it is the build folder
    targets    build targets that the command needs
    passes     exit statuses that count as passed
    """

    name: str
    command: tuple[str, ...]
    targets: tuple[str, ...] = ()
    passes: tuple[int, ...] = (0,)


def googletest(program: str, tests: str, *targets: str) -> Catcher:
    command = ("{build}/tests/" + program, "--gtest_filter=" + tests, "--gtest_brief=1")
    return Catcher(f"{program.rpartition('/')[2]} {tests}", command,
                   (program.rpartition("/")[2], *targets))


def unit(tests: str) -> Catcher:
    return googletest("unit_tests", tests)


def program(tests: str) -> Catcher:
    return googletest("program_tests", tests)


def companion(tests: str) -> Catcher:
    return googletest("companion/companion_tests", tests)


def tersify(tests: str) -> Catcher:
    return googletest("tersify/tersify_tests", tests)


def tools(tests: str) -> Catcher:
    return googletest("tools/tools_tests", tests)


def transcripts(*cases: str) -> Catcher:
    """The named transcripts, or all of them."""
    names = [case.replace("-", "_") for case in cases]
    tests = ":".join(f"*/TranscriptCase.RunsAsWritten/{name}" for name in names)
    catcher = googletest("session_tests", tests or "*")
    return dataclasses.replace(catcher, name=" ".join(["transcripts", *cases]))


def ctest(name: str, *targets: str) -> Catcher:
    """A test by its name in the build."""
    pattern = "^" + name.replace(".", "[.]") + "$"
    command = ("ctest", "--test-dir", "{build}", "--no-tests=error", "--output-on-failure",
               "-R", pattern)
    return Catcher("ctest " + name, command, targets or PROGRAMS)


def documents(module: str) -> Catcher:
    """A module of tests/documents."""
    command = ("python3", "tests/documents/documents_test.py", "{build}", module)
    return Catcher("documents " + module, command, PROGRAMS)


def recipes(language: str) -> Catcher:
    command = ("tests/recipes/run_recipes", "--only", language, "{build}")
    return Catcher("recipes in " + language, command, PROGRAMS)


def script(module: str, *arguments: str) -> Catcher:
    """A module of tests/scripts."""
    command = ("python3", f"tests/scripts/{module}.py", *arguments)
    return Catcher("scripts " + module, command, PROGRAMS)


def faults(name: str) -> Catcher:
    shims = ("failing_calls", "failing_memory")
    return ctest("Faults." + name, *PROGRAMS, *shims)


def random_sessions(count: int = 150) -> Catcher:
    command = ("tests/second_program/random_sessions.py", "--program", "{build}/veldmark",
               "--count", str(count), "--seed", "1")
    return Catcher("random sessions", ("python3", *command), ("veldmark",))


def invariants(count: int = 150) -> Catcher:
    command = ("tests/random_sessions/session_invariants.py", "--program",
               "{build}/veldmark", "--count", str(count), "--seed", "1")
    return Catcher("invariants", ("python3", *command), ("veldmark",))


# The package is installed and run in a clean system, or at least unpacked.
PACKAGE = Catcher("scripts/check_package", ("scripts/check_package", "check"), PROGRAMS,
                  passes=(0, 77))
INSTALLED = script("installed_files_test", "{build}")
SECOND_PROGRAM = Catcher("second program, transcripts",
                         ("python3", "tests/second_program/transcript_sessions.py"))
