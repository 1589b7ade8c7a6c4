"""Finds the places of a C++ file that can be changed, and the changes.

A mutant is the program with one change:

    comparison   < to <= and >=, and so on; == to !=
    arithmetic   + to -, * to /, ++ to --, a dropped minus, bit operators
    logical      && to ||, a dropped !, the condition of an if or while negated
    constant     0 to 1, 1 to 0, n to n + 1; the last digit of a real; true to false;
                 a character to its neighbour
    text         one letter of a string literal, or of each line of a multi-line one
    statement    an expression statement, break, continue, throw or return removed;
                 not the last return of a function

Not changed: comments, includes, static_assert, using, namespace and template heads,
attributes, and the branch after a preprocessor's #else.
"""

import re
from typing import Dict, Iterator, List, NamedTuple, Optional, Set, Tuple

from tokens import Source, Token, tokens_of

# The source folders of the program and its companions; absent ones are skipped.
TOPS = ("src", "companion", "tersify", "tools", "extract")


class Mutant(NamedTuple):
    """One change of one file: text[begin:end] becomes `new`."""

    file: str  # path relative to the project's root
    line: int  # counted from 1, like column
    column: int
    kind: str
    old: str
    new: str
    begin: int
    end: int
    line_text: str  # the whole line, without leading and trailing blanks

    @property
    def name(self) -> str:
        """The mutant's name in results and lists."""
        return "%s:%d:%d %s `%s` -> `%s`" % (
            self.file,
            self.line,
            self.column,
            self.kind,
            _short(self.old),
            _short(self.new),
        )

    def applied_to(self, text: str) -> str:
        """Returns the file's text with the change applied."""
        return text[: self.begin] + self.new + text[self.end :]


def find_mutants(file: str, text: str) -> List[Mutant]:
    """Returns all mutants of a file, in the order of their positions."""
    finder = _Finder(text)
    source = Source(text)
    mutants: List[Mutant] = []
    for begin, end, kind, new in sorted(finder.changes()):
        line, column = source.place(begin)
        mutants.append(
            Mutant(
                file, line, column, kind, text[begin:end], new, begin, end,
                source.line_text(line),
            )
        )
    return mutants


Change = Tuple[int, int, str, str]  # begin, end, kind, new text

_COMPARISONS: Dict[str, Tuple[str, ...]] = {
    "<": ("<=", ">="),
    "<=": ("<", ">"),
    ">": (">=", "<="),
    ">=": (">", "<"),
    "==": ("!=",),
    "!=": ("==",),
}
_ARITHMETIC: Dict[str, str] = {
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=",
    "<<": ">>", ">>": "<<", "&": "|", "|": "&", "^": "|", "|=": "&=", "&=": "|=",
}
_LOGICAL: Dict[str, str] = {"&&": "||", "||": "&&"}
_STEPS: Dict[str, str] = {"++": "--", "--": "++"}
_WORDS: Dict[str, str] = {"true": "false", "false": "true"}
_ESCAPES: Dict[str, str] = {"\\n": "\\t", "\\r": "\\t", "\\t": " ", "\\\\": "/", "\\'": "`"}
_ASSIGNMENTS = frozenset(("=", "+=", "-=", "*=", "/=", "%=", "|=", "&=", "^=", "<<=", ">>="))
_BRACKETS: Dict[str, str] = {"(": ")", "[": "]", "{": "}"}


class _Finder:
    """The tokens of one file, and what can be changed among them."""

    def __init__(self, text: str) -> None:
        self._text = text
        self._tokens = tokens_of(text)
        self._closing = self._pair_brackets()
        self._skipped = self._find_skipped()

    def changes(self) -> Iterator[Change]:
        """Yields all changes, in no particular order."""
        for i, token in enumerate(self._tokens):
            if i not in self._skipped:
                yield from self._changes_of_token(i, token)
        yield from self._changes_of_bodies()

    # ------------------------------------------------ structure

    def _pair_brackets(self) -> Dict[int, int]:
        """Maps the index of each opening bracket to that of its closing one."""
        closing: Dict[int, int] = {}
        open_ones: List[int] = []
        for i, token in enumerate(self._tokens):
            if token.kind == "punctuator" and token.text in _BRACKETS:
                open_ones.append(i)
            elif token.kind == "punctuator" and token.text in _BRACKETS.values() and open_ones:
                closing[open_ones.pop()] = i
        return closing

    def _is(self, i: int, *texts: str) -> bool:
        return 0 <= i < len(self._tokens) and self._tokens[i].text in texts

    def _end_of_statement(self, i: int) -> int:
        """Returns the index of the semicolon that ends the statement around `i`."""
        while i < len(self._tokens) and not self._is(i, ";"):
            i = self._closing.get(i, i) + 1
        return i

    def _find_skipped(self) -> Set[int]:
        skipped: Set[int] = set()
        for i, token in enumerate(self._tokens):
            if token.kind == "name" and token.text in ("static_assert", "using"):
                skipped.update(range(i, self._end_of_statement(i) + 1))
            elif token.kind == "name" and token.text == "namespace":
                skipped.update((i, i + 1))
            elif token.text == "[" and self._is(i + 1, "["):
                skipped.update(range(i, self._closing[i] + 1))
            elif token.text == "template" and self._is(i + 1, "<"):
                skipped.update(range(i, self._end_of_angles(i + 1) + 1))
            elif token.text == "operator":
                skipped.add(i + 1)
        return skipped

    def _end_of_angles(self, i: int) -> int:
        depth = 0
        while True:
            depth += {"<": 1, ">": -1}.get(self._tokens[i].text, 0)
            if depth == 0:
                return i
            i += 1

    # ------------------------------------------------ changes of one token

    def _has_two_operands(self, token: Token) -> bool:
        """Tells `a - b` from `-b` by the blanks that clang-format puts on both sides."""
        return (
            self._text[token.begin - 1].isspace()
            and self._text[token.end : token.end + 1].isspace()
        )

    def _has_operand_before(self, i: int) -> bool:
        if i == 0:
            return False
        before = self._tokens[i - 1]
        if before.kind == "punctuator":
            return before.text in (")", "]", "}")
        return before.text not in ("return", "throw", "case")

    def _changes_of_token(self, i: int, token: Token) -> Iterator[Change]:
        begin, end = token.begin, token.end
        if token.kind == "punctuator":
            for kind, new in self._changes_of_sign(i, token):
                yield begin, end, kind, new
        elif token.kind == "number":
            yield begin, end, "constant", changed_number(token.text)
        elif token.kind == "name" and token.text in _WORDS:
            yield begin, end, "constant", _WORDS[token.text]
        elif token.kind == "character":
            yield begin, end, "constant", "'%s'" % changed_character(token.text[1:-1])
        elif token.kind == "text":
            yield from _changed_line(token.text, begin, 1, len(token.text) - 1)
        elif token.kind == "raw text":
            first = token.text.index("(") + 1
            last = token.text.rindex(")")
            for line in re.finditer("[^\n]+", token.text[first:last]):
                yield from _changed_line(
                    token.text, begin, first + line.start(), first + line.end(), raw=True
                )

    def _changes_of_sign(self, i: int, token: Token) -> Iterator[Tuple[str, str]]:
        text = token.text
        if self._has_two_operands(token):
            for new in _COMPARISONS.get(text, ()):
                yield "comparison", new
            if text in _LOGICAL:
                yield "logical", _LOGICAL[text]
            joins_texts = text == "+" and any(
                0 <= j < len(self._tokens) and self._tokens[j].kind in ("text", "raw text")
                for j in (i - 1, i + 1)
            )
            if text in _ARITHMETIC and not joins_texts:
                yield "arithmetic", _ARITHMETIC[text]
        elif text in _STEPS:
            yield "arithmetic", _STEPS[text]
        elif text == "!" and not self._has_operand_before(i):
            yield "logical", ""
        elif text in ("-", "~") and not self._has_operand_before(i):
            is_destructor = text == "~" and self._is(i + 2, "(")
            if not is_destructor:
                yield "arithmetic", ""

    # ------------------------------------------------ statements and conditions

    def _changes_of_bodies(self) -> Iterator[Change]:
        i = 0
        head = 0  # where the declaration around `i` begins
        while i < len(self._tokens):
            if self._is(i, ";", "}"):
                head = i + 1
            elif self._is(i, "{"):
                kind = self._kind_of_braces(head, i)
                if kind == "body":
                    yield from self._changes_of_block(i, is_body=True)
                if kind in ("body", "value"):
                    i = self._closing[i]
                if kind in ("body", "scope"):
                    head = i + 1
            elif self._is(i, "(", "["):
                i = self._closing[i]
            i += 1

    def _kind_of_braces(self, head: int, i: int) -> str:
        """Classifies braces outside of functions: "body" of a function, "scope" or "value"."""
        words = [token.text for token in self._tokens[head:i]]
        if "namespace" in words:
            return "scope"
        if "(" not in words:
            is_type = any(word in words for word in ("class", "struct", "enum", "union"))
            return "scope" if is_type else "value"
        in_initialisers = ":" in words[words.index("(") :]
        if in_initialisers and self._tokens[i - 1].kind == "name":
            return "value"
        return "body"

    def _changes_of_block(self, i: int, is_body: bool) -> Iterator[Change]:
        """Yields the changes of the statements in the braces at `i`."""
        end = self._closing[i]
        i += 1
        while i < end:
            after, changes = self._statement(i, last_at=end if is_body else None)
            yield from changes
            i = after

    def _statement(self, i: int, last_at: Optional[int]) -> Tuple[int, List[Change]]:
        """Returns the index after the statement at `i`, and its changes.

        `last_at` is where the function ends if the statement is directly in its braces.
        """
        token = self._tokens[i]
        if token.text == "{":
            return self._closing[i] + 1, list(self._changes_of_block(i, is_body=False))
        if token.text in ("if", "while", "for", "switch", "catch"):
            return self._headed_statement(i)
        if token.text in ("else", "try"):
            return self._statement(i + 1, None)
        if token.text == "do":
            after, changes = self._statement(i + 1, None)
            changes += self._condition(after)
            return self._end_of_statement(after) + 1, changes
        if token.text in ("case", "default"):
            while not self._is(i, ":"):
                i += 1
            return i + 1, []
        end = self._end_of_statement(i)
        changes = list(self._changes_of_lambdas(i, end))
        if self._can_be_left_out(i, end, is_last=last_at == end + 1):
            begin_offset = token.begin
            changes.append((begin_offset, self._tokens[end].end, "statement", ";"))
        return end + 1, changes

    def _headed_statement(self, i: int) -> Tuple[int, List[Change]]:
        changes = self._condition(i) if self._is(i, "if", "while") else []
        opening = i + 1
        while not self._is(opening, "("):
            opening += 1
        after, more = self._statement(self._closing[opening] + 1, None)
        return after, changes + more

    def _condition(self, i: int) -> List[Change]:
        """Negates the condition after an `if` or `while`. Returns nothing if one of its
        operators is changed anyway."""
        opening = i + 1
        if not self._is(opening, "("):
            return []
        closing = self._closing[opening]
        inside = self._tokens[opening + 1 : closing]
        for token in inside:
            if token.text in ("!", "=", ";") or token.text in _LOGICAL:
                return []
            if token.text in _COMPARISONS and self._has_two_operands(token):
                return []
        begin, end = inside[0].begin, inside[-1].end
        return [(begin, end, "logical", "!(%s)" % self._text[begin:end])]

    def _changes_of_lambdas(self, begin: int, end: int) -> Iterator[Change]:
        i = begin
        while i < end:
            if self._is(i, "{") and self._is(i - 1, ")", "]"):
                yield from self._changes_of_block(i, is_body=True)
                i = self._closing[i]
            i += 1

    def _can_be_left_out(self, begin: int, end: int, is_last: bool) -> bool:
        first = self._tokens[begin].text
        if first == "return":
            return not is_last
        if first in ("break", "continue", "throw"):
            return True
        return self._is_expression(begin, end)

    def _is_expression(self, i: int, end: int) -> bool:
        """Tells an expression from a declaration: its leading, possibly qualified name is
        followed by a call, an assignment, an increment or a decrement."""
        if self._is(i, "++", "--", "*", "("):
            return True
        if self._is(i, "auto"):
            return False
        if self._is(i, "::"):
            i += 1
        while i < end and self._tokens[i].kind == "name":
            i += 1
            while self._is(i, "[", "("):
                if self._is(i, "("):
                    return True
                i = self._closing[i] + 1
            if not self._is(i, "::", ".", "->"):
                break
            i += 1
        return self._is(i, "++", "--") or self._tokens[i].text in _ASSIGNMENTS


def changed_number(text: str) -> str:
    """Returns a changed number literal: n + 1, 1 to 0, the last digit of a real."""
    hexadecimal = text[:2] in ("0x", "0X")
    if not hexadecimal and re.search(r"[.eE]", text):
        digits = re.match(r"[\d.]*", text)
        assert digits is not None
        last = max(i for i in range(digits.end()) if text[i].isdigit())
        new = "8" if text[last] == "9" else str(int(text[last]) + 1)
        return text[:last] + new + text[last + 1 :]
    pattern = r"0[xX][\da-fA-F]+|0[bB][01]+|\d+"
    match = re.match(pattern, text)
    assert match is not None
    digits_text, suffix = match.group(), text[match.end() :]
    if hexadecimal:
        return "0x%X%s" % (int(digits_text, 16) + 1, suffix)
    if digits_text[:2] in ("0b", "0B"):
        return "0b%s%s" % (format(int(digits_text, 2) + 1, "b"), suffix)
    if len(digits_text) > 1 and digits_text[0] == "0":
        return "0%o%s" % (int(digits_text, 8) + 1, suffix)
    number = int(digits_text)
    return "%d%s" % (0 if number == 1 else number + 1, suffix)


def changed_character(text: str) -> str:
    """Returns a different character; both are spelled as between the quotes."""
    if text[0] == "\\":
        return _ESCAPES.get(text, "0")
    if text == "&":  # the next character is the quote
        return "%"
    return chr(ord(text) + 1) if chr(ord(text) + 1) not in "\\'\x7f" else chr(ord(text) - 1)


def _changed_line(
    text: str, offset: int, first: int, last: int, raw: bool = False
) -> Iterator[Change]:
    """Changes the letter or digit nearest the middle of text[first:last]. Without one,
    changes another character, or empties a text that consists of escapes only."""
    escaped: Set[int] = set()
    if not raw:
        for escape in re.finditer(r"\\.", text):
            escaped.update(range(escape.start(), escape.end()))
    usable = [i for i in range(first, last) if i not in escaped]
    letters = [i for i in usable if text[i].isalnum()] or usable
    if not letters:
        if last > first:
            yield offset + first, offset + last, "text", ""
        return
    middle = (first + last) / 2
    at = min(letters, key=lambda i: (abs(i - middle), i))
    new = _changed_letter(text[at])
    yield offset + at, offset + at + 1, "text", new


def _changed_letter(letter: str) -> str:
    if letter in "zZ9":
        return {"z": "a", "Z": "A", "9": "0"}[letter]
    if letter.isalnum():
        return chr(ord(letter) + 1)
    return "x" if letter == " " else " "


def _short(text: str) -> str:
    text = " ".join(text.split())
    return text if len(text) <= 50 else text[:47] + "..."
