#!/usr/bin/env python3
"""Checks that the links of Markdown pages lead somewhere.

    links.py FOLDER

looks at every Markdown page below FOLDER, a checkout or installed documents, and names
each link to a file or picture that is not below FOLDER, or to a heading that is not in its
page. Links to other sites are left alone. The exit status is 1 when a link is dead.
"""

import re
import sys
from pathlib import Path


def text_without_code(text):
    text = re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)
    text = re.sub(r"^    .*$", "", text, flags=re.MULTILINE)
    return re.sub(r"`[^`\n]*`(?!\])", "", text)


def targets_of(text):
    """The targets of a page's links and pictures, in their order."""
    text = text_without_code(text)
    inline = re.findall(r"\]\(\s*<?([^)\s>]+)>?[^)]*\)", text)
    defined = re.findall(r"^\[[^\]]+\]:\s*(\S+)", text, re.MULTILINE)
    return inline + defined


def headings_of(text):
    """The anchors of a page's headings."""
    text = re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)
    for heading in re.findall(r"^#+ +(.*?) *#*$", text, re.MULTILINE):
        yield re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def is_elsewhere(target):
    return re.match(r"[a-z][a-z0-9+.-]*:", target) is not None


def fault_of(page, target, folder):
    """What is wrong with a link, or nothing."""
    name, _, anchor = target.partition("#")
    path = (page.parent / name).resolve() if name else page.resolve()
    if not path.is_relative_to(folder.resolve()):
        return "leads out of the folder"
    if not path.exists():
        return "leads nowhere"
    if anchor and path.suffix == ".md":
        if anchor not in headings_of(path.read_text(encoding="utf-8")):
            return "names no heading"
    return None


def faults_of_page(page, folder):
    for target in targets_of(page.read_text(encoding="utf-8")):
        fault = None if is_elsewhere(target) else fault_of(page, target, folder)
        if fault:
            yield f"{page.relative_to(folder)}: ({target}) {fault}"


def main(arguments):
    if len(arguments) != 1 or not Path(arguments[0]).is_dir():
        print(__doc__.strip(), file=sys.stderr)
        return 2
    folder = Path(arguments[0])
    pages = sorted(folder.rglob("*.md"))
    faults = [fault for page in pages for fault in faults_of_page(page, folder)]
    print("\n".join(faults + [f"{len(pages)} pages, {len(faults)} dead links"]))
    return 1 if faults or not pages else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
