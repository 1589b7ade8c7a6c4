"""Runs a program in a fresh folder, without a fault or with one altered system call.

A `Scene` is a program with its arguments, its answers and the files in its folder.
`Scene.run` plays it under the shim `failing_calls.cc` and returns the outcome and the
system calls that were made.
"""

import errno
import os
import pty
import select
import shutil
import signal
import subprocess
import tempfile
import termios
from dataclasses import dataclass, field
from pathlib import Path
from typing import Dict, List, Optional, Sequence, Tuple, Union

TIMEOUT_SECONDS = 60
LARGE = 1 << 20  # bytes; larger linked files are compared by size and time, not by content
END_OF_INPUT = b"\x04"

# `clear` and `ls` print a line, so that they and their place on the screen are compared.
STAND_IN = '#!/bin/sh\necho "$ %s $*"\n'


def expect_signals() -> None:
    """Restores the default signal handling. A test started in the background or by nohup,
    and the programs that it starts, would ignore these signals."""
    signal.signal(signal.SIGINT, signal.default_int_handler)
    signal.signal(signal.SIGHUP, signal.SIG_DFL)


@dataclass(frozen=True)
class Fault:
    """The altered call and how it is altered; see failing_calls.cc."""

    name: str
    file: str
    number: int
    what: str
    lasting: bool = False

    def text(self) -> str:
        words = [self.name, self.file, str(self.number), self.what]
        return "\t".join(words + (["on"] if self.lasting else []))

    def error(self) -> Optional[int]:
        """Returns the errno that the call fails with."""
        kind, _, value = self.what.partition("=")
        return int(value) if kind == "error" else None

    def __str__(self) -> str:
        what = self.what
        if self.error() is not None:
            what = errno.errorcode[self.error()]
        elif what.startswith("signal="):
            what = signal.Signals(int(what[7:])).name
        on = " and all after it" if self.lasting else ""
        return "%s of %s no. %d%s: %s" % (self.name, self.file, self.number, on, what)


@dataclass(frozen=True)
class Call:
    """A system call as logged by the shim."""

    name: str
    file: str
    number: int
    size: int
    result: int
    faulty: bool


@dataclass
class Outcome:
    """What a run left behind."""

    status: Optional[int]  # -N after signal N, None after a timeout
    screen: bytes
    errors: bytes
    files: Dict[str, bytes]  # mode and content; of a large linked file size and time
    calls: List[Call] = field(default_factory=list)

    def differs_from(self, other: "Outcome") -> str:
        """Returns what differs, "" if nothing does."""
        found = []
        if self.status != other.status:
            found.append("status %s, not %s" % (self.status, other.status))
        for what in ("screen", "errors"):
            if getattr(self, what) != getattr(other, what):
                found.append("%s: %r" % (what, getattr(self, what)[-300:]))
        for name in sorted(set(self.files) | set(other.files)):
            if self.files.get(name) != other.files.get(name):
                found.append("the file %s" % name)
        return "; ".join(found)


class Bench:
    """The shim, the stand-ins and a folder for all runs."""

    def __init__(self, shim: str, folder: str) -> None:
        self.shim = os.path.abspath(shim)
        self.folder = Path(folder)
        stand_ins = self.folder / "bin"
        stand_ins.mkdir()
        for command in ("clear", "ls"):
            path = stand_ins / command
            path.write_text(STAND_IN % command)
            path.chmod(0o755)
        self.environment = dict(os.environ, LC_ALL="C")
        self.environment["PATH"] = "%s:%s" % (stand_ins, os.environ.get("PATH", ""))
        # A sanitized program refuses a library that is loaded before its run-time library;
        # and its findings must not end it with one of the program's own statuses.
        for variable in ("ASAN_OPTIONS", "UBSAN_OPTIONS"):
            options = self.environment.get(variable, "") + ":exitcode=99"
            self.environment[variable] = options + ":verify_asan_link_order=0"

    def with_shim(self, log: Path, fault: Optional[Fault]) -> Dict[str, str]:
        environment = dict(self.environment, LD_PRELOAD=self.shim)
        environment["VELDMARK_CALL_LOG"] = str(log)
        if fault:
            environment["VELDMARK_FAULT"] = fault.text()
        return environment


# A file's content, or a file that is linked instead of copied.
Content = Union[bytes, Path]


@dataclass
class Scene:
    bench: Bench
    command: Sequence[str]
    files: Dict[str, Content]
    answers: Optional[Sequence[str]] = None  # typed at a terminal, one read per line
    waits_for: Sequence[str] = ()  # streams that may be set to non-blocking

    def run(self, fault: Optional[Fault] = None) -> Outcome:
        with tempfile.TemporaryDirectory(dir=self.bench.folder) as scratch:
            folder = Path(scratch) / "folder"
            folder.mkdir()
            self.write_files(folder, fault)
            log = Path(scratch) / "calls"
            environment = self.bench.with_shim(log, fault)
            with open(Path(scratch) / "screen", "w+b") as screen, open(
                Path(scratch) / "errors", "w+b"
            ) as errors:
                status = self.play(folder, environment, screen, errors)
                screen.seek(0)
                errors.seek(0)
                outcome = Outcome(status, screen.read(), errors.read(), {})
            outcome.files = files_of(folder)
            if fault and fault.what.startswith("shrink"):
                # The shim cut the file, not the program.
                outcome.files[fault.file] = self.at_first[fault.file]
            outcome.calls = read_log(log)
            return outcome

    def __post_init__(self) -> None:
        # The files as they are before a run.
        with tempfile.TemporaryDirectory(dir=self.bench.folder) as scratch:
            self.write_files(Path(scratch), None)
            self.at_first = files_of(Path(scratch))

    def wrong_order(self, baseline: Outcome) -> str:
        """Returns what is wrong with the order of the calls in a run without a fault, "" if
        nothing is."""
        del baseline
        return ""

    def leaves_out(self, call: Call) -> bool:
        """Returns whether a call is never made to fail."""
        del call
        return False

    def write_files(self, folder: Path, fault: Optional[Fault]) -> None:
        for name, content in self.files.items():
            target = folder / name
            if isinstance(content, bytes):
                target.write_bytes(content)
                target.chmod(0o640)  # which a new file would not get by itself
            elif fault and fault.what.startswith("shrink") and fault.file == name:
                shutil.copyfile(content, target)
            else:
                os.link(content, target)

    def size_of(self, name: str) -> int:
        content = self.files[name]
        return len(content) if isinstance(content, bytes) else content.stat().st_size

    def play(self, folder: Path, environment: Dict[str, str], screen, errors) -> Optional[int]:
        """Returns the exit status, None if the program had to be killed."""
        terminal_master, terminal = pty.openpty()
        try:
            source = subprocess.DEVNULL
            if self.answers is not None:
                type_ahead(terminal_master, terminal, self.answers)
                source = terminal
            process = subprocess.Popen(
                self.command,
                cwd=folder,
                env=environment,
                stdin=source,
                stdout=screen,
                stderr=errors,
            )
            return status_of(process)
        finally:
            os.close(terminal_master)
            os.close(terminal)


def status_of(process: subprocess.Popen) -> Optional[int]:
    """Waits for the end of a process; `Popen.wait` with a timeout polls, which is slow."""
    watch = os.pidfd_open(process.pid)
    ended, _, _ = select.select([watch], [], [], TIMEOUT_SECONDS)
    os.close(watch)
    if not ended:
        process.kill()
    status = process.wait()
    return status if ended else None


def type_ahead(terminal_master: int, terminal: int, answers: Sequence[str]) -> None:
    """Types all answers in advance, then the end of the input several times."""
    attributes = termios.tcgetattr(terminal)
    attributes[3] &= ~termios.ECHO
    termios.tcsetattr(terminal, termios.TCSANOW, attributes)
    text = "".join(answer + "\n" for answer in answers).encode()
    os.write(terminal_master, text + END_OF_INPUT * 4)


def files_of(folder: Path) -> Dict[str, bytes]:
    found = {}
    for entry in os.scandir(folder):
        about = entry.stat(follow_symlinks=False)
        mode = b"%o " % about.st_mode
        if about.st_nlink > 1 and about.st_size > LARGE:
            found[entry.name] = mode + b"%d, %d" % (about.st_size, about.st_mtime_ns)
        else:
            found[entry.name] = mode + Path(entry.path).read_bytes()
    return found


def read_log(log: Path) -> List[Call]:
    calls = []
    for line in log.read_text().splitlines():
        name, file, number, size, result, *mark = line.split("\t")
        calls.append(Call(name, file, int(number), int(size), int(result), bool(mark)))
    return calls


def end_of(outcome: Outcome) -> Tuple[Optional[int], bytes, bytes]:
    """Returns status and the end of the output, for messages."""
    return outcome.status, outcome.screen[-200:], outcome.errors[-300:]
