#!/usr/bin/env python3
"""Makes every system call that a program makes fail once.

    every_call_fails_once.py SHIM PROGRAM_FOLDER SCENE... [--sanitized]

SHIM is failing_calls.so.  Each scene is first played without a fault, to record its
calls; then once for every call and every fault that the call can have.  What must follow
is in *_rules.py.  The exit status is 1 if any rule was broken.

--sanitized    the programs are built with sanitizers, which make calls of their own:
               calls that concern no file are not made to fail
"""

import argparse
import errno
import signal
import sys
import time
from collections import Counter
from pathlib import Path
from typing import Iterator, List

from all_scenes import SCENES, play_scenes
from fault_runs import Call, Fault, Scene

sys.path.append(str(Path(__file__).resolve().parent.parent / "support"))
from figures import note_figures  # noqa: E402


INTERRUPTED = [errno.EINTR]
LOOKUP_ERRORS = [errno.EIO, errno.EACCES]

# The errors that each call can fail with.
ERRORS = {
    "open": [errno.EINTR, errno.EACCES, errno.EMFILE, errno.ENOSPC],
    "openat": [errno.EINTR, errno.EACCES, errno.EMFILE, errno.ENOSPC],
    "read": [errno.EINTR, errno.EIO],
    "readv": [errno.EINTR, errno.EIO],
    "pread": [errno.EINTR, errno.EIO],
    "write": [errno.EINTR, errno.EIO, errno.ENOSPC],
    "writev": [errno.EINTR, errno.EIO, errno.ENOSPC],
    "pwrite": [errno.EINTR, errno.EIO, errno.ENOSPC],
    "close": [errno.EINTR, errno.EIO, errno.ENOSPC],
    "rename": [errno.EIO, errno.ENOSPC, errno.EACCES],
    "renameat2": [errno.EINVAL, errno.EIO],
    "link": [errno.EPERM, errno.EIO, errno.EEXIST],
    "unlink": LOOKUP_ERRORS,
    "stat": LOOKUP_ERRORS,
    "lstat": LOOKUP_ERRORS,
    "fstat": LOOKUP_ERRORS,
    "fstatat": LOOKUP_ERRORS,
    "access": LOOKUP_ERRORS,
    "faccessat": LOOKUP_ERRORS,
    "statfs": LOOKUP_ERRORS,
    "fchmod": [errno.EPERM],
    "flock": [errno.EINTR, errno.ENOLCK, errno.EWOULDBLOCK],
    "ftruncate": [errno.EINTR, errno.EIO],
    "fsync": [errno.EINTR, errno.EIO, errno.ENOSPC, errno.EINVAL],
    "fcntl": [errno.EMFILE],
    "poll": [errno.EINTR, errno.ENOMEM],
    "ioctl": [errno.ENOTTY],
    "lseek": [errno.ESPIPE],
    "mmap": [errno.ENOMEM],
    "mremap": [errno.ENOMEM],
    "brk": [errno.ENOMEM],
    "munmap": [errno.ENOMEM],
    "mprotect": [errno.ENOMEM],
    "madvise": [errno.EINVAL],
    "getrandom": [errno.ENOSYS],
    "getcwd": LOOKUP_ERRORS,
    "system": [errno.EAGAIN],
}
READS = {"read", "readv", "pread"}
WRITES = {"write", "writev", "pwrite"}
# The minimum numbers of faults and calls of each scene, somewhat below the actual numbers:
# without them, a scene that saves nothing, or a shim that misses a call, would pass. With
# sanitizers, calls that concern no file are left out.
MINIMUM = {
    "veldmark": (1110, 187),
    "veldmark-small": (950, 160),
    "veldmark-mistyped": (98, 15),
    "tersify": (370, 90),
    "tersify-refusal": (160, 40),
    "tersify-check": (70, 16),
    "tersify-gzip": (150, 42),
    "tersify-gzip-refusal": (165, 44),
    "series_to_grid": (250, 50),
    "extract-csv": (260, 55),
    "extract-output": (175, 33),
    "extract-sites": (380, 70),
    "extract-tsf": (345, 80),
    "extract-tsf-replaced": (340, 79),
    "extract-netcdf": (600, 150),
}
SHARE_SANITIZED = 0.6
CANNOT_FAIL = {"exit_group", "rt_sigaction", "geteuid", "futex"}


def faults_of(call: Call, scene: Scene) -> Iterator[Fault]:
    def fault(what: str, lasting: bool = False) -> Fault:
        return Fault(call.name, call.file, call.number, what, lasting)

    for error in ERRORS[call.name]:
        yield fault("error=%d" % error)
    if call.name in READS | WRITES and call.file in scene.waits_for:
        yield fault("error=%d" % errno.EAGAIN)
    if call.name in READS | WRITES and call.size > 1:
        yield fault("count=1")
        yield fault("half")
    if call.name in WRITES:
        yield fault("error=%d" % errno.ENOSPC, lasting=True)
    if call.name in READS:
        yield fault("end")
        if call.file in scene.files:
            yield fault("shrink=0")
            yield fault("shrink=%d" % (scene.size_of(call.file) // 3))
    if call.file != "-":
        yield fault("signal=%d" % signal.SIGINT)


def places(calls: List[Call], scene: Scene, sanitized: bool) -> Iterator[Call]:
    for call in calls:
        if call.name in CANNOT_FAIL or scene.leaves_out(call):
            continue
        if sanitized and ((call.file == "-" and call.name != "system") or ":" in call.file):
            continue
        if call.name not in ERRORS:
            sys.exit("no faults are defined for the call: %s" % (call,))
        yield call


def shortfall(name: str, faults: int, calls: int, sanitized: bool) -> str:
    """Returns a message if a scene has too few faults or calls, else ""."""
    share = SHARE_SANITIZED if sanitized else 1
    least_faults, least_calls = (int(share * least) for least in MINIMUM[name])
    if faults >= least_faults and calls >= least_calls:
        return ""
    return "only %d faults at %d calls in %s; at least %d at %d expected" % (
        (faults, calls, name, least_faults, least_calls)
    )


def try_all(name: str, scene: Scene, sanitized: bool) -> Counter:
    """Returns the numbers of faults, calls and complaints."""
    baseline = scene.run()
    again = scene.run()
    if baseline.differs_from(again) or baseline.status is None:
        sys.exit("two runs without a fault differ: " + baseline.differs_from(again))
    complaints = 0
    if disorder := scene.wrong_order(baseline):
        complaints += 1
        print(disorder)
    tried: Counter = Counter()
    all_places = list(places(baseline.calls, scene, sanitized))
    for call in all_places:
        for fault in faults_of(call, scene):
            outcome = scene.run(fault)
            tried[call.name] += 1
            if not any(one.faulty for one in outcome.calls):
                complaint = "the fault was not injected"
            else:
                complaint = scene.complaint(baseline, fault, call, outcome)
            if complaint:
                complaints += 1
                print("%s\n    %s" % (fault, complaint))
    kinds = ", ".join("%s %d" % pair for pair in sorted(tried.items()))
    faults = sum(tried.values())
    print("%d faults at %d calls: %s" % (faults, len(all_places), kinds), flush=True)
    missing = shortfall(name, faults, len(all_places), sanitized)
    if missing:
        complaints += 1
        print(missing)
    return Counter(faults=faults, calls=len(all_places), complaints=complaints)


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("shim")
    parser.add_argument("programs", type=Path)
    parser.add_argument("scenes", nargs="+", choices=SCENES)
    parser.add_argument("--sanitized", action="store_true")
    options = parser.parse_args()
    started = time.monotonic()
    sums = play_scenes(
        options.shim,
        options.programs,
        options.scenes,
        lambda name, scene: try_all(name, scene, options.sanitized),
    )
    note_figures("faults." + "-".join(options.scenes), sums)
    counted = "%d faults injected at %d calls, %d complaints" % (
        sums["faults"],
        sums["calls"],
        sums["complaints"],
    )
    print("%s, %.1f s" % (counted, time.monotonic() - started))
    return 1 if sums["complaints"] else 0


if __name__ == "__main__":
    sys.exit(main())
