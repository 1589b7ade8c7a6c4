"""The folder in which measurements run: grid files, sessions, outputs, comparisons."""

import dataclasses
import filecmp
import gzip
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parents[1]
LAND_MASK = TOP / "docs" / "recipes" / "land_mask.txt.gz"
MIB = 1 << 20
GRID_SIZE = 116 * 12 * 360 * 3601
KINDS = {"pre": "mixed", "frs": "frost"}


@dataclasses.dataclass(frozen=True)
class RunCost:
    """The cost of a run: wall seconds and peak resident memory in MiB."""

    seconds: float
    peak: float


def touch_memory(size):
    """Allocates and frees `size` bytes.

    Under a hypervisor, allocating memory that has long been free costs several times as
    much as allocating memory that was just freed, and runs would get either by chance.
    """
    bytearray(b"x") * size  # pylint: disable=expression-not-assigned


def log(text):
    """Prints a progress message to standard error."""
    print(text, file=sys.stderr, flush=True)


class Stage:
    """Runs programs of the folder `programs` (the build) in the folder `folder`.

    Grid files stay in `folder`; all else goes to a subfolder that clear() removes.
    """

    def __init__(self, programs, folder):
        self.programs = pathlib.Path(programs).resolve()
        self.folder = pathlib.Path(folder).resolve()
        self.folder.mkdir(parents=True, exist_ok=True)
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="runs-", dir=self.folder))
        self.session = self.scratch / "session"
        self.expected = self.scratch / "expected"
        self.limit_outputs = self.scratch / "limit"
        for folder in (self.session, self.expected, self.limit_outputs):
            folder.mkdir()

    def bench_program(self, name):
        return str(self.programs / "bench" / name)

    def data_file(self, variable):
        return self.session / f"cru_ts4.01.1901.2016.{variable}.dat.new"

    def prepare(self, variable):
        """Makes the grid file of `variable` unless it exists, and reads it into the page cache."""
        if self.data_file(variable).exists():
            return
        kind = KINDS[variable]
        grid = self.folder / f"{kind}.grid"
        if not grid.exists() or grid.stat().st_size != GRID_SIZE:
            log(f"making {grid}")
            part = grid.with_suffix(".part")
            mask = gzip.decompress(LAND_MASK.read_bytes())
            command = [self.bench_program("make_grid"), str(part), kind]
            subprocess.run(command, input=mask, check=True)
            part.rename(grid)
        self.data_file(variable).symlink_to(grid)
        self.read_into_cache(variable)

    def read_into_cache(self, variable):
        """Reads the grid file of `variable` into the page cache."""
        read_into_cache(self.data_file(variable))

    def drop_from_cache(self, variable):
        """Drops the grid file of `variable` from the page cache."""
        os.sync()
        with self.data_file(variable).open("rb", buffering=0) as file:
            os.posix_fadvise(file.fileno(), 0, 0, os.POSIX_FADV_DONTNEED)

    def outputs(self, variable):
        """Returns the paths of a session's time series and cell list."""
        name = self.data_file(variable).name
        return [self.session / f"{name}.TSF", self.session / f"{name}.XY"]

    def remove_outputs(self, variable):
        for output in self.outputs(variable):
            output.unlink(missing_ok=True)

    def run(self, program, *arguments, typed=""):
        """Runs a program in the session's folder.

        First syncs what earlier runs have written, and allocates and frees as much memory
        as the program and its outputs need.
        """
        answers = self.scratch / "answers"
        answers.write_text(typed, encoding="ascii")
        command = [self.bench_program("timed_run"), str(answers), str(program)]
        os.sync()
        touch_memory(128 * MIB + 3 * sum(self.expected_sizes()))
        done = subprocess.run(
            command + [str(argument) for argument in arguments],
            cwd=self.session,
            env={**os.environ, "TERM": "dumb"},
            stdout=subprocess.PIPE,
            check=False,
            text=True,
        )
        if done.returncode != 0:
            sys.exit(f"{program} could not be run")
        seconds, peak, status = done.stdout.split()
        if int(status) != 0:
            sys.exit(f"{program} ended with status {status}")
        return RunCost(float(seconds), int(peak) / 1024)

    def run_veldmark(self, typed):
        return self.run(self.programs / "veldmark", typed=typed)

    def run_limit(self, variable, search, replace=False, commands=False):
        """Runs the limit: reads and writes the minimum for `search`. Requires expect()
        to have been called.

        replace    overwrite the outputs of the previous limit
        commands   run the three shell commands of a session first
        """
        if not replace:
            empty_folder(self.limit_outputs)
        years = (search.first_year - 1900, search.last_year - 1900)
        grid, folder = self.data_file(variable), self.limit_outputs
        return self.run(
            self.bench_program("limit"),
            *(["--commands"] if commands else []),
            *(grid, "%d-%d" % search.rows(), *years, folder, *self.expected_sizes()),
        )

    def expect(self, variable, search):
        """Makes the expected outputs of `search`. Returns the number of saved cells."""
        empty_folder(self.expected)
        command = [
            self.bench_program("plain_extract"),
            *(variable, str(self.data_file(variable)), str(self.expected)),
            "%d-%d" % search.rows(),
            f"{search.first_year}-{search.last_year}",
            str(search.factor),
            *("%d-%d" % columns for columns in search.column_ranges()),
        ]
        subprocess.run(command, check=True)
        cell_list = self.expected / self.outputs(variable)[1].name
        with cell_list.open(encoding="ascii") as lines:
            return sum(1 for _ in lines) - 1

    def expected_sizes(self):
        """Returns the sizes of the outputs that expect() has made."""
        return [output.stat().st_size for output in self.expected.iterdir()]

    def compare(self, variable):
        """Exits if an output of the session differs from the expected one."""
        for output in self.outputs(variable):
            expected = self.expected / output.name
            if not filecmp.cmp(output, expected, shallow=False):
                sys.exit(f"DIFFERENT: {output} is not what it must be: {expected}")

    def clear(self):
        """Removes everything but the grid files."""
        shutil.rmtree(self.scratch)


def read_into_cache(path):
    """Reads a file into the page cache."""
    with path.open("rb", buffering=0) as file:
        while file.read(MIB):
            pass


def empty_folder(folder):
    shutil.rmtree(folder)
    folder.mkdir()
