"""Checks that each oddity that src/ keeps on purpose names a test for it.

The form is "Kept on purpose: NAME." in a comment. NAME is a C++ test (Suite.Name) or a
transcript of tests/sessions/cases/.

    kept_on_purpose_test.py
"""

import re
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
# The name may be on the next line of the comment.
MARK = re.compile(r"Kept on purpose(?::\s+(?://\s*)?(?P<name>[\w.-]*\w))?")
CPP_TEST = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)")


def names_of_tests() -> set[str]:
    """Returns all names that an oddity may use."""
    names = {case.stem for case in (TOP / "tests/sessions/cases").glob("*.txt")}
    for source in (TOP / "tests").rglob("*.cc"):
        names.update(".".join(test) for test in CPP_TEST.findall(source.read_text()))
    return names


def marks_without_test(text: str, names: set[str]) -> list[str]:
    """Returns the names in a source for which there is no test, "" for a mark without a name."""
    marks = [mark["name"] or "" for mark in MARK.finditer(text)]
    return [mark for mark in marks if mark not in names]


def main() -> int:
    names = names_of_tests()
    # Both faults are found.
    assert marks_without_test("// Kept on purpose: No.Such. Why.", names) == ["No.Such"]
    assert marks_without_test("// Kept on purpose.", names) == [""]
    found = 0
    faults = []
    for source in sorted((TOP / "src").rglob("*.[ch]*")):
        text = source.read_text()
        found += len(MARK.findall(text))
        faults += [
            f"{source.relative_to(TOP)}: no test for 'Kept on purpose: {mark}'"
            for mark in marks_without_test(text, names)
        ]
    print("\n".join([*faults, f"{found} oddities kept on purpose"]))
    return 1 if faults or found == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
