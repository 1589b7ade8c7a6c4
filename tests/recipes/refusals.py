"""What a recipe refuses: with a sentence, a status that is not 0, and nothing else."""
import gzip
import shutil
from pathlib import Path

from checks import check
from extracts import Extract, sample
from languages import LANGUAGES, RECIPES


def check_refusal(language, what, message, *arguments):
    """A sentence, and nothing else."""
    result = LANGUAGES[language].run(RECIPES, *arguments)
    lines = result.stderr.strip().splitlines()
    check(result.returncode != 0 and len(lines) == 1 and message in lines[0],
          "%s, %s: status %d, %s" % (language, what, result.returncode, result.stderr))


def check_refusals(language, folder, extract):
    check_refusal(language, "no arguments", "usage")
    check_refusal(language, "a cell that is not there", "no saved cell has its centre at",
                  extract.stem, -139.75, 60)
    check_refusal(language, "a missing file", "cannot read", folder / "nothing")
    series = Path(extract.stem + ".TSF").read_bytes()
    for what, content, message in (
            ("an empty file", b"", "holds no cell"),
            ("a table", b"lon,lat,value\n1,2,3\n", "is no series file"),
            ("a compressed file", gzip.compress(b"\0\xff" * 999), "is no series file"),
            ("another data set", series.replace(b"CRUts4.01tmp", b"CRUts4.01xyz"),
             "is no series file"),
            ("a file cut within a year", series[:-20], "is cut off"),
            ("a file cut between years", series[:-390], "is cut off"),
            ("a file cut after a heading", series[:-780], "is cut off")):
        (folder / "odd.TSF").write_bytes(content)
        check_refusal(language, what, message, folder / "odd")


def check_stale_report(language, folder, build):
    """A search with the test, then one of other years without it, in one folder."""
    extract = Extract(folder, build, "frs", sample("frs", 1904), 1904, cutoff=1903)
    extract.make_grid()
    extract.last, extract.cutoff = 1903, None
    extract.search()
    result = LANGUAGES[language].run(RECIPES, extract.stem)
    check(result.returncode == 1 and result.stderr.strip() ==
          extract.stem + ".ftst is of another search (1901 to 1904): no picture of it",
          "%s, a report of other years: status %d, %s" % (language, result.returncode,
                                                          result.stderr))
    made = sorted(path.name.split(".")[-2] for path in
                  folder.glob("*." + LANGUAGES[language].kind))
    check(made == ["cycle", "map", "years"],
          "%s, a report of other years: pictures %s" % (language, made))


def check_report_refusals(language, folder, frost, yukon):
    stem = folder / "with-report"
    shutil.copy(yukon.stem + ".TSF", str(stem) + ".TSF")
    shutil.copy(frost.stem + ".ftst", str(stem) + ".ftst")
    check_refusal(language, "a report of other cells", "is of another search", stem)
    for content in (b"", b"lon,lat\n", Path(frost.stem + ".ftst").read_bytes()[:-9]):
        Path(str(stem) + ".ftst").write_bytes(content)
        check_refusal(language, "a broken report", "is no variance report", stem)
