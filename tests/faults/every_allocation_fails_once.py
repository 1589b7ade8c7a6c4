#!/usr/bin/env python3
"""Makes every request for memory of a program fail once.

    every_allocation_fails_once.py SHIM PROGRAM_FOLDER SCENE...

SHIM is failing_memory.so.  The scene is played undisturbed, to count the requests, and
then once for each of them.  What must come of it is in *_rules.py.  The exit status is 1
when anything was wrong.  Not for programs with an address sanitizer.
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



# The requests of each scene at the least: three quarters of what they are.
LEAST = {
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
    """Result: the numbers of requests and complaints."""
    calm = scene.run()
    if calm.status is None or not calm.calls:
        sys.exit("the undisturbed run doesn't end as it should")
    requests = calm.calls[-1].number
    complaints = 0
    unharmed = 0
    for number in range(1, requests + 1):
        fault = Fault("malloc", "-", number, "error=%d" % errno.ENOMEM)
        outcome = scene.run(fault)
        faulty = [call for call in outcome.calls if call.faulty]
        complaint = "the fault was never met"
        if faulty:
            complaint = scene.complaint(calm, fault, faulty[0], outcome)
        if complaint:
            complaints += 1
            size = faulty[0].size if faulty else 0
            print("%s (%d bytes)\n    %s" % (fault, size, complaint))
        elif not outcome.differs_from(calm):
            unharmed += 1
    print("%d requests for memory, %d of no consequence" % (requests, unharmed), flush=True)
    if requests < LEAST.get(name, 1):
        complaints += 1
        print("only %d requests in %s; at least %d expected" % (requests, name, LEAST[name]))
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
