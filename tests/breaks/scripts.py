"""Breaks of the scripts, which are run as they stand."""

from catchers import script
from definition import Break
from edits import Change

PLAY = "scripts/play_session"

BREAKS = [
    Break(
        "the demo's published file is of precipitation",
        script("demo_test", "{build}"),
        Change("scripts/demo_session", "cru_ts4.01_tmp_1901_2016.csv.gz",
               "cru_ts4.01_pre_1901_2016.csv.gz"),
    ),
    Break(
        "the demo writes over an extract that is not its own",
        script("demo_test", "{build}"),
        Change("scripts/demo_session", 'others+=("$file")', "rm -f -- \"$target/$file\""),
    ),
    Break(
        "play_session loses the program's status",
        script("play_session_test"),
        Change(PLAY, "        return ANSWER_MISSING if self.missing and status == 0 else status\n",
               "        return ANSWER_MISSING if self.missing and status == 0 else 0\n"),
    ),
    Break(
        "play_session never answers a prompt",
        script("play_session_test"),
        Change(PLAY, 'line.endswith(b"==> ") or ', ""),
    ),
    Break(
        "play_session types all answers at the first prompt",
        script("play_session_test"),
        Change(PLAY, "        text = self.answers[self.given]\n        self.given += 1\n",
               '        text = b"\\n".join(self.answers[self.given:])\n'
               "        self.given = len(self.answers)\n"),
    ),
    Break(
        "valgrind_session ignores valgrind's errors",
        script("valgrind_session_test", "{build}"),
        Change("scripts/valgrind_session", "--error-exitcode=1", "--error-exitcode=0"),
    ),
    Break(
        "valgrind_session compares a run with itself",
        script("valgrind_session_test", "{build}"),
        Change("scripts/valgrind_session", 'diff -r "$folder/plain" "$folder/checked"',
               'diff -r "$folder/checked" "$folder/checked"'),
    ),
    Break(
        "./check passes with tests that failed",
        script("check_test"),
        Change("check", "run_tests check --label-exclude long --progress\n",
               "run_tests check --label-exclude long --progress | tee tests.log || true\n"),
    ),
    Break(
        "a moved checkout builds in the old place",
        script("configure_test"),
        Change("scripts/configure",
               "== Ninja &&\n  $(cached CMAKE_HOME_DIRECTORY) -ef . && "
               "$(cached CMAKE_CACHEFILE_DIR) -ef $folder ]]", "== Ninja ]]"),
    ),
    Break(
        "setup installs only the last missing package",
        script("setup_test"),
        Change("scripts/setup", '  command -v "$1" > /dev/null || missing+=("$2")',
               '  command -v "$1" > /dev/null || missing=("$2")'),
    ),
]
