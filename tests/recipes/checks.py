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


def same_number(label, expected, printed):
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
    # Means have four decimals, f six digits.
    tolerance = (1e-5 * float(expected) if label.startswith("largest") else
                 0.5001e-4 if "mean" in label else 0)
    return len(found) == 1 and abs(found[0] - expected) <= tolerance


def check_recipe(language, name, extract, cell=(), pixels=True, folder=RECIPES):
    """Runs a recipe on an extract and compares all that it made.

    pixels    whether those of PNG pictures are looked at, which takes a second
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
        check(same_number(key, value, found),
              "%s: %s: %s instead of %s" % (label, key, found, value))
    check(("f values" in printed) == bool(extract.cutoff), label + ": f values")
    drawn = pictures(extract, chosen)
    check_pictures(language, label, extract, drawn, pixels)
    if LANGUAGES[language].as_texts and pixels:
        check_recipe_texts(language, label, extract, cell, drawn)


def check_pictures(language, label, extract, drawn, pixels):
    kind = LANGUAGES[language].kind
    names = {picture: Path("%s.%s.%s" % (extract.stem, picture, kind)) for picture in drawn}
    made = set(extract.folder.glob("*." + kind))
    check(made == set(names.values()), "%s: pictures %s" % (label, sorted(made)))
    for picture in set(names) if made == set(names.values()) else ():
        if kind == "svg":
            complaints = check_svg(names[picture], drawn[picture])
        else:
            complaints = check_png(names[picture], drawn[picture]) if pixels else []
        check(not complaints, "%s, %s: %s" % (label, picture, "; ".join(complaints[:5])))
    for name in made:
        name.unlink()


def check_recipe_texts(language, label, extract, cell, drawn):
    """Runs a copy of the recipe that draws a kind of picture in which text is text."""
    with tempfile.TemporaryDirectory(prefix="a copy of ") as folder:
        copy = Path(shutil.copytree(RECIPES, Path(folder) / "recipes"))
        script = (copy / LANGUAGES[language].script).read_text()
        check(script.count(LANGUAGES[language].as_texts[0]) == 1,
              language + ": the line that opens a picture")
        (copy / LANGUAGES[language].script).write_text(
            script.replace(*LANGUAGES[language].as_texts))
        LANGUAGES[language].run(copy, extract.stem, *cell)
    for picture in drawn:
        name = Path("%s.%s.png" % (extract.stem, picture))
        if language == "R":    # labels are anchored at their left
            found = pdf_texts(name, drawn[picture].height)
            complaints = check_texts(found, drawn[picture], x_slack=(-35, 0))
        else:
            complaints = check_texts(gnuplot_texts(name), drawn[picture])
        check(not complaints, "%s, %s, texts: %s" % (label, picture,
                                                     "; ".join(complaints[:5])))
        name.unlink()


def check_reader(language, name, extract):
    """read_tsf: longitude, latitude, year, month, value of each month."""
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
    check(same, "%s, read_tsf, %s: %d rows instead of %d, or others\n%s" % (
        language, name, len(found), len(rows), result.stderr))
