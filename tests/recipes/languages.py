"""The recipes' languages."""
import os
import subprocess

from extracts import TOP

RECIPES = TOP / "docs" / "recipes"
FONTS = TOP / "tests" / "recipes" / "fonts.conf"


class Language:
    """An interpreter, the recipe's name, and how to have texts kept as texts."""

    def __init__(self, command, script, reader, kind="png", as_texts=None):
        self.command, self.script, self.kind = command, script, kind
        self.reader, self.as_texts = reader, as_texts

    def run(self, folder, *arguments, locale="C.UTF-8"):
        return subprocess.run([*self.command, str(folder / self.script),
                               *map(str, arguments)], encoding="utf-8", capture_output=True,
                              env={**os.environ, "LC_ALL": locale,
                                   "FONTCONFIG_FILE": str(FONTS),
                                   "PYTHONDONTWRITEBYTECODE": "1"})


LANGUAGES = {
    "R": Language(
        ["Rscript"], "cells.R",
        ["Rscript", "-e", "source('%s/read_tsf.R'); write.table(read_tsf(commandArgs(TRUE)),"
         " col.names = FALSE, row.names = FALSE)" % RECIPES], as_texts=(
            "png(name, width = width + 110, height = height + 70 + bottom, res = 96)",
            "pdf(name, (width + 110) / 96, (height + 70 + bottom) / 96, compress = FALSE,"
            " useKerning = FALSE, encoding = 'ISOLatin1')")),
    "Python": Language(
        ["python3"], "cells.py",
        ["python3", "-c", "import sys; sys.path.insert(0, '%s')\nfrom read_tsf import *\n"
         "for row in read_tsf(sys.argv[1]): print(*row)" % RECIPES], "svg"),
    "gnuplot": Language(["gnuplot", "-c"], "cells.gp", None, as_texts=(
        "set terminal pngcairo size", "set terminal svg size")),
}
