#!/usr/bin/env python3
"""Makes every memory allocation of a program fail once.

    every_allocation_fails_once.py SHIM PROGRAM_FOLDER SCENE...

SHIM is failing_memory.so.  Each scene is first played without a fault, to count the
requests, then once for each request.  What must follow is in *_rules.py.  The exit status
is 1 if any rule was broken.  Not for programs with an address sanitizer.
"""

import argparse
import errno
import sys
import time
from collections import Counter
from pathlib import Path

from all_scenes import SCENES, play_scenes
from fault_runs import Fault, Scene

sys.path.append(str(Path(__file__).resolve().parent.parent / "support"))
from figures import note_figures  # noqa: E402



# The minimum number of requests of each scene: three quarters of the actual number.
MINIMUM = {
    "veldmark-small": 240,
    "veldmark-mistyped": 40,
    "tersify": 12,
    "tersify-refusal": 12,
    "tersify-check": 11,
    "tersify-gzip": 20,
    "tersify-gzip-refusal": 25,
    "series_to_grid": 250,
    "extract-csv": 485,
    "extract-sites": 610,
    "extract-tsf-replaced": 450,
}


def try_all(name: str, scene: Scene) -> Counter:
    """Returns the numbers of requests and complaints."""
    baseline = scene.run()
    if baseline.status is None or not baseline.calls:
        sys.exit("the run without a fault doesn't end as it should")
    requests = baseline.calls[-1].number
    complaints = 0
    unharmed = 0
    for number in range(1, requests + 1):
        fault = Fault("malloc", "-", number, "error=%d" % errno.ENOMEM)
        outcome = scene.run(fault)
        faulty = [call for call in outcome.calls if call.faulty]
        complaint = "the fault was not injected"
        if faulty:
            complaint = scene.complaint(baseline, fault, faulty[0], outcome)
        if complaint:
            complaints += 1
            size = faulty[0].size if faulty else 0
            print("%s (%d bytes)\n    %s" % (fault, size, complaint))
        elif not outcome.differs_from(baseline):
            unharmed += 1
    print("%d requests for memory, %d without effect" % (requests, unharmed), flush=True)
    if requests < MINIMUM.get(name, 1):
        complaints += 1
        print("only %d requests in %s; at least %d expected" % (requests, name, MINIMUM[name]))
    return Counter(requests=requests, complaints=complaints)


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("shim")
    parser.add_argument("programs", type=Path)
    parser.add_argument("scenes", nargs="+", choices=SCENES)
    options = parser.parse_args()
    started = time.monotonic()
    sums = play_scenes(options.shim, options.programs, options.scenes, try_all)
    note_figures("memory." + "-".join(options.scenes), sums)
    counted = "%d requests for memory refused, %d complaints" % (
        sums["requests"],
        sums["complaints"],
    )
    print("%s, %.1f s" % (counted, time.monotonic() - started))
    return 1 if sums["complaints"] else 0


if __name__ == "__main__":
    sys.exit(main())
