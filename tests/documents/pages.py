"""Every page of the project, and what is held of it.

A page that is not here fails, so that a new one cannot go unread. Pages beside the tests
tell of the tests; only their links are held.
"""

import dataclasses
import subprocess

from demo_folder import TOP

USERS = "users"  # installed; links to users' pages only
DEVELOPERS = "developers"


@dataclasses.dataclass(frozen=True)
class Page:
    reader: str
    # Examples that are run and compared; byte positions held against them; blocks that
    # are not run (formulas, screens, commands that other tests run).
    examples: int = 0
    positions: int = 0
    texts: int = 0
    # Where its commands are typed, from the top of the project; None: an empty folder.
    folder: str | None = "demo-run"
    # How commands begin that end with status 1, as what they say tells.
    failing: tuple = ()
    # The program that all its examples need, where a build may lack that; and the one that
    # some need, whose commands are then left out.
    program: str | None = None
    optional: str | None = None


PAGES = {
    "README.md": Page(
        USERS, examples=3, texts=4, folder=".", optional="veldmark-extract"
    ),
    "CHANGELOG.md": Page(USERS),
    "ARCHITECTURE.md": Page(DEVELOPERS, texts=1),
    "CONTRIBUTING.md": Page(DEVELOPERS),
    "bench/README.md": Page(DEVELOPERS, texts=None),
    "data/sample/README.md": Page(USERS, examples=2),
    "docs/Tallow": Page(USERS, texts=None),  # plain text, see tallow_test.py
    "docs/before-you-trust-a-number.md": Page(USERS, examples=5),
    "docs/cell-list-file.md": Page(USERS, examples=4, positions=11),
    "docs/extract.md": Page(USERS, examples=16, program="veldmark-extract"),
    "docs/grid-file.md": Page(USERS, examples=3),
    "docs/performance.md": Page(DEVELOPERS, texts=None),
    "docs/recipes/README.md": Page(USERS, texts=None),  # see recipes_page_test.py
    "docs/testing.md": Page(DEVELOPERS, texts=None),
    "docs/time-series-file.md": Page(USERS, examples=5, positions=23, texts=1),
    "docs/variance-report-file.md": Page(USERS, examples=7, positions=19),
    "docs/variance-test.md": Page(USERS, examples=8, texts=2),
    "docs/man/series_to_grid.1": Page(USERS, examples=3, folder=None),
    "docs/man/tersify.1": Page(
        USERS, examples=4, texts=2, folder=None, failing=("tersify --check",)
    ),
    "docs/man/veldmark-extract.1": Page(
        USERS, examples=8, texts=0, folder=None, program="veldmark-extract"
    ),
    "docs/man/veldmark-formats.5": Page(USERS, examples=14, folder=None),
    "docs/man/veldmark.1": Page(USERS, examples=8, texts=1, folder=None),
}


def is_page(name):
    return name.endswith(".md") or name == "docs/Tallow" or name.startswith("docs/man/")


def files_of_project():
    """Names of the project's files from its top, those not yet committed included."""
    command = ["git", "ls-files", "--cached", "--others", "--exclude-standard"]
    listed = subprocess.run(command, cwd=TOP, capture_output=True, text=True, check=False)
    if listed.returncode == 0:
        names = listed.stdout.splitlines()
    else:  # not a checkout
        names = [str(path.relative_to(TOP)) for path in TOP.rglob("*") if path.is_file()]
    return sorted(
        name
        for name in names
        if (TOP / name).is_file() and not name.startswith((".", "build", "demo-run"))
    )


def pages_of_project():
    return [name for name in files_of_project() if is_page(name)]
