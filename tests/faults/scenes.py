"""The scenes of veldmark, of Tersify and of series_to_grid."""

import random
from pathlib import Path
from typing import Dict

from fault_runs import Bench, Content
from part_file_rules import CHECK_ENDS_EARLY, SERIES_END_EARLY, PartFiles
from scene_rules import COLUMNS, MEGABYTE, NOTES, grid_line, sparse_grid, regular_grid
from session_rules import Session, search


def veldmark_session(bench: Bench, programs: Path) -> Session:
    """Two searches: a thousand cells of a regular file, and a file that is read line by
    line, thinned and tested for variance.  Both replace earlier files."""
    tmp = "cru_ts4.01.1901.2016.tmp.dat.new"
    frs = "cru_ts4.01.1901.2016.frs.dat.new"
    answers = search(2, (200, 223), (300, 359), "1902", "1902", "T", "1", "y", "F")
    answers += ["T", "T"]
    answers += search(9, (250, 253), (10, 15), "1901", "1903", "T", "2", "n", "2", "y")
    answers += ["T", "1902", "F"]
    files: Dict[str, Content] = {
        tmp: regular_grid(bench.folder / tmp, 2),
        frs: sparse_grid(3, 250, 253),
        tmp + ".XY": b"an earlier, large file\n" * (MEGABYTE // 20),
        frs + ".TSF": b"another large one\n" * (MEGABYTE // 16),
        frs + ".ftst": b"an earlier, small file\n",
        tmp + ".ftst": b"of another day\n",
        "cru_ts4.01.1901.2016.pre.dat.new.TSF": b"of another variable\n",
        NOTES: b"not ours\n",
    }
    searches = [(tmp, (".TSF", ".XY")), (frs, (".TSF", ".XY", ".ftst"))]
    return Session(bench, str(programs / "veldmark"), files, answers, searches)


def raw_text(lines: int, seed: int) -> bytes:
    """Returns lines in the published form: blanks between the numbers."""
    rng = random.Random(seed)
    rows = [" ".join("%6d" % rng.randint(-999, 3100) for _ in range(COLUMNS)) for _ in range(20)]
    return "".join(rng.choice(rows) + "\n" for _ in range(lines)).encode()


def tersify_files(bench: Bench) -> Dict[str, Content]:
    return {
        "a.dat": raw_text(120, 1),
        "b.dat": raw_text(80, 2),
        "a.dat.new": b"an earlier copy\n",
        "b.dat.new.part": b"left by a run that was killed\n",
        "list": b"a.dat\nb.dat\n",
        NOTES: b"not ours\n",
    }


def tersify_list(bench: Bench, programs: Path) -> PartFiles:
    sources = {"a.dat.new": "a.dat", "b.dat.new": "b.dat"}
    return PartFiles(
        bench,
        [str(programs / "tersify")],
        tersify_files(bench),
        sources,
        answers=["list"],
    )


def tersify_check(bench: Bench, programs: Path) -> PartFiles:
    rng = random.Random(3)
    lines = [grid_line(rng, -999) + b"\n" for _ in range(200)]
    files: Dict[str, Content] = {"a.dat.new": b"".join(lines), NOTES: b"not ours\n"}
    command = [str(programs / "tersify"), "--check", "a.dat.new"]
    return PartFiles(bench, command, files, {}, early_end=CHECK_ENDS_EARLY)


def series_text() -> bytes:
    header = "lon,lat," + ",".join("1901-%02d" % month for month in range(1, 13))
    cells = ("%.2f,40.25," % (column * 0.5 + 0.25) for column in range(300))
    values = ",".join(str(value) for value in range(-5, 7))
    return "".join(line + "\n" for line in [header, *(cell + values for cell in cells)]).encode()


def series_to_grid(bench: Bench, programs: Path) -> PartFiles:
    command = [str(programs / "series_to_grid"), "--years", "1901-1901", "grid", "series"]
    files = {"series": series_text(), "grid": b"an earlier grid\n", NOTES: b"not ours\n"}
    return PartFiles(
        bench,
        command,
        files,
        {"grid": "series"},
        early_end=SERIES_END_EARLY,
    )


def small_session(bench: Bench, programs: Path) -> Session:
    """The same two ways of reading, four cells each."""
    tmp = "cru_ts4.01.1901.2016.tmp.dat.new"
    frs = "cru_ts4.01.1901.2016.frs.dat.new"
    answers = search(2, (200, 201), (300, 301), "1901", "1901", "T", "1", "y", "F", "T", "T")
    answers += search(9, (250, 251), (10, 11), "1901", "1902", "T", "1", "y", "T", "1902", "F")
    files: Dict[str, Content] = {
        tmp: regular_grid(bench.folder / tmp, 1),
        frs: sparse_grid(2, 250, 251),
        frs + ".XY": b"an earlier one\n",
        NOTES: b"not ours\n",
    }
    searches = [(tmp, (".TSF", ".XY")), (frs, (".TSF", ".XY", ".ftst"))]
    return Session(bench, str(programs / "veldmark"), files, answers, searches)


def mistyped_session(bench: Bench, programs: Path) -> Session:
    """A data file is missing; then an answer ends the run."""
    return Session(bench, str(programs / "veldmark"), {}, ["", "", "1", "", "", "3x"], [])


def tersify_refusal(bench: Bench, programs: Path) -> PartFiles:
    """A bad line in the file, found after the copy was begun."""
    files: Dict[str, Content] = {
        "a.dat": raw_text(100, 3) + b"1 2 three\n",
        "a.dat.new": b"an earlier copy\n",
        NOTES: b"not ours\n",
    }
    return PartFiles(bench, [str(programs / "tersify"), "a.dat"], files, {})
