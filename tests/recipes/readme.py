"""The example in docs/recipes/README.md: its commands are run, its output is compared."""
import re
import subprocess

from checks import check
from extracts import TOP
from languages import LANGUAGES, RECIPES


def example():
    """(commands, output) of the section that makes an extract and draws it."""
    text = (RECIPES / "README.md").read_text(encoding="utf-8")
    section = text.split("## The extract\n")[1].split("\n## ")[0]
    blocks = re.findall(r"(?:^    .*\n)+", section, re.MULTILINE)
    blocks = [re.sub(r"^    ", "", block, flags=re.MULTILINE) for block in blocks]
    return "".join(blocks[:-1]), blocks[-1].splitlines()


def without_pictures(output):
    return [line.rstrip() for line in output.splitlines()
            if not line.startswith("picture ")]


def check_readme_output(language, extract):
    """Every language prints what is shown."""
    result = LANGUAGES[language].run(RECIPES, extract.stem, 5.75, 52.25)
    check(without_pictures(result.stdout) == example()[1],
          "%s: docs/recipes/README.md shows another output:\n%s" % (language,
                                                                     result.stdout))


def check_readme_commands(folder, build):
    """Typed as they stand, in a folder with links to the project's."""
    folder.mkdir()
    for name in ("data", "docs", "scripts"):
        (folder / name).symlink_to(TOP / name)
    (folder / "build").symlink_to(build)
    result = subprocess.run(["bash", "-e"], input=example()[0], cwd=folder, text=True,
                            capture_output=True, check=False)
    count = len(example()[1])
    printed = without_pictures(result.stdout)[-count:]
    check(result.returncode == 0 and printed == example()[1],
          "the commands of docs/recipes/README.md: status %d, %s\n%s" % (
              result.returncode, printed, result.stderr))
