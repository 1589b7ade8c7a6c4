"""Runs the transcripts of tests/sessions through the second program.

    transcript_sessions.py [CASE ...]

Each transcript is prepared and typed as it stands; screen, standard error, exit status and
all files, their kinds and modes, must be what it says. So the expected output of every
transcript rests on two programs, written in two languages, and on the person who read it.
"""

import os
import re
import stat
import subprocess
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
SESSIONS = HERE.parent / "sessions"
MONTHS = 12
ROWS = 360
LEAST_CASES = 107  # raise it when adding cases; fewer means that some were lost


def data_file_name(variable):
    if variable == "scPDSI":
        return "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new"
    return f"cru_ts4.01.1901.2016.{variable}.dat.new"


class Grid:
    """A grid file with full lines for some rows and empty lines for the others."""

    def __init__(self, last_year, first_row, last_row, missing):
        full = f"{missing:5d}" * 720
        self.lines = [
            full if first_row <= index % ROWS + 1 <= last_row else ""
            for index in range((last_year - 1900) * MONTHS * ROWS)
        ]
        self.line_end = "\n"
        self.end = None

    @staticmethod
    def index(year, month, row):
        return ((year - 1901) * MONTHS + month - 1) * ROWS + row - 1

    def set_field(self, year, month, row, column, five):
        index = self.index(year, month, row)
        begin = (column - 1) * 5
        line = self.lines[index]
        self.lines[index] = line[:begin] + five + line[begin + 5 :]

    def text(self):
        lines = [line + self.line_end for line in self.lines]
        if self.end is None:
            return "".join(lines)
        index, characters = self.end
        last = lines[index][:characters] if index < len(lines) else ""
        return "".join(lines[:index]) + last


def change_grid(kind, words, text, grids):
    grid = grids[words[0]]
    if kind == "series":
        year, row, column = map(int, words[1:4])
        for month, value in enumerate(words[4:16], start=1):
            grid.set_field(year, month, row, column, f"{int(value):5d}")
    elif kind == "constant":
        first, last = map(int, words[1].split("-"))
        row, column, value = map(int, words[2:5])
        for year in range(first, last + 1):
            for month in range(1, MONTHS + 1):
                grid.set_field(year, month, row, column, f"{value:5d}")
    elif kind == "value":
        *place, value = map(int, words[1:6])
        grid.set_field(*place, f"{value:5d}")
    elif kind == "field":
        grid.set_field(*map(int, words[1:5]), text)
    elif kind == "line":
        grid.lines[Grid.index(*map(int, words[1:4]))] = text
    elif kind == "crlf":
        grid.line_end = "\r\n"
    elif kind == "cut":
        year, month, row, characters = map(int, words[1:5])
        grid.end = (Grid.index(year, month, row), characters)
    else:
        raise ValueError(f"no such data line: {kind}")


def prepare_data(lines, folder):
    grids = {}
    for line in lines:
        kind, *words = line.split()
        text = line[line.index("|") + 1 : line.rindex("|")] if "|" in line else ""
        if kind == "grid":
            rows = map(int, words[2].split("-"))
            grids[words[0]] = Grid(int(words[1]), *rows, int(words[3]))
        elif kind == "folder":
            (folder / words[0]).mkdir()
        elif kind == "file":
            (folder / words[0]).write_bytes((text + "\n").encode())
        else:
            change_grid(kind, words, text, grids)
    for variable, grid in grids.items():
        (folder / data_file_name(variable)).write_bytes(grid.text().encode())


def content_of_bars(line):
    return line[1:-1] + "\n" if len(line) > 1 and line.endswith("|") else line[1:]


def in_columns(match, words):
    """Returns the text for {name}, {name>width} or {name<width} in a block."""
    name, side, width = match.groups()
    word = words[name]
    return f"{word:{side}{width}}" if side else word


def block_lines(name):
    """Returns the lines of a block, including those of the blocks that it names."""
    for line in (SESSIONS / "blocks" / f"{name}.txt").read_text().splitlines():
        if line.startswith("@"):
            yield from block_lines(line[1:])
        elif not line.startswith("#"):
            yield line


def spell_out(lines):
    """Returns the lines of a screen with the names of blocks replaced by their lines."""
    for line in lines:
        if line.startswith("@"):
            name, *words = line[1:].split()
            words = dict(word.split("=", 1) for word in words)
            for text in block_lines(name):
                yield re.sub(r"\{(\w+)(?:([<>])(\d+))?\}", lambda m: in_columns(m, words), text)
        else:
            yield line


def typed(answer):
    if answer == "RETURN":
        return "\n"
    text = answer.replace("\\t", "\t").replace("\\r", "\r")
    return text[: -len("\\EOF")] if text.endswith("\\EOF") else text + "\n"


def split_screen(lines):
    """Returns what is written and what is typed in a session, each as one text."""
    written = ""
    answers = ""
    for line in spell_out(lines):
        given = "" if line.endswith("|") else re.search(r"(<[^<>]*>)*$", line).group()
        answers += "".join(typed(a) for a in re.findall("<([^<>]*)>", given) if a != "EOF")
        shown = line[: len(line) - len(given)]
        written += shown + "\n" if shown.startswith("$ ") else content_of_bars(shown)
    return written, answers


def read_case(path):
    head, *sections = re.split(r"^--- ", path.read_text(), flags=re.MULTILINE)
    case = {"data": [], "status": 0, "screen": [], "stderr": "", "files": {}}
    for line in head.splitlines():
        if line.startswith("data "):
            case["data"].append(line[5:])
        elif line.startswith("status "):
            case["status"] = int(line[7:])
    for section in sections:
        title, *lines = section.splitlines()
        if title == "screen":
            case["screen"] = lines
        elif title == "stderr":
            case["stderr"] = "".join(map(content_of_bars, lines))
        else:
            name, _, mode = title[5:].partition(" mode ")
            content = "".join(map(content_of_bars, lines)).encode()
            case["files"][name] = stat.S_IFREG | int(mode or "644", 8), content
    return case


def folder_content(folder):
    """Returns the kind and mode of every entry, and the content of plain files."""
    return {
        path.name: (path.lstat().st_mode, path.read_bytes() if path.is_file() else b"")
        for path in folder.iterdir()
    }


def check_case(path, stand_ins):
    """Runs a transcript. Returns the differences, empty if there are none."""
    case = read_case(path)
    written, answers = split_screen(case["screen"])
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        prepare_data(case["data"], folder)
        expected = folder_content(folder)
        expected |= case["files"]
        result = subprocess.run(
            [sys.executable, HERE / "second_program.py"],
            input=answers.encode(),
            capture_output=True,
            cwd=folder,
            env=os.environ | {"PATH": f"{stand_ins}:{os.environ['PATH']}"},
            check=False,
        )
        found = folder_content(folder)
    differences = []
    if result.stdout.decode() != written:
        differences.append("screen")
    if result.stderr.decode() != case["stderr"]:
        differences.append("standard error")
    if result.returncode != case["status"]:
        differences.append(f"status {result.returncode}")
    differences += [
        f"file {name}"
        for name in sorted(expected.keys() | found.keys())
        if expected.get(name) != found.get(name)
    ]
    return differences


def make_stand_ins(folder):
    """Creates commands `clear` and `ls` that write their names as transcripts show them."""
    for command, shown in (("clear", "$ clear"), ("ls", "$ ls *.dat.new")):
        script = Path(folder) / command
        script.write_text(f"#!/bin/sh\necho '{shown}'\n")
        script.chmod(0o755)


def main():
    os.umask(0o022)
    wanted = sys.argv[1:]
    failed = 0
    cases = sorted((SESSIONS / "cases").glob("*.txt"))
    cases = [path for path in cases if not wanted or path.stem in wanted]
    with tempfile.TemporaryDirectory() as stand_ins:
        make_stand_ins(stand_ins)
        for path in cases:
            differences = check_case(path, stand_ins)
            if differences:
                failed += 1
                print(f"{path.stem}: different: {', '.join(differences)}")
    print(f"{len(cases) - failed} passed, {failed} failed")
    if len(cases) < (len(wanted) or LEAST_CASES):
        print(f"only {len(cases)} cases found")
        return 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
