"""Splits C++ source into tokens, only as precisely as finding mutants needs it.

Comments, preprocessor lines and what the preprocessor skips after `#else` are skipped.
The source must be formatted by clang-format: the blanks around an operator show whether it
is unary or binary, and whether `<` is a comparison or an angle bracket.
"""

import bisect
import re
from typing import Iterator, List, NamedTuple


class Token(NamedTuple):
    """One token and the half-open range of the text that it takes."""

    kind: str  # "name", "number", "text", "raw text", "character" or "punctuator"
    text: str
    begin: int
    end: int


class Source:
    """The text of a file and where its lines begin."""

    def __init__(self, text: str) -> None:
        self.text = text
        self._line_begins = [0] + [m.end() for m in re.finditer("\n", text)]

    def place(self, offset: int) -> "tuple[int, int]":
        """Returns line and column of an offset, both counted from 1."""
        line = bisect.bisect_right(self._line_begins, offset)
        return line, offset - self._line_begins[line - 1] + 1

    def line_text(self, line: int) -> str:
        """Returns a line without the blanks around it."""
        return self.text.split("\n")[line - 1].strip()


_PATTERN = re.compile(
    r"""
    (?P<blank>\s+)
  | (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<raw_text>R"(?P<mark>[^()\\\s]*)\(.*?\)(?P=mark)")
  | (?P<text>"(?:\\.|[^"\\\n])*")
  | (?P<character>'(?:\\.|[^'\\\n])+')
  | (?P<number>\.?\d(?:[eEpP][+-]|[\w.])*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<punctuator><<=|>>=|<=>|->\*|\.\.\.|->|::|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)
    """,
    re.VERBOSE | re.DOTALL,
)

_DIRECTIVE = re.compile(r"[ \t]*#[ \t]*(\w+)(?:[^\n]*\\\n)*[^\n]*")


def tokens_of(text: str) -> List[Token]:
    """Returns all tokens of a file, in their order."""
    return list(_tokens(text))


def _tokens(text: str) -> Iterator[Token]:
    offset = 0
    skipped_depth = 0  # how deep in branches that are not compiled
    while offset < len(text):
        line_begin = text.rfind("\n", 0, offset) + 1
        directive = _DIRECTIVE.match(text, offset)
        if directive and not text[line_begin:offset].strip():
            word = directive.group(1)
            if skipped_depth and word in ("if", "ifdef", "ifndef"):
                skipped_depth += 1
            elif word in ("else", "elif") and skipped_depth <= 1:
                skipped_depth = 1
            elif skipped_depth and word == "endif":
                skipped_depth -= 1
            offset = directive.end()
            continue
        match = _PATTERN.match(text, offset)
        assert match is not None and match.lastgroup is not None
        kind = "raw text" if match.group("raw_text") else match.lastgroup.replace("_", " ")
        if kind not in ("blank", "comment") and not skipped_depth:
            yield Token(kind, match.group(), offset, match.end())
        offset = match.end()
