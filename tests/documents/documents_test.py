"""Compares what the documents say with what the programs do on the real sample.

    documents_test.py PROGRAM_FOLDER [TEST]...

PROGRAM_FOLDER holds veldmark, tersify and series_to_grid. A test is named by its module,
class and method: pages_test.Examples. `pages.py` has the list of all pages.
"""

import sys
import unittest
from pathlib import Path

from support import Built

HERE = Path(__file__).resolve().parent


def chosen_tests(names):
    loader = unittest.defaultTestLoader
    if not names:
        names = sorted(path.stem for path in HERE.glob("*_test.py"))
        names.remove(Path(__file__).stem)
    return loader.loadTestsFromNames(names)


def main(arguments):
    if not arguments:
        sys.exit(__doc__.strip())
    Built.use(arguments[0])
    result = unittest.TextTestRunner(verbosity=1).run(chosen_tests(arguments[1:]))
    return 0 if result.testsRun > 0 and result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
