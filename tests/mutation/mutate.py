#!/usr/bin/env python3
"""Changes the program in one place at a time and checks whether the tests notice.

    mutate.py                       all mutants of the program and its companions
    mutate.py --only PATTERN        those whose name holds PATTERN (repeatable)
    mutate.py --sample N --seed S   N of them, drawn at random
    mutate.py --results FILE        stores results there and resumes a stopped campaign
    mutate.py --again survivors     tries again what survived (or `all`)
    mutate.py --build-folder FOLDER     keeps the copy that is built there for the next run
    mutate.py --results FILE --report   tries nothing; reports the results so far
    mutate.py --list                only names the mutants
    mutate.py --self-test           checks that mutants are found, those of the list too

A mutant is killed when a test fails or crashes, and timed out when one takes more than
ten times as long as usual.  The list `survivors` beside this file names the mutants that
no test can notice, and why.  The exit status is 1 if an unlisted mutant survives, if a
listed one was killed or no longer exists, or if more than 1.6 % survive.  README.md says
more.
"""

import argparse
import collections
import concurrent.futures
import os
import queue
import random
import shutil
import signal
import sys
import tempfile
import time
import zlib
from typing import Dict, List, Optional, Sequence, TextIO, Tuple

import self_test
from mutant_build import (
    ALL_TESTS, KILLED, NO_PROGRAM, SAME_CODE, SURVIVED, TIMED_OUT, MutantBuild, Verdict, Worker,
)
from places import TOPS, Mutant, find_mutants
from survivor_list import Survivor, matching, read_survivors

HERE = os.path.dirname(os.path.abspath(__file__))
PROJECT = os.path.dirname(os.path.dirname(HERE))

MAX_SURVIVAL_PERCENT = 1.6

# By the mutant's name and a checksum of its source file: results for another version of
# the file are ignored.
Results = Dict[Tuple[str, str], Verdict]


def sources(project: str) -> List[str]:
    """Returns the C++ files of the program and its companions, as paths from the project's root."""
    found: List[str] = []
    for top in TOPS:
        for folder, _, names in os.walk(os.path.join(project, top)):
            found += [
                os.path.relpath(os.path.join(folder, name), project)
                for name in names
                if name.endswith((".cc", ".h"))
            ]
    return sorted(found)


def all_mutants(project: str) -> Tuple[List[Mutant], Dict[str, str]]:
    """Returns all mutants, and a checksum of each file."""
    mutants: List[Mutant] = []
    sums: Dict[str, str] = {}
    for file in sources(project):
        with open(os.path.join(project, file)) as source:
            text = source.read()
        sums[file] = "%08x" % zlib.crc32(text.encode())
        mutants += find_mutants(file, text)
    return mutants, sums


def chosen(mutants: List[Mutant], arguments: argparse.Namespace) -> List[Mutant]:
    """Returns the mutants that the command line asks for."""
    if arguments.only:
        mutants = [m for m in mutants if any(only in m.name for only in arguments.only)]
    if arguments.sample is not None and arguments.sample < len(mutants):
        drawn = random.Random(arguments.seed).sample(range(len(mutants)), arguments.sample)
        mutants = [mutants[i] for i in sorted(drawn)]
    return mutants


# ---------------------------------------------------- results on disk


def read_results(path: Optional[str]) -> Results:
    """Returns the results of earlier runs; the last one of a mutant counts."""
    results: Results = {}
    if path and os.path.exists(path):
        with open(path) as file:
            for line in file:
                name, checksum, result, by, seconds = line.rstrip("\n").split("\t")
                results[(name, checksum)] = Verdict(result, by, float(seconds))
    return results


def note(file: Optional[TextIO], mutant: Mutant, checksum: str, verdict: Verdict) -> None:
    """Appends a result."""
    if file:
        words = (mutant.name, checksum, verdict.result, verdict.by, "%.2f" % verdict.seconds)
        file.write("\t".join(words) + "\n")
        file.flush()


# ---------------------------------------------------- a campaign


class Campaign:
    """Tries many mutants and records the results."""

    def __init__(self, sums: Dict[str, str], arguments: argparse.Namespace) -> None:
        self._sums = sums
        self._arguments = arguments
        self.results = read_results(arguments.results)
        self._file: Optional[TextIO] = None

    def verdict(self, mutant: Mutant) -> Optional[Verdict]:
        return self.results.get((mutant.name, self._sums[mutant.file]))

    def _is_pending(self, mutant: Mutant) -> bool:
        verdict = self.verdict(mutant)
        if verdict is None or self._arguments.again == "all":
            return True
        if verdict.result != SURVIVED:
            return False
        only_quick_tests = verdict.by != ALL_TESTS and not self._arguments.quick
        return only_quick_tests or self._arguments.again == "survivors"

    def run(self, mutants: List[Mutant]) -> None:
        """Tries the pending mutants: first those with an earlier result, then the others.
        Both are in random order, so that a stopped campaign has tried a random sample."""
        waiting = [mutant for mutant in mutants if self._is_pending(mutant)]
        if not waiting:
            return
        random.Random(self._arguments.seed).shuffle(waiting)
        waiting.sort(key=lambda mutant: self.verdict(mutant) is None)  # those with a result first
        folder = self._arguments.build_folder or tempfile.mkdtemp(prefix="veldmark-mutants-")
        try:
            if self._arguments.results:
                self._file = open(self._arguments.results, "a")
            self._run_in(folder, waiting)
        finally:
            if not self._arguments.build_folder:
                shutil.rmtree(folder, ignore_errors=True)
            if self._file:
                self._file.close()

    def _run_in(self, folder: str, waiting: List[Mutant]) -> None:
        plain = os.path.join(folder, "plain")
        self._try_in_build(PROJECT, plain, waiting, sanitized=False)
        if not self._arguments.quick:
            left = [m for m in waiting if self.results[self._key(m)].result == SURVIVED]
            # The project may have changed since the campaign began.
            copied = os.path.join(plain, "tree")
            self._try_in_build(copied, os.path.join(folder, "sanitized"), left, sanitized=True)

    def _try_in_build(
        self, project: str, folder: str, waiting: List[Mutant], sanitized: bool
    ) -> None:
        """Tries mutants in one build of `project`. In the plain build, survivors are tried
        again with the slower tests."""
        if not waiting:
            return
        jobs = self._arguments.jobs
        say("building, with sanitizers" if sanitized else "building")
        build = MutantBuild(project, folder, jobs, sanitized)
        workers: "queue.Queue[Worker]" = queue.Queue()
        first = Worker(build, 0)
        first.measure(sorted({mutant.file for mutant in waiting}))
        workers.put(first)
        for number in range(1, jobs):
            workers.put(Worker(build, number))
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            say("%d mutants to try" % len(waiting))
            self._try_all(pool, workers, waiting, Worker.try_mutant)
            if not self._arguments.quick and not sanitized:
                left = [m for m in waiting if self.results[self._key(m)].result == SURVIVED]
                say("%d survivors to try with the slower tests" % len(left))
                self._try_all(pool, workers, left, Worker.try_slow_tests)

    def _key(self, mutant: Mutant) -> Tuple[str, str]:
        return mutant.name, self._sums[mutant.file]

    def _try_all(self, pool, workers, mutants: List[Mutant], action) -> None:
        def one(mutant: Mutant) -> Tuple[Mutant, Verdict]:
            worker = workers.get()
            try:
                return mutant, action(worker, mutant)
            finally:
                workers.put(worker)

        tries = [pool.submit(one, mutant) for mutant in mutants]
        for done, future in enumerate(concurrent.futures.as_completed(tries), 1):
            mutant, verdict = future.result()
            self.results[self._key(mutant)] = verdict
            note(self._file, mutant, self._sums[mutant.file], verdict)
            if verdict.result == SURVIVED:
                say("%d of %d: survived: %s" % (done, len(mutants), mutant.name))


def say(text: str) -> None:
    """Prints the progress of the campaign."""
    print("%s  %s" % (time.strftime("%H:%M:%S"), text), file=sys.stderr, flush=True)


# ---------------------------------------------------- the report


def check_list(mutants: Sequence[Mutant]) -> int:
    """Prints the entries of the list that fit no mutant. Returns 1 if there are any, or 0."""
    listed = read_survivors(os.path.join(HERE, "survivors"))
    found = {matching(listed, mutant) for mutant in mutants}
    stale = [survivor.name for survivor in listed if survivor not in found]
    for name in stale:
        print("listed, and no such mutant: %s" % name)
    return 1 if stale else 0


def report(
    mutants: Sequence[Mutant], campaign: Campaign, listed: List[Survivor], complete: bool
) -> bool:
    """Prints the figures, and how they differ from the list. Returns whether nothing
    differs and no more mutants survive than may."""
    counts: Dict[str, "collections.Counter[str]"] = collections.defaultdict(
        collections.Counter
    )
    unlisted: List[Mutant] = []
    stale: List[str] = []
    found = set()
    for mutant in mutants:
        verdict = campaign.verdict(mutant)
        assert verdict is not None
        for group in (os.path.dirname(mutant.file), mutant.kind, "all"):
            counts[group][verdict.result] += 1
            counts[group]["made"] += 1
        survivor = matching(listed, mutant)
        if survivor:
            found.add(survivor)
        if verdict.result == SURVIVED and not survivor:
            unlisted.append(mutant)
        if verdict.result != SURVIVED and survivor:
            stale.append("%s (%s)" % (survivor.name, verdict.result))
    if complete:
        stale += ["%s (no such mutant)" % s.name for s in listed if s not in found]

    print_figures(counts)
    for mutant in unlisted:
        print("survives and is not listed: %s\n    | %s" % (mutant.name, mutant.line_text))
    for name in stale:
        print("listed, but not a survivor: %s" % name)
    per_cent = share(counts["all"])
    print("%.2f %% survive; the limit is %.1f %%" % (per_cent, MAX_SURVIVAL_PERCENT))
    return not unlisted and not stale and per_cent <= MAX_SURVIVAL_PERCENT


def share(count: "collections.Counter[str]") -> float:
    """Returns the percentage of survivors among mutants with other machine code."""
    tried = count[KILLED] + count[TIMED_OUT] + count[SURVIVED]
    return 100.0 * count[SURVIVED] / tried if tried else 0.0


def print_figures(counts: Dict[str, "collections.Counter[str]"]) -> None:
    """Prints a line for each folder, each kind of change, and all."""
    columns = ("made", NO_PROGRAM, SAME_CODE, KILLED, TIMED_OUT, SURVIVED)
    print("%-16s" % "" + "".join("%12s" % column for column in columns) + "%12s" % "share")
    folders = sorted(group for group in counts if group.split("/")[0] in TOPS)
    kinds = sorted(group for group in counts if group not in folders and group != "all")
    for group in folders + kinds + ["all"]:
        numbers = "".join("%12d" % counts[group][column] for column in columns)
        print("%-16s%s%10.2f %%" % (group, numbers, share(counts[group])))


def parsed_arguments() -> argparse.Namespace:
    """Parses the command line."""
    parser = argparse.ArgumentParser(description=(__doc__ or "").split("\n")[0])
    parser.add_argument("--only", action="append", metavar="PATTERN")
    parser.add_argument("--sample", type=int, metavar="N")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1)
    parser.add_argument("--results", metavar="FILE")
    parser.add_argument("--build-folder", metavar="FOLDER")
    parser.add_argument("--again", choices=("survivors", "all"))
    parser.add_argument("--quick", action="store_true", help="without the slower tests")
    parser.add_argument("--report", action="store_true", help="only what was tried so far")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--self-test", action="store_true")
    return parser.parse_args()


def restore_signals() -> None:
    """Restores default handlers: a background job ignores these signals, and the tested
    programs would inherit that."""
    for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGHUP):
        if signal.getsignal(number) == signal.SIG_IGN:
            signal.signal(number, signal.SIG_DFL)


# A device with a mount of its own can be neither removed nor replaced.
KEEP_DEVICES = (
    'for device in /dev/null /dev/full; do mount --bind "$device" "$device" || exit; done; '
    'DEVICES_ARE_KEPT=1 exec "$@"'
)


def keep_devices() -> None:
    """Restarts this program where /dev/null and /dev/full can't be removed: a mutant that
    is run as root could remove them."""
    if os.geteuid() != 0 or "DEVICES_ARE_KEPT" in os.environ:
        return
    call = ["unshare", "--mount", "sh", "-c", KEEP_DEVICES, "sh", sys.executable, *sys.argv]
    os.execvp(call[0], call)


def main() -> int:
    """Runs the command line. Returns the exit status."""
    arguments = parsed_arguments()
    restore_signals()
    everything, sums = all_mutants(PROJECT)
    if arguments.self_test:
        return self_test.run() or check_list(everything)
    mutants = chosen(everything, arguments)
    if arguments.list:
        for mutant in mutants:
            print(mutant.name)
        return 0
    if not arguments.report:
        keep_devices()
    begin = time.monotonic()
    listed = read_survivors(os.path.join(HERE, "survivors"))
    campaign = Campaign(sums, arguments)
    if arguments.report:
        mutants = [mutant for mutant in mutants if campaign.verdict(mutant)]
    else:
        campaign.run(mutants)
    all_is_well = report(mutants, campaign, listed, complete=len(mutants) == len(everything))
    print("%.0f seconds" % (time.monotonic() - begin))
    return 0 if all_is_well else 1


if __name__ == "__main__":
    sys.exit(main())
