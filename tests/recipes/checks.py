"""Compares what a recipe prints and draws, and what read_tsf reads, with expected.py."""
import math
import re
import shutil
import subprocess
import tempfile
from pathlib import Path

from expected import numbers, physical, pictures
from languages import LANGUAGES, RECIPES
from pictures import check_png, check_svg, check_texts, gnuplot_texts, pdf_texts

failures = []


def check(good, message):
    if not good:
        failures.append(message)
        print("FAILED:", message)


def printed_numbers(text):
    """{label: text} of the lines "label   value", the labels ending at two blanks."""
    found = (re.match(r"(\S+(?: \S+)*)  +(.*?) *$", line) for line in text.splitlines())
    return {match[1]: match[2] for match in found if match}


def same_value(label, expected, printed):
    if expected is None:
        return printed.lower() in ("nan", "na")
    if label == "data":
        return printed == expected
    try:
        found = [float(word) for word in printed.split()]
    except ValueError:
        return False
    if label == "chosen cell":
        return found == list(expected)
    # Means are printed with four decimals, f with six digits; all others are exact.
    tolerance = (1e-5 * float(expected) if label.startswith("largest") else
                 0.5001e-4 if "mean" in label else 0)
    return len(found) == 1 and abs(found[0] - expected) <= tolerance


def check_recipe(language, name, extract, cell=(), pixels=True, folder=RECIPES):
    """Runs a recipe on an extract and compares all that it made.

    cell      the chosen cell; () for the recipe's default
    pixels    whether PNG pictures are checked, and the recipe runs again for their texts;
              takes seconds

    The pictures are removed.
    """
    label = "%s, %s" % (language, name)
    chosen = cell or extract.cells()[0]
    expected = numbers(extract, chosen)
    result = LANGUAGES[language].run(folder, extract.stem, *cell)
    check(result.returncode == 0 and not result.stderr,
          "%s: status %d, '%s'" % (label, result.returncode, result.stderr))
    printed = printed_numbers(result.stdout)
    for key, value in expected.items():
        found = printed.get(key, "nothing")
        check(same_value(key, value, found),
              "%s: %s: %s instead of %s" % (label, key, found, value))
    check(("f values" in printed) == bool(extract.cutoff),
          label + ": f values without a cutoff year, or none with one")
    wanted = pictures(extract, chosen)
    check_pictures(language, label, extract, wanted, pixels)
    if LANGUAGES[language].as_texts and pixels:
        check_recipe_texts(language, label, extract, cell, wanted)


def check_pictures(language, label, extract, wanted, pixels):
    kind = LANGUAGES[language].kind
    names = {picture: Path("%s.%s.%s" % (extract.stem, picture, kind)) for picture in wanted}
    made = set(extract.folder.glob("*." + kind))
    check(made == set(names.values()), "%s: made %s, expected %s" % (
        label, sorted(made), sorted(names.values())))
    for picture in set(names) if made == set(names.values()) else ():
        if kind == "svg":
            complaints = check_svg(names[picture], wanted[picture])
        else:
            complaints = check_png(names[picture], wanted[picture]) if pixels else []
        check(not complaints, "%s, %s: %s" % (label, picture, "; ".join(complaints[:5])))
    for name in made:
        name.unlink()


def check_recipe_texts(language, label, extract, cell, wanted):
    """Runs a copy of the recipe, changed to draw PDF (R) or SVG (gnuplot), whose texts can be
    read, and checks them. The files are still named .png."""
    # The recipes must work in a folder with blanks in its name.
    with tempfile.TemporaryDirectory(prefix="a copy of ") as folder:
        copy = Path(shutil.copytree(RECIPES, Path(folder) / "recipes"))
        script = (copy / LANGUAGES[language].script).read_text()
        check(script.count(LANGUAGES[language].as_texts[0]) == 1,
              language + ": more or less than one line opens a picture")
        (copy / LANGUAGES[language].script).write_text(
            script.replace(*LANGUAGES[language].as_texts))
        LANGUAGES[language].run(copy, extract.stem, *cell)
    for picture in wanted:
        name = Path("%s.%s.png" % (extract.stem, picture))
        if language == "R":    # labels are anchored at their left
            found = pdf_texts(name, wanted[picture].height)
            complaints = check_texts(found, wanted[picture], x_slack=(-35, 0))
        else:
            complaints = check_texts(gnuplot_texts(name), wanted[picture])
        check(not complaints, "%s, %s, texts: %s" % (label, picture,
                                                     "; ".join(complaints[:5])))
        name.unlink()


def check_reader(language, name, extract):
    """Checks that read_tsf gives longitude, latitude, year, month and value of all months."""
    result = subprocess.run([*LANGUAGES[language].reader, extract.stem + ".TSF"],
                            text=True, capture_output=True, check=False)
    rows = [(*cell, extract.first + i // 12, i % 12 + 1, physical(extract, stored))
            for cell in extract.cells() for i, stored in enumerate(extract.series[cell])]
    found = [[math.nan if word == "NA" else float(word) for word in line.split()]
             for line in result.stdout.splitlines()]
    same = len(found) == len(rows) and all(
        one[:4] == list(row[:4]) and
        (math.isnan(one[4]) if row[4] is None else abs(one[4] - row[4]) < 1e-9)
        for one, row in zip(found, rows))
    check(same, "%s, read_tsf, %s: %d rows, expected %d, or other values\n%s" % (
        language, name, len(found), len(rows), result.stderr))
