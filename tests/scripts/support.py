"""Scratch folders and stand-ins for the tests of the scripts."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
LIMIT = 120  # seconds that a script may take before it counts as hanging


class ScriptTest(unittest.TestCase):
    """A scratch folder whose name holds a blank, and an environment without CDPATH or CI."""

    maxDiff = None

    def setUp(self):
        base = tempfile.TemporaryDirectory(prefix="veldmark scripts ")
        self.addCleanup(base.cleanup)
        self.folder = Path(base.name).resolve()
        self.environment = dict(os.environ)
        for name in ("CDPATH", "CI", "MAKEFLAGS"):
            self.environment.pop(name, None)

    def run_script(self, *command, folder=None, stdin=subprocess.DEVNULL, **environment):
        return subprocess.run(
            [str(word) for word in command],
            cwd=folder or self.folder,
            env={**self.environment, **environment},
            stdin=stdin,
            capture_output=True,
            text=True,
            check=False,
            timeout=LIMIT,
        )

    def copy(self, *names, to):
        """Copies files and folders of the project to the same places below `to`."""
        for name in names:
            target = to / name
            target.parent.mkdir(parents=True, exist_ok=True)
            if (TOP / name).is_dir():
                shutil.copytree(TOP / name, target)
            else:
                shutil.copy2(TOP / name, target)

    def stand_in(self, path, script):
        """Makes an executable shell script."""
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text("#!/bin/bash\n" + script)
        path.chmod(0o755)
        return path
