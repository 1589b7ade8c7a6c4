"""What must follow a fault in a program that writes NAME.part and renames it."""

import errno
import os
import re
import signal
from typing import Dict, List, Optional, Sequence

from fault_runs import Bench, Call, Content, Fault, Outcome, Scene, end_of
from scene_rules import (
    FOLDER,
    REMOVING_CALLS,
    MEMORY_CALLS,
    RENAMING_CALLS,
    HARMLESS_CALLS,
    PART_CALLS,
    is_at_the_end,
    is_failed_message,
    is_retried,
    reason,
)

# The messages for a file that ends early, wherever it was cut or truncated.
SHORTER = r"tersify: cannot read 'NAME': it has become shorter\n"
CONDENSES_NO_PART = (
    SHORTER + r"|tersify: 'NAME': line \d+, field \d+: the line ends before it; a line holds 720"
    r" integers \(the file ends in this line\)\n|tersify: 'NAME': the file is empty\n"
    r"|tersify: the list 'NAME' names no file\n"
    r"|tersify: cannot read 'a.da': No such file or directory\ntersify: not condensed: 'a.da'\n"
)
CHECK_ENDS_EARLY = (
    SHORTER + r"|'NAME': line \d+ \(year 1901, January, row \d+\), column \d+: the file ends in"
    r" this line, after \d+ of 3600 characters\n|'NAME': the file ends after \d+ of 501120 lines;"
    r" the next is line \d+ \(year 1901, January, row \d+\)\n"
)
SERIES_END_EARLY = (
    r"series_to_grid: line \d+: the line end is missing; the series may be cut short\n"
    r"|series_to_grid: line 1: the header is missing; the input is empty\n"
)
NO_LIST_FILE = (
    "the input ended before a list file was named\n"
    "Try 'tersify --help' for more information.\n"
)


class PartFiles(Scene):
    """A companion program, which writes NAME.part and renames it.

    sources           the source file of each output
    early_end         pattern of the messages for a file that ends early; NAME stands for
                      the file
    notes             pattern of the messages that may come before
    """

    notes = ""
    ORDER = "flock (write )+fsync "  # the calls on a part before it is renamed
    FOLDER_IS_SYNCED = True  # after that

    def __init__(
        self,
        bench: Bench,
        command: Sequence[str],
        files: Dict[str, Content],
        sources: Dict[str, str],
        early_end: str = CONDENSES_NO_PART,
        **more,
    ) -> None:
        super().__init__(bench, command, files, **more)
        self.early_end = early_end
        self.program = os.path.basename(command[0])
        self.condenses = self.program == "tersify" and "--check" not in command
        self.sources = sources

    def wrong_order(self, baseline: Outcome) -> str:
        """A part must be locked before it is written and until it is renamed, and be on the
        disk by then; its new name must be on the disk at once."""
        for index, call in enumerate(baseline.calls):
            if call.name not in RENAMING_CALLS:
                continue
            names = [one.name for one in baseline.calls[:index] if one.file == call.file]
            opened = len(names) - names[::-1].index("openat")
            steps = [name for name in names[opened:] if name in PART_CALLS]
            if not re.fullmatch(self.ORDER, "".join(step + " " for step in steps)):
                return "%s is renamed after: %s" % (call.file, " ".join(steps))
            following = [(one.name, one.file) for one in baseline.calls[index + 1 : index + 3]]
            if self.FOLDER_IS_SYNCED and following != [("openat", "."), ("fsync", "folder")]:
                return "%s is renamed, and then: %s" % (call.file, following)
        return ""

    def complaint(self, baseline: Outcome, fault: Fault, call: Call, outcome: Outcome) -> str:
        if fault.file.endswith(".part") and fault.name in REMOVING_CALLS:
            outcome.files.pop(fault.file, None)  # a part that can't be removed stays
        for name in [name for name in self.at_first if name.endswith(".part")]:
            if outcome.files.get(name) == self.at_first[name]:
                outcome.files.pop(name)  # an abandoned part; the run ended before it got there
        found = self.broken_rule(baseline, fault, outcome)
        if found or fault.what.startswith("signal"):
            return found
        if is_failed_message(fault):
            return "" if outcome.status == baseline.status else "status %s" % outcome.status
        expected = self.messages(fault)
        if is_at_the_end(fault, call):
            expected = [None]
        differences = outcome.differs_from(baseline)
        if None in expected and (not differences or expected == [None]):
            return differences
        said = outcome.errors.decode() or outcome.screen.decode()
        if outcome.status == 0 or "Success" in said:
            return "ended with %s" % (end_of(outcome),)
        closing = self.last_line(fault)
        patterns = ["%s(%s)%s" % (self.notes, text, closing) for text in expected if text]
        if any(re.fullmatch(pattern, said) for pattern in patterns):
            return ""
        return "said %r" % said

    def last_line(self, fault: Fault) -> str:
        """Returns the pattern of the last line of Tersify after a failure in one of its files."""
        if fault.name in MEMORY_CALLS:
            return r"(tersify: not condensed: '[ab]\.dat'\n)?"
        name = re.sub(r"(\.new)?(\.part)?$", "", fault.file)
        if self.condenses and name in self.files and name != "list":
            return "tersify: not condensed: '%s'\n" % re.escape(name)
        return ""

    def broken_rule(self, baseline: Outcome, fault: Fault, outcome: Outcome) -> str:
        """Returns which rule is broken that holds for every fault, "" if none is."""
        statuses = [0, 1, 2]
        if fault.what.startswith("signal"):
            # The usual status if the signal came too late to have an effect.
            statuses = [baseline.status, 128 + signal.SIGINT, -signal.SIGINT]
        if outcome.status not in statuses:
            return "ended with %s" % (end_of(outcome),)
        complete = True
        for name in sorted(set(self.at_first) | set(outcome.files)):
            content = outcome.files.get(name)
            if name.endswith(".part") and content is None:
                continue
            if name in self.sources and content == baseline.files[name]:
                continue
            complete = complete and name not in self.sources
            said = outcome.screen + outcome.errors
            if name in self.sources and b"wrote '%s':" % name.encode() in said:
                return "claims to have written " + name
            if content != self.at_first.get(name):
                return "the file %s changed: %s" % (name, end_of(outcome))
        for name in self.sources:
            complete = complete and name in outcome.files
        if outcome.status == 0 and not complete and baseline.status == 0:
            return "ended with %s" % (end_of(outcome),)
        return ""

    def messages(self, fault: Fault) -> List[Optional[str]]:
        """Returns patterns of the messages allowed on standard error; None in the list allows a
        run like the one without a fault."""
        program = self.program + ": "
        if is_retried(fault):
            return [None]
        if fault.name == "fcntl" or fault.file == "terminal":
            # The program looks at its terminal again when it reads from it.
            if fault.error() is None:
                return [None, program + NO_LIST_FILE]
            return [None, program + "cannot read the standard input: %s\n" % reason(fault)]
        if fault.file in (".", FOLDER):
            return [None]  # the file is complete even if its folder is not synced
        if fault.name in MEMORY_CALLS:
            # The C library turns it into an errno.
            lacks = "(not enough memory|Cannot allocate memory)"
            refused = r"(tersify: 'a\.dat': line 101, field 3: 'three' is not an integer\n)?"
            where = r"('\S+': |cannot (read|write) '\S+': )?"
            return [None, refused + program + where + lacks + "\n"]
        if fault.file == "standard-output":
            return [program + "cannot write to standard output\n"]
        if fault.name == "close":
            return [None]
        if fault.file.endswith(".part"):
            return self.messages_of_part(program, fault)
        return self.messages_of_source(program, fault)

    def messages_of_part(self, program: str, fault: Fault) -> List[Optional[str]]:
        part = re.escape(fault.file)
        output = re.escape(fault.file[: -len(".part")])
        if fault.name == "flock":
            busy = "cannot write '%s': another run is writing it\n" % output
            return [program + busy if fault.error() == errno.EWOULDBLOCK else None]
        if fault.name == "fsync" and fault.error() == errno.EINVAL:
            return [None]  # some file systems can't sync
        if fault.name == "rename":
            return [program + "cannot write '%s': %s\n" % (output, reason(fault))]
        message = program + "cannot write '%s': %s\n" % (part, reason(fault))
        if fault.name in ("fstat", "fstatat"):
            # The program could not see whether the name still refers to the part.
            gone = "cannot write '%s': '%s' was removed or replaced meanwhile\n"
            return [None, program + gone % (output, part)]
        if fault.file in self.at_first and fault.name in ("openat", "unlink"):
            return [None, message]  # a part that an earlier run left
        return [None] if fault.name in HARMLESS_CALLS else [message]

    def messages_of_source(self, program: str, fault: Fault) -> List[Optional[str]]:
        if fault.name in HARMLESS_CALLS:
            # A file is refused only if its kind and size can't be determined.
            opened = fault.name == "fstat" and fault.number == 1
            if not (opened and fault.file in self.files):
                return [None]
        if fault.error() is None:
            return [self.early_end.replace("NAME", re.escape(fault.file))]
        name = re.escape(fault.file)
        return [program + "cannot read '%s': %s\n" % (name, reason(fault))]
