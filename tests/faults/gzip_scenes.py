"""Scenes in which Tersify reads compressed files."""

import gzip
import re
from pathlib import Path
from typing import Dict, List, Optional

from fault_runs import Bench, Content, Fault
from part_file_rules import PartFiles
from scene_rules import MEMORY_CALLS, NOTES
from scenes import raw_text

NAME = "a.dat.gz"
COPY = "a.dat.new"


class GzipFile(PartFiles):
    """Tersify condenses one compressed file."""

    def __init__(self, bench: Bench, programs: Path, text: bytes) -> None:
        files: Dict[str, Content] = {
            NAME: gzip.compress(text, mtime=0),
            COPY: b"an earlier copy\n",
            NOTES: b"not ours\n",
        }
        super().__init__(bench, [str(programs / "tersify"), NAME], files, {COPY: NAME})

    def messages(self, fault: Fault) -> List[Optional[str]]:
        found = super().messages(fault)
        return [one and one.replace(r"'a\.dat'", r"'a\.dat\.gz'") for one in found]

    def last_line(self, fault: Fault) -> str:
        closing = "tersify: not condensed: '%s'\n" % re.escape(NAME)
        if fault.name in MEMORY_CALLS:
            return "(%s)?" % closing
        is_of_copy = fault.file in (NAME, COPY, COPY + ".part")
        return closing if is_of_copy else ""


def tersify_gzip(bench: Bench, programs: Path) -> GzipFile:
    """A text that takes several reads and writes."""
    return GzipFile(bench, programs, raw_text(200, 4))


def tersify_gzip_refusal(bench: Bench, programs: Path) -> GzipFile:
    """A bad line in the text: the rest of the file is read before it is reported."""
    return GzipFile(bench, programs, raw_text(100, 5) + b"1 2 three\n" + raw_text(100, 6))


SCENES = {"tersify-gzip": tersify_gzip, "tersify-gzip-refusal": tersify_gzip_refusal}
