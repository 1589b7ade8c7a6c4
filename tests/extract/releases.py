"""Extracts from files of another release, which end eight years later.

    releases.py PROGRAM_FOLDER [--last YEAR] [--no-netcdf]

Such a file is made from the sample: its lines from 1901 to YEAR (1903; 2016 for a file as
large as a real one), then its first eight years again. Tested are the years from the name
and from the size, and the message if they disagree; the values, against the sample; and
that no output, with its headings and citation, calls the release 4.01.
"""

import argparse
import gzip
import os
import subprocess
import sys
import tempfile
from pathlib import Path

from sample_values import SAMPLE, compare, data_of_ncdump, read_netcdf, read_sample, read_wide

FIRST, MORE = 1901, 8
LINES_PER_YEAR, LINE = 12 * 360, 3601
SERIES = SAMPLE / "cru_ts4.01_tmp_1901_2016.csv.gz"
BOX = ["--lat", "60:61.5", "--lon", "-140:-138.5"]
KNOWN_DOI = "10.5285/58a8802721c94c66ae45c3baa4d814d0"


def make_release(tools, folder, last):
    """Makes the file cru_ts4.09.1901.LAST.tmp.dat.new. Returns its path."""
    grid = folder / f"cru_ts4.09.{FIRST}.{last + MORE}.tmp.dat.new"
    with gzip.open(SERIES) as text:
        subprocess.run([tools / "series_to_grid", "--years", f"{FIRST}-{last}", grid],
                       input=text.read(), check=True, capture_output=True)
    with open(grid, "rb+") as file:
        for year in range(MORE):
            size = LINES_PER_YEAR * LINE
            file.seek(year * size)
            lines = file.read(size)
            file.seek(0, os.SEEK_END)
            file.write(lines)
    assert grid.stat().st_size == (last + MORE - FIRST + 1) * LINES_PER_YEAR * LINE
    return grid


def expected_values(last):
    """The stored values of the box's cells, as text; those after `last` repeat the first."""
    values = {key: value for key, value in read_sample(SERIES, FIRST, last).items()
              if 60 < key[0] < 61.5 and -140 < key[1] < -138.5}
    years = last - FIRST + 1
    # A file of fewer than eight years repeats them in a cycle.
    later = {(lat, lon, last + 1 + more, month): values[lat, lon, FIRST + more % years, month]
             for lat, lon, _, month in values for more in range(MORE)}
    return {key: str(value) for key, value in (values | later).items()}


class Run:
    def __init__(self, tools, folder):
        self.tools, self.folder = tools, folder

    def __call__(self, *arguments):
        return subprocess.run([self.tools / "veldmark-extract", *arguments], cwd=self.folder,
                              check=False, capture_output=True, text=True)

    def extract(self, name, *options):
        result = self(name, "--quiet", *options)
        assert (result.returncode, result.stderr) == (0, ""), result.stderr

    def expect_failure(self, status, message, *arguments):
        before = sorted(os.listdir(self.folder))
        result = self(*arguments, "-o", "none.csv")
        assert (result.returncode, message in result.stderr) == (status, True), result.stderr
        assert sorted(os.listdir(self.folder)) == before


def check_years(run, name, expected, last):
    """Years from the name, all and the last ones; from the size; and a disagreement."""
    end = last + MORE
    run.extract(name, *BOX, "--wide", "--stored", "-o", "all.csv")
    count = compare("all years", expected, read_wide(run.folder / "all.csv"))
    later = {key: value for key, value in expected.items() if key[2] > end - 3}
    run.extract(name, *BOX, "--years", f"{end - 2}:{end}", "--wide", "--stored", "-o", "end.csv")
    count += compare("the last years", later, read_wide(run.folder / "end.csv"))
    run.expect_failure(2, f"holds {FIRST}-{end}", name, "--years", f"{end}:{end + 1}")

    os.rename(run.folder / name, run.folder / "tmp.dat")
    run.expect_failure(2, "does not tell its years in its name: give --first-year", "tmp.dat",
                       "--variable", "tmp")
    run.extract("tmp.dat", "--variable", "tmp", "--first-year", str(FIRST), *BOX, "--years",
                f"{end - 2}:{end}", "--wide", "--stored", "-o", "size.csv")
    assert (run.folder / "size.csv").read_bytes() == (run.folder / "end.csv").read_bytes()

    other = f"cru_ts4.09.{FIRST}.{last}.tmp.dat.new"
    os.rename(run.folder / "tmp.dat", run.folder / other)
    run.expect_failure(
        1, f"the name says {FIRST}-{last}, but the file holds {end - FIRST + 1} years; with "
        f"--first-year {FIRST} it is taken as {FIRST}-{end}", other)
    run.extract(other, "--first-year", str(FIRST), *BOX, "--years", f"{end - 2}:{end}",
                "--wide", "--stored", "-o", "told.csv")
    assert (run.folder / "told.csv").read_bytes() == (run.folder / "end.csv").read_bytes()
    os.rename(run.folder / other, run.folder / name)
    return count


def check_texts(run, name, last, netcdf):
    """Headings and attributes are of release 4.09, the years those of the extract."""
    end = last + MORE
    years = ["--years", f"{last + 1}:{end}"]
    cite = run("--cite", name).stdout
    assert cite.startswith(f"CRU TS 4.09, mean temperature, {FIRST}-{end}; "), cite
    run.extract(name, *BOX, *years, "--format", "tsf", "-o", "later")
    texts = {"--cite": cite} | {path: (run.folder / path).read_text()
                                for path in ("later.TSF", "later.XY")}
    headings = [line for line in texts["later.TSF"].splitlines() if "RFMT" in line]
    assert len(headings) == 9 and all("CRUts4.09tmp.glo.tmp." in line and len(line) == 128
                                      for line in headings)
    assert texts["later.XY"].count("CRUts4.09tmp.   glo.tmp.") == 9
    if netcdf:
        run.extract(name, *BOX, *years, "-o", "later.nc")
        dump = subprocess.run(["ncdump", "-h", run.folder / "later.nc"], check=True,
                              capture_output=True, text=True).stdout
        assert (f':title = "mean temperature, {last + 1}-{end}, from CRU TS 4.09, {name}"'
                in dump), dump
        assert f':references = "{cite.strip()}"' in dump, dump
        texts["later.nc"] = dump
    for what, text in texts.items():
        assert "4.01" not in text and KNOWN_DOI not in text, f"{what} says 4.01:\n{text}"


def check_catalogued_release(run, name, last, netcdf):
    """Under the name of 4.01 the same file has the dialogue's headings and the citation."""
    end = last + MORE
    known = f"cru_ts4.01.{FIRST}.{end}.tmp.dat.new"
    os.rename(run.folder / name, run.folder / known)
    assert KNOWN_DOI in run("--cite", known).stdout
    run.extract(known, *BOX, "--years", f"{last + 1}:{end}", "--format", "tsf", "-o", "known")
    for ending in ("TSF", "XY"):
        later, of_known = ((run.folder / f"{stem}.{ending}").read_bytes()
                           for stem in ("later", "known"))
        later = later.replace(b"CRUts4.09", b"CRUts4.01").replace(b"later.TSF", b"known.TSF")
        assert later == of_known, f"known.{ending} differs by more than the release"
    if netcdf:
        run.extract(known, *BOX, "--years", f"{end}", "-o", "known.nc")
        dump = subprocess.run(["ncdump", "-h", run.folder / "known.nc"], check=True,
                              capture_output=True, text=True).stdout
        assert KNOWN_DOI in dump and "from CRU TS 4.01, " in dump
    os.rename(run.folder / known, run.folder / name)


def check_netcdf(run, name, expected, last):
    run.extract(name, *BOX, "-o", "all.nc")
    count = compare("netCDF", expected, read_netcdf(run.folder / "all.nc", "tmp"))
    dump = subprocess.run(["ncdump", "-v", "time_bnds", run.folder / "all.nc"], check=True,
                          capture_output=True, text=True).stdout
    days = (last + MORE + 1 - 1900) * 365 + (last + MORE - 1900) // 4  # 1900 had no leap day
    assert data_of_ncdump(dump, "time_bnds")[-1] == str(days)
    return count


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("tools", type=Path)
    parser.add_argument("--last", type=int, default=1903)
    parser.add_argument("--no-netcdf", action="store_true")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as temporary:
        run = Run(options.tools.resolve(), Path(temporary))
        grid = make_release(run.tools, run.folder, options.last)
        expected = expected_values(options.last)
        count = check_years(run, grid.name, expected, options.last)
        if not options.no_netcdf:
            count += check_netcdf(run, grid.name, expected, options.last)
        check_texts(run, grid.name, options.last, not options.no_netcdf)
        check_catalogued_release(run, grid.name, options.last, not options.no_netcdf)
        with open(grid, "rb+") as file:
            file.truncate(grid.stat().st_size - LINES_PER_YEAR * LINE)
        run.expect_failure(1, f"the name says {FIRST}-{options.last + MORE}, but the file "
                           f"holds {options.last + MORE - FIRST} years", grid.name)
    print(f"{count} values of a release to {options.last + MORE} are right")
    return 0


if __name__ == "__main__":
    sys.exit(main())
