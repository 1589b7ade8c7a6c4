"""Reads the worked examples out of the documents.

An example is a command and what it shows, in an indented block of a Markdown page or
between .EX and .EE of a manual page: lines that begin with "$ " are the command, lines
that begin with "> " right after it go on with it, all others are its output.

A fenced block marked "sh" is a script, run as it stands; a block marked "text" right
after it is what it shows.

A table whose first heading is "Bytes" takes the first line of the output of the example
above it apart: each row has a range of bytes and, in its last column, what stands there.

Indented blocks without a command (formulas, screens) are kept apart: they are texts.
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
    """The examples of a block; none where it has no command."""
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


def blocks_of_markdown(text):
    """(kind, lines) of a page in its order; kind is the fence's word, "indented", "table"."""
    fence = None
    for line in text.splitlines():
        if fence is not None:
            if line == "```":
                yield fence, block
                fence = None
            else:
                block.append(line)
        elif line.startswith("```"):
            fence, block = line[3:], []
        elif line.startswith("    "):
            yield "indented", [line[4:]]
        elif line.startswith("|"):
            yield "table", [line]
        else:
            yield "prose", [line]


def joined(blocks):
    """The same, with neighbours of one kind made one block; fenced blocks stay apart."""
    result = []
    for kind, lines in blocks:
        if kind in ("indented", "table", "prose") and result and result[-1][0] == kind:
            result[-1][1].extend(lines)
        else:
            result.append((kind, list(lines)))
    return result


def examples_of_markdown(text):
    """The examples of a page, and the indented blocks that are none."""
    examples, texts = [], []
    before = None
    for kind, lines in joined(blocks_of_markdown(text)):
        if kind == "prose" and not any(lines):
            continue
        if kind == "indented":
            found = examples_in_block(lines)
            examples += found
            texts += [] if found else ["\n".join(lines)]
        elif kind == "sh":
            examples.append(Example("\n".join(lines), ""))
        elif kind == "text" and before == "sh":
            examples[-1].output = "\n".join(lines) + "\n"
        elif kind == "table" and lines[0].startswith("| Bytes |"):
            examples[-1].parts += filter(None, map(part_of_row, lines))
        elif kind not in ("prose", "table"):
            texts.append("\n".join(lines))
        before = kind
    return examples, texts


def unescaped(line):
    for escape, text in ((r"\-", "-"), (r"\(aq", "'"), (r"\(dq", '"'), (r"\e", "\\")):
        line = line.replace(escape, text)
    return line.removeprefix("\\&")


def examples_of_manual(text):
    """The examples of a manual page, and the blocks that are none."""
    examples, texts = [], []
    for block in re.findall(r"^\.EX\n(.*?)^\.EE$", text, re.MULTILINE | re.DOTALL):
        lines = [unescaped(line) for line in block.splitlines()]
        found = examples_in_block(lines)
        examples += found
        texts += [] if found else ["\n".join(lines)]
    return examples, texts


def rows_of_tables(text, *first_headings):
    """The tables whose heading begins with `first_headings`, each a list of rows."""
    tables = []
    heading = "| " + " | ".join(first_headings) + " |"
    in_table = False
    for line in text.splitlines():
        if line.startswith(heading):
            tables.append([])
            in_table = True
        elif not line.startswith("|"):
            in_table = False
        elif in_table and not line.startswith("|---"):
            tables[-1].append([cell.strip() for cell in line.strip("|").split("|")])
    return tables


def entries_of_manual(text, section):
    """The entries of a manual page's section, .TP by .TP, as (label, text)."""
    match = re.search(
        rf'^\.SH "?{re.escape(section)}"?\n(.*?)(?=^\.SH|\Z)', text, re.MULTILINE | re.DOTALL
    )
    if match is None:
        return []
    entries = []
    for entry in re.split(r"^\.TP.*\n", match.group(1), flags=re.MULTILINE)[1:]:
        lines = [plain_roff(line) for line in entry.splitlines()]
        entries.append((lines[0].strip(), " ".join(" ".join(lines[1:]).split())))
    return entries


def plain_roff(line):
    """A line of a manual page without its markup."""
    line = unescaped(line)
    match = re.match(r"\.(BI|BR|IR|RB|RI|B|I)\s+(.*)", line)
    if match:
        macro, rest = match.groups()
        words = re.findall(r'"((?:[^"]|"")*)"|(\S+)', rest)
        between = "" if len(macro) == 2 else " "
        return between.join(quoted or bare for quoted, bare in words)
    return "" if line.startswith(".") else re.sub(r"\\f[BIRP]", "", line)
