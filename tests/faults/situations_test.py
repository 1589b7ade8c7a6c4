#!/usr/bin/env python3
"""Runs the programs in environments that make system calls fail.

    situations_test.py PROGRAM_FOLDER

Full disks, missing permissions, folders in place of files, closed streams, terminals that
hang up, Ctrl-C at a prompt, a file size limit, closed pipes.  PROGRAM_FOLDER holds veldmark,
tersify and series_to_grid.
"""

import fcntl
import os
import pty
import resource
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import termios
import time
import unittest
from itertools import chain, combinations
from pathlib import Path
from typing import Callable, Dict, Iterable, List, Optional, Sequence, Set

from fault_runs import STAND_IN, expect_signals, files_of, status_of
from scene_rules import NORMAL, sparse_grid
from scenes import raw_text, series_text
from session_rules import report, search

TIMEOUT_SECONDS = 60
NOBODY = 65534
YEAR = ("--years", "1901-1901")  # one year of a grid file takes 16 MB
EXPAND = ["series_to_grid", *YEAR, "grid", "series"]

FRS = "cru_ts4.01.1901.2016.frs.dat.new"
TMP = "cru_ts4.01.1901.2016.tmp.dat.new"
OUTPUTS = {".TSF": 14, ".XY": 15, ".ftst": 16}

FIRST_SEARCH = search(9, (250, 251), (10, 11), "1901", "1902", "T", "1", "y", "T", "1902")
SECOND_SEARCH = search(2, (250, 251), (10, 11), "1901", "1901", "T", "1", "y", "F")
ONE_SEARCH = [*FIRST_SEARCH, "F"]
TWO_SEARCHES = [*FIRST_SEARCH, "T", "T", *SECOND_SEARCH, "F"]

PROGRAMS = Path()  # the folder of the built programs


def typed(answers: Iterable[str]) -> bytes:
    """Returns the answers, a line each, without the Ctrl-D that some scenes put in."""
    return "".join(answer.replace("\x04", "") + "\n" for answer in answers).encode()


def cannot_write(name: str, channel: int, why: str) -> str:
    return report("Cannot write file: %s: %s" % (name, why), "WRITE", channel)


class Situation(unittest.TestCase):
    """Runs each test in a new folder with data for all three programs and earlier outputs."""

    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        os.chmod(scratch.name, 0o755)
        self.folder = Path(scratch.name) / "folder"
        self.folder.mkdir()
        bin_folder = Path(scratch.name) / "bin"
        bin_folder.mkdir()
        for command in ("clear", "ls"):
            (bin_folder / command).write_text(STAND_IN % command)
            (bin_folder / command).chmod(0o755)
        # Copied, because another user may not have access to the build folder.
        for program in ("veldmark", "tersify", "series_to_grid"):
            shutil.copy(PROGRAMS / program, bin_folder / program)
        self.environment = dict(os.environ, LC_ALL="C")
        self.environment["PATH"] = "%s:%s" % (bin_folder, os.environ.get("PATH", ""))
        # A sanitizer report must not be mistaken for one of the programs' exit statuses.
        for variable in ("ASAN_OPTIONS", "UBSAN_OPTIONS"):
            options = self.environment.get(variable, "")
            self.environment[variable] = options + ":exitcode=99"
        self.write_files()
        self.earlier = files_of(self.folder)

    def write_files(self) -> None:
        files: Dict[str, bytes] = {
            FRS: sparse_grid(2, 250, 251),
            TMP: sparse_grid(1, 250, 251),
            FRS + ".XY": b"an earlier one\n",
            "notes.txt": b"not ours\n",
            "a.dat": raw_text(100, 1),
            "b.dat": raw_text(100, 2),
            "a.dat.new": b"an earlier copy\n",
            "grid": b"an earlier grid\n",
            "series": series_text(),
        }
        for name, content in files.items():
            (self.folder / name).write_bytes(content)

    def run_program(
        self,
        *command: str,
        answers: bytes = b"",
        output: Optional[str] = None,
        closed: Sequence[int] = (),
        prepare: Optional[Callable[[], None]] = None,
        **more,
    ) -> subprocess.CompletedProcess:
        """Runs a program in the folder.

        output     the file that standard output is redirected to
        closed     the standard streams to close before it starts
        prepare    is called in the child process before it starts
        """

        def before() -> None:
            if prepare:
                prepare()
            for descriptor in closed:
                os.close(descriptor)

        target = open(output, "wb") if output else subprocess.PIPE
        try:
            return subprocess.run(
                command,
                input=answers,
                cwd=self.folder,
                env=self.environment,
                stdout=target,
                stderr=subprocess.PIPE,
                timeout=TIMEOUT_SECONDS,
                preexec_fn=before,
                check=False,
                **more,
            )
        finally:
            if output:
                target.close()

    def expect_unchanged(self, but: Iterable[str] = ()) -> None:
        now = files_of(self.folder)
        for name in set(now) | set(self.earlier):
            if name not in but:
                self.assertEqual(now.get(name), self.earlier.get(name), name)

    def expect(self, result: subprocess.CompletedProcess, status: int, errors: str) -> None:
        self.assertEqual((result.returncode, result.stderr.decode()), (status, errors))


class AFullDisk(Situation):
    def test_stops_saving_for_each_output(self) -> None:
        for ending, channel in OUTPUTS.items():
            name = FRS + ending
            with self.subTest(name):
                shutil.rmtree(self.folder)
                self.folder.mkdir()
                self.write_files()
                self.folder.joinpath(name).unlink(missing_ok=True)
                self.folder.joinpath(name).symlink_to("/dev/full")
                result = self.run_program("veldmark", answers=typed(ONE_SEARCH))
                self.expect(result, 255, cannot_write(name, channel, "No space left on device"))
                self.assertNotIn(NORMAL, result.stdout)
                self.assertTrue(self.folder.joinpath(name).is_symlink())
                self.folder.joinpath(name).unlink()
                self.expect_unchanged(but=[FRS + end for end in OUTPUTS])

    def test_stops_the_conversation(self) -> None:
        result = self.run_program("veldmark", answers=typed(ONE_SEARCH), output="/dev/full")
        text = cannot_write("standard output", 5, "No space left on device")
        self.assertEqual(result.returncode, 255)
        self.assertTrue(result.stderr.decode().endswith(text), result.stderr)
        self.expect_unchanged()

    def test_on_standard_output_is_reported(self) -> None:
        for command in (
            ("veldmark", "--help"),
            ("tersify", "--help"),
            ("tersify", "--check", "a.dat.new"),
            ("tersify", "b.dat"),
            ("series_to_grid", "--help"),
        ):
            with self.subTest(" ".join(command)):
                result = self.run_program(*command, output="/dev/full")
                self.assertIn(result.returncode, (1, 255))
                self.assertIn(b"standard output", result.stderr)
        self.expect_unchanged(but=["b.dat.new"])

    def test_device_is_not_replaced(self) -> None:
        for command, name in ((("tersify", "b.dat"), "b.dat.new"), (EXPAND, "grid")):
            with self.subTest(name):
                self.folder.joinpath(name).unlink(missing_ok=True)
                self.folder.joinpath(name).symlink_to("/dev/full")
                result = self.run_program(*command)
                self.assertEqual(result.returncode, 1)
                self.assertIn(b"it exists and is not a regular file\n", result.stderr)
                self.assertTrue(self.folder.joinpath(name).is_symlink())
                self.folder.joinpath(name).unlink()
        self.expect_unchanged(but=["grid"])

    def test_on_standard_error_does_not_fail_a_complete_file(self) -> None:
        with open("/dev/full", "wb") as full:
            status = subprocess.run(
                EXPAND,
                cwd=self.folder,
                env=self.environment,
                stderr=full,
                timeout=TIMEOUT_SECONDS,
                check=False,
            ).returncode
        self.assertEqual(status, 0)
        self.assertEqual(self.folder.joinpath("grid").stat().st_size, 3601 * 4320)


class AFolderWithoutPermission(Situation):
    """Runs the programs as an unprivileged user if the test is run by root."""

    def setUp(self) -> None:
        super().setUp()
        self.user = {}
        if os.geteuid() == 0:
            self.user = {"user": NOBODY, "group": NOBODY, "extra_groups": []}

    def test_of_an_unwritable_folder_is_reported(self) -> None:
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o755)
        for command, status, text in (
            (["veldmark"], 255, report("Cannot open file: %s.TSF" % FRS, "OPEN", 14)),
            (["tersify", "a.dat"], 1, "tersify: cannot write 'a.dat.new.part': Permission denied\n"),
            (
                EXPAND,
                1,
                "series_to_grid: cannot write 'grid.part': Permission denied\n",
            ),
        ):
            with self.subTest(command[0]):
                result = self.run_program(*command, answers=typed(ONE_SEARCH), **self.user)
                self.assertEqual(result.returncode, status)
                self.assertTrue(result.stderr.decode().startswith(text), result.stderr)
                self.expect_unchanged()

    def test_of_an_unreadable_input_is_reported(self) -> None:
        for name in (FRS, "a.dat", "series"):
            self.folder.joinpath(name).chmod(0o000)
        result = self.run_program("veldmark", answers=typed(ONE_SEARCH), **self.user)
        self.expect(result, 255, report("Cannot open file: " + FRS, "OPEN", 13))
        result = self.run_program("tersify", "a.dat", **self.user)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"tersify: cannot read 'a.dat': Permission denied\n", result.stderr)
        result = self.run_program(*EXPAND, **self.user)
        self.expect(result, 1, "series_to_grid: cannot read 'series': Permission denied\n")
        for name in (FRS, "a.dat", "series"):
            self.folder.joinpath(name).chmod(0o644)
        self.expect_unchanged()

    def test_keeps_a_protected_output(self) -> None:
        self.folder.chmod(0o777)
        self.folder.joinpath(FRS + ".XY").chmod(0o444)
        self.earlier = files_of(self.folder)
        result = self.run_program("veldmark", answers=typed(ONE_SEARCH), **self.user)
        self.expect(result, 255, report("Cannot open file: %s.XY" % FRS, "OPEN", 15))
        self.expect_unchanged(but=[FRS + ".TSF"])


class AFolderInPlaceOfAFile(Situation):
    def test_is_no_data_file(self) -> None:
        self.folder.joinpath(FRS).unlink()
        self.earlier.pop(FRS)
        self.folder.joinpath(FRS).mkdir()
        result = self.run_program("veldmark", answers=typed(ONE_SEARCH))
        self.expect(result, 255, report("Cannot open file: " + FRS, "OPEN", 13))
        self.folder.joinpath(FRS).rmdir()
        self.expect_unchanged()

    def test_is_no_output(self) -> None:
        for ending, channel in OUTPUTS.items():
            name = FRS + ending
            with self.subTest(name):
                path = self.folder / name
                path.unlink(missing_ok=True)
                path.mkdir()
                result = self.run_program("veldmark", answers=typed(ONE_SEARCH))
                self.expect(result, 255, report("Cannot open file: " + name, "OPEN", channel))
                self.assertNotIn(NORMAL, result.stdout)
                path.rmdir()
        self.expect_unchanged(but=[FRS + end for end in OUTPUTS])

    def test_is_reported_by_the_companions(self) -> None:
        for command, name, text in (
            (["tersify", "b.dat"], "b.dat", "cannot read 'b.dat': Is a directory"),
            (["tersify", "a.dat"], "a.dat.new", "'a.dat.new': it exists and is not"),
            (["tersify", "a.dat"], "a.dat.new.part", "'a.dat.new.part': Is a directory"),
            (["tersify", "--check", "b.dat"], "b.dat", "cannot read 'b.dat': Is a directory"),
            (["tersify", "--list", "b.dat"], "b.dat", "cannot read 'b.dat': Is a directory"),
            (EXPAND, "grid", "'grid': it exists and is not"),
            (EXPAND, "grid.part", "'grid.part': Is a directory"),
            (EXPAND, "series", "cannot read 'series': Is a directory"),
        ):
            with self.subTest((command, name)):
                path = self.folder / name
                content = path.read_bytes() if path.exists() else None
                path.unlink(missing_ok=True)
                path.mkdir()
                result = self.run_program(*command)
                self.assertEqual(result.returncode, 1, result)
                self.assertIn(text, result.stderr.decode())
                path.rmdir()
                if content is not None:
                    path.write_bytes(content)
                self.expect_unchanged()


class ClosedStreams(Situation):
    """The first file that a program opens may get the descriptor of a closed stream."""

    def test_leave_no_text_in_a_file(self) -> None:
        for command, outputs in {
            ("veldmark",): [FRS + ending for ending in OUTPUTS],
            ("tersify", "a.dat", "b.dat"): ["a.dat.new", "b.dat.new"],
            tuple(EXPAND): ["grid"],
        }.items():
            self.assertEqual(self.run_program(*command, answers=typed(ONE_SEARCH)).returncode, 0)
            complete = files_of(self.folder)
            for closed in chain.from_iterable(combinations(range(3), n) for n in (1, 2, 3)):
                with self.subTest((command[0], closed)):
                    self.restore(outputs)
                    result = self.run_program(*command, answers=typed(ONE_SEARCH), closed=closed)
                    self.expect_status(command[0], set(closed), result.returncode)
                    self.expect_whole_or_untouched(complete, result.returncode == 0)
            self.restore(outputs)

    def restore(self, outputs: Iterable[str]) -> None:
        for name in outputs:
            self.folder.joinpath(name).unlink(missing_ok=True)
        self.write_files()

    def expect_status(self, program: str, closed: Set[int], status: int) -> None:
        if program == "veldmark":
            self.assertEqual(status, 255 if closed & {0, 1} else 0)
        elif program == "tersify":  # which reports each copy on standard output
            self.assertEqual(status, 1 if 1 in closed else 0)
        else:
            self.assertEqual(status, 0)

    def expect_whole_or_untouched(self, complete: Dict[str, bytes], whole: bool) -> None:
        now = files_of(self.folder)
        self.assertLessEqual(set(now), set(complete))
        for name, content in complete.items():
            allowed = [content] if whole else [content, self.earlier.get(name)]
            self.assertTrue(now.get(name) in allowed, name)

    def test_end_the_conversation(self) -> None:
        result = self.run_program("veldmark", answers=typed(ONE_SEARCH), closed=[1])
        text = cannot_write("standard output", 5, "Bad file descriptor")
        self.assertEqual(result.returncode, 255)
        self.assertTrue(result.stderr.decode().endswith(text), result.stderr)
        result = self.run_program("veldmark", closed=[0])
        self.assertEqual(result.returncode, 255)
        self.assertTrue(result.stderr.endswith(b"\n? READ(UNIT=5,...\n"), result.stderr)
        self.expect_unchanged()


class ClosedPipe(Situation):
    def test_kills_no_program_by_a_signal(self) -> None:
        for command, stream in (
            (["veldmark"], "stdout"),
            (["tersify", "b.dat"], "stdout"),
            (["tersify", "--check", "a.dat.new"], "stdout"),
            (["tersify", "no.dat"], "stderr"),
            (["series_to_grid", "--help"], "stdout"),
            (["series_to_grid", *YEAR, "g", "series"], "stderr"),
            (["series_to_grid", *YEAR, "g", "no-series"], "stderr"),
        ):
            with self.subTest((command, stream)):
                read_end, write_end = os.pipe()
                os.close(read_end)
                streams = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
                streams[stream] = write_end
                status = subprocess.run(
                    command,
                    input=typed(ONE_SEARCH),
                    cwd=self.folder,
                    env=self.environment,
                    timeout=TIMEOUT_SECONDS,
                    check=False,
                    **streams,
                ).returncode
                os.close(write_end)
                self.assertIn(status, (0, 1, 255))
        self.expect_unchanged(but=["b.dat.new", "g"])


class ALimitOnTheSizeOfFiles(Situation):
    def test_is_a_failed_write_like_any_other(self) -> None:
        def limit() -> None:
            resource.setrlimit(resource.RLIMIT_FSIZE, (20, 20))

        for command, status, name in (
            (["veldmark"], 255, FRS + ".TSF"),
            (["tersify", "a.dat"], 1, "'a.dat.new.part'"),
            (EXPAND, 1, "'grid.part'"),
        ):
            with self.subTest(command[0]):
                answers = typed(ONE_SEARCH)
                result = self.run_program(*command, answers=answers, prepare=limit)
                self.assertEqual(result.returncode, status, result.stderr)
                self.assertIn("%s: File too large" % name, result.stderr.decode())
                self.assertNotIn(NORMAL, result.stdout)
        self.expect_unchanged(but=[FRS + ending for ending in OUTPUTS])


class Terminal:
    """Runs one program on a pseudo-terminal."""

    def __init__(self, situation: Situation, *command: str, ignore_hangup: bool = False) -> None:
        self.terminal_master, terminal = pty.openpty()
        self.closed = False
        self.screen = b""

        def take_terminal() -> None:
            fcntl.ioctl(0, termios.TIOCSCTTY, 0)
            if ignore_hangup:
                signal.signal(signal.SIGHUP, signal.SIG_IGN)

        self.process = subprocess.Popen(
            command,
            cwd=situation.folder,
            env=situation.environment,
            stdin=terminal,
            stdout=terminal,
            stderr=terminal,
            start_new_session=True,
            preexec_fn=take_terminal,
        )
        os.close(terminal)
        situation.addCleanup(self.end)

    def type(self, answers: Iterable[str]) -> None:
        os.write(self.terminal_master, typed(answers))

    def wait_for(self, text: bytes) -> None:
        """Reads the screen until `text` is on it."""
        deadline = time.monotonic() + TIMEOUT_SECONDS
        while text not in self.screen:
            ready, _, _ = select.select([self.terminal_master], [], [], deadline - time.monotonic())
            if not ready:
                raise AssertionError("%r never came: %r" % (text, self.screen[-300:]))
            self.screen += os.read(self.terminal_master, 1 << 16)

    def press_interrupt(self) -> None:
        os.write(self.terminal_master, b"\x03")

    def hang_up(self) -> None:
        if not self.closed:
            os.close(self.terminal_master)
            self.closed = True

    def status(self) -> Optional[int]:
        return status_of(self.process)

    def end(self) -> None:
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.hang_up()


class Prompt:
    """A prompt of a session: the answers before it, and the text that it ends with."""

    def __init__(self, typed_before: Sequence[str], text: str, begun: Sequence[str]) -> None:
        self.typed_before = typed_before
        self.text = text.encode()
        self.begun = begun  # the outputs opened before this prompt


def prompts() -> List[Prompt]:
    first = [FRS + ending for ending in OUTPUTS]
    second = [TMP + ".TSF", TMP + ".XY"]
    saved = len(FIRST_SEARCH)
    return [
        Prompt([], "Hit RETURN to CONTINUE\r\n", []),
        Prompt(TWO_SEARCHES[:2], "from 0 to 11 ==> ", []),
        Prompt(TWO_SEARCHES[:5], "[TOP]   ==> ", first[:2]),
        Prompt(TWO_SEARCHES[: saved - 2], "[T]rue or [F]alse ==> ", first[:2]),
        Prompt(TWO_SEARCHES[:saved], "[t]rue [f]alse ==> ", first),
        Prompt(TWO_SEARCHES[: saved + 2 + 5], "[TOP]   ==> ", first + second),
        Prompt(TWO_SEARCHES[:-1], "[t]rue [f]alse ==> ", first + second),
    ]


class AtAPrompt(Situation):
    def setUp(self) -> None:
        super().setUp()
        result = self.run_program("veldmark", answers=typed(TWO_SEARCHES))
        self.assertEqual(result.returncode, 0)
        self.complete = files_of(self.folder)
        for name in set(self.complete) - set(self.earlier):
            self.folder.joinpath(name).unlink()

    def start(self, prompt: Prompt, **more) -> Terminal:
        self.write_files()
        for name in set(self.complete) - set(self.earlier):
            self.folder.joinpath(name).unlink(missing_ok=True)
        terminal = Terminal(self, "veldmark", **more)
        terminal.wait_for(b"Hit RETURN to CONTINUE\r\n")
        terminal.screen = b""
        if not prompt.typed_before:
            return terminal
        terminal.type(prompt.typed_before)
        self.wait_for_reading(terminal, prompt.text)
        return terminal

    def wait_for_reading(self, terminal: Terminal, text: bytes) -> None:
        """Waits until the screen ends with `text` and nothing follows for 0.3 seconds."""
        deadline = time.monotonic() + TIMEOUT_SECONDS
        while True:
            ready, _, _ = select.select([terminal.terminal_master], [], [], 0.3)
            if ready:
                terminal.screen += os.read(terminal.terminal_master, 1 << 16)
            elif terminal.screen.endswith(text):
                return
            if time.monotonic() > deadline:
                self.fail("no prompt %r: %r" % (text, terminal.screen[-300:]))

    def expect_files(self, prompt: Prompt, terminal: Terminal) -> None:
        """Expects outputs reported as saved to be complete, and unopened ones unchanged."""
        now = files_of(self.folder)
        claims = terminal.screen.count(NORMAL.rstrip())
        claimed: List[str] = []
        if claims > 0:
            claimed += [FRS + ending for ending in OUTPUTS]
        if claims > 1:
            claimed += [TMP + ".TSF", TMP + ".XY"]
        for name in claimed:
            self.assertEqual(now.get(name), self.complete[name], name)
        for name in set(self.earlier) | set(now):
            if name not in prompt.begun:
                self.assertEqual(now.get(name), self.earlier.get(name), name)

    def test_an_interrupt_ends_the_program(self) -> None:
        for prompt in prompts():
            with self.subTest(prompt.text, before=len(prompt.typed_before)):
                terminal = self.start(prompt)
                terminal.press_interrupt()
                self.assertEqual(terminal.status(), -signal.SIGINT)
                self.expect_files(prompt, terminal)

    def test_a_terminal_that_goes_away_ends_the_program(self) -> None:
        for prompt in prompts():
            with self.subTest(prompt.text, before=len(prompt.typed_before)):
                terminal = self.start(prompt)
                terminal.hang_up()
                self.assertEqual(terminal.status(), -signal.SIGHUP)
                self.expect_files(prompt, terminal)

    def test_the_end_of_the_terminal_is_noticed_without_the_signal(self) -> None:
        for prompt in prompts():
            with self.subTest(prompt.text, before=len(prompt.typed_before)):
                terminal = self.start(prompt, ignore_hangup=True)
                terminal.hang_up()
                self.assertEqual(terminal.status(), 255)
                self.expect_files(prompt, terminal)

    def test_tersify_ends_as_well(self) -> None:
        for how, status in (
            (Terminal.press_interrupt, -signal.SIGINT),
            (Terminal.hang_up, -signal.SIGHUP),
        ):
            with self.subTest(how.__name__):
                terminal = Terminal(self, "tersify")
                terminal.wait_for(b"LIST FILE ==> ")
                how(terminal)
                self.assertEqual(terminal.status(), status)
        terminal = Terminal(self, "tersify", ignore_hangup=True)
        terminal.wait_for(b"LIST FILE ==> ")
        terminal.hang_up()
        self.assertIn(terminal.status(), (1, 2))


if __name__ == "__main__":
    expect_signals()
    PROGRAMS = Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
