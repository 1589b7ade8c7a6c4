"""Types the commands of a page into one shell, as its reader would."""

import subprocess
import tempfile
from pathlib import Path


def run_commands(commands, folder, environment):
    """(what is shown, exit status) of each command; variables and folders are kept.

    Screen and messages come in the order in which they are written. A command that ends
    the shell leaves none for those after it.
    """
    with tempfile.TemporaryDirectory() as scratch:
        script = []
        for number, command in enumerate(commands):
            shown, status = (f"'{scratch}/{number}.{kind}'" for kind in ("shown", "status"))
            script.append(f"{{\n{command}\n}} > {shown} 2>&1\necho $? > {status}\n")
        file = Path(scratch) / "script"
        file.write_text("".join(script), encoding="utf-8")
        subprocess.run(
            ["bash", file],
            stdin=subprocess.DEVNULL,
            cwd=folder,
            env=environment,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            check=False,
            timeout=300,
        )
        return [result_of(Path(scratch), number) for number in range(len(commands))]


def result_of(scratch, number):
    status = scratch / f"{number}.status"
    if not status.exists():
        return "", None
    shown = (scratch / f"{number}.shown").read_text(encoding="utf-8", errors="replace")
    return shown, int(status.read_text())
