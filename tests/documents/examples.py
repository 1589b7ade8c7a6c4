"""Reads the worked examples out of the documents.

An example is a command and what it shows, in an indented block of a Markdown page or
between .EX and .EE of a manual page: lines that begin with "$ " are the command, lines
that begin with "> " right after it go on with it, all others are its output.

A table whose first heading is "Bytes" takes the first line of the output of the example
above it apart: each row has a range of bytes and, in its last column, what stands there.
"""

import dataclasses
import re


@dataclasses.dataclass
class Example:
    command: str
    output: str
    # First byte, last byte (counted from 1) and the text there; blanks at the end of a
    # text don't count.
    parts: list = dataclasses.field(default_factory=list)


def examples_in_block(lines):
    examples = []
    in_command = False
    for line in lines:
        if line.startswith("$ "):
            examples.append(Example(line[2:], ""))
            in_command = True
        elif in_command and line.startswith("> "):
            examples[-1].command += "\n" + line[2:]
        elif examples:
            examples[-1].output += line + "\n"
            in_command = False
    return examples


def part_of_row(line):
    """The range and the text of a table's row; nothing for its heading."""
    cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
    match = re.fullmatch(r"(\d+)(?:-(\d+))?", cells[0])
    if not match:
        return None
    first = int(match.group(1))
    return first, int(match.group(2) or first), cells[-1].strip("`")


def examples_of_markdown(text):
    examples = []
    block = []
    in_table = False
    for line in text.splitlines() + [""]:
        if line.startswith("    "):
            block.append(line[4:])
            continue
        if block:
            examples += examples_in_block(block)
            block = []
        in_table = line.startswith("| Bytes |") or in_table and line.startswith("|")
        if in_table and examples and part_of_row(line):
            examples[-1].parts.append(part_of_row(line))
    return examples


def unescaped(line):
    for escape, text in ((r"\-", "-"), (r"\(aq", "'"), (r"\(dq", '"'), (r"\e", "\\")):
        line = line.replace(escape, text)
    return line


def examples_of_manual(text):
    examples = []
    for block in re.findall(r"^\.EX\n(.*?)^\.EE$", text, re.MULTILINE | re.DOTALL):
        examples += examples_in_block([unescaped(line) for line in block.splitlines()])
    return examples


def rows_of_tables(text, first_heading):
    """The tables whose heading begins with `first_heading`, each a list of rows."""
    tables = []
    in_table = False
    for line in text.splitlines():
        if line.startswith(f"| {first_heading} |"):
            tables.append([])
            in_table = True
        elif not line.startswith("|"):
            in_table = False
        elif in_table and not line.startswith("|---"):
            tables[-1].append([cell.strip() for cell in line.strip("|").split("|")])
    return tables
