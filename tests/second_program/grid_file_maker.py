"""Small condensed grid files for random sessions.

Only the rows that a session reads need fields: a line that is skipped may be empty, so a
year costs 4320 bytes instead of 15.5 million.  Fully regular files (every line 3600
characters and a line end) are made once per run and shared by hard links.
"""

import os
import random

LINES_PER_YEAR = 4320
ROWS = 360
FIRST_YEAR = 1901

STYLES = ("dense", "half", "sparse", "wide", "odd")


class GridFileMaker:
    def __init__(self, folder):
        self.folder = folder
        self.pools = {}
        self.shared = {}

    def pool(self, missing, style):
        """Returns forty prepared lines of 3600 characters, without newlines."""
        key = missing, style
        if key not in self.pools:
            # Seeded by its name, so that a session does not depend on earlier ones.
            rng = random.Random("lines %d %s" % key)
            self.pools[key] = [self.make_line(rng, missing, style) for _ in range(40)]
        return self.pools[key]

    def make_line(self, rng, missing, style):
        share = {"dense": 0.05, "half": 0.5, "sparse": 0.96, "still": 0.0}.get(style, 0.2)
        fields = []
        for _ in range(720):
            if rng.random() < share:
                fields.append("%5d" % missing)
            elif style == "wide":
                value = rng.choice(
                    (99999, 65536, 65535, 64537, 55537, 40000, 32768, 32767, -9999, -999)
                    + (0, rng.randint(-9999, 99999))
                )
                fields.append("%5d" % value)
            elif style == "still":  # hardly any variance: quotients with many digits
                fields.append("%5d" % (1000 + (rng.random() < 0.02)))
            elif style.startswith("calm"):
                fields.append("%5d" % rng.randint(1000, 1000 + int(style[4:])))
            elif style == "odd":
                # Blanks, tabs and signs that an integer field may contain.
                value = rng.randint(0, 99)
                fields.append(
                    rng.choice(("     ", "%-5d", "+%-4d", "-%-4d", " \t%3d", "%05d", "%2d   "))
                )
                if "%" in fields[-1]:
                    fields[-1] = fields[-1] % value
            else:
                fields.append("%5d" % rng.randint(0, 3100))
        return "".join(fields).encode()

    def shared_file(self, years, missing, crlf):
        """Returns the path of a regular file of `years` years with CR LF or LF."""
        key = years, missing, crlf
        if key not in self.shared:
            path = os.path.join(self.folder, "regular.%d.%d.%d" % key)
            rng = random.Random("regular %d %d %d" % key)
            line_end = b"\r\n" if crlf else b"\n"
            with open(path, "wb") as out:
                for _ in range(years * LINES_PER_YEAR):
                    style = rng.choice(("dense", "half", "sparse", "wide"))
                    out.write(rng.choice(self.pool(missing, style)) + line_end)
            self.shared[key] = path
        return self.shared[key]

    def lines(self, rng, need, missing, quiet):
        """Returns the lines (with newlines) of a file that serves `need`, and where rows are.

        quiet   None, or (value, last year): up to that year every field holds `value`
                when it is a number, or the lines have that style
        Result  list of lines, list of the indices of wanted lines
        """
        lines, wanted = [], []
        style = rng.choice(STYLES)
        mixed = rng.random() < 0.3
        # A line need not be longer than its last requested field.
        length = need.last_field * 5
        if rng.random() < 0.5 and need.row_lines() < 500:
            length = 3600
        skipped = b"\n" if rng.random() < 0.8 else b"x\n"
        for year in range(FIRST_YEAR, need.last_year + 1):
            if year < need.first_year:
                lines.extend([skipped] * LINES_PER_YEAR)
                continue
            if mixed:
                style = rng.choice(STYLES)
            pool = self.pool(missing, style)
            for _ in range(12):
                for row in range(1, ROWS + 1):
                    if row not in need.rows:
                        lines.append(skipped)
                        continue
                    wanted.append(len(lines))
                    if not quiet or year > quiet[1]:
                        line = rng.choice(pool)
                    elif isinstance(quiet[0], int):
                        line = b"%5d" % quiet[0] * 720
                    else:
                        line = rng.choice(self.pool(missing, quiet[0]))
                    lines.append(line[:length] + b"\n")
        return lines, wanted

    def damaged(self, rng, lines, wanted):
        """Returns the bytes of the file with one thing wrong, or merely unusual."""
        lines = list(lines)
        last_row = lines[wanted[-1]] if wanted else b""
        kind = rng.choice(
            "cut cut-line cut-row crlf some-crlf bad-field bad-field short short-end long "
            "open-end open-row no-first extra-first empty long-skip trailing".split()
        )
        if kind == "crlf":
            lines = [line[:-1] + b"\r\n" for line in lines]
        elif kind == "some-crlf":
            lines = [
                line[:-1] + b"\r\n" if rng.random() < 0.3 else line for line in lines
            ]
        elif kind == "no-first":
            del lines[:1]
        elif kind == "extra-first":
            lines.insert(0, rng.choice((b"\n", b"a title\n", last_row)))
        elif kind == "empty":
            lines = []
        elif kind == "long-skip":
            lines[rng.randrange(len(lines))] = b"z" * rng.choice((3599, 3601, 9000)) + b"\n"
        elif kind == "trailing":
            lines.append(rng.choice((b"\n", b"more", b"\x00\x01\n")))
        elif kind == "open-end":
            lines[-1] = lines[-1][:-1]
        elif kind == "cut-line":
            del lines[rng.randrange(len(lines)) :]
        elif wanted and kind in ("bad-field", "short", "long", "cut-row", "open-row"):
            at = rng.choice(wanted[-400:] if rng.random() < 0.5 else wanted)
            line = lines[at][:-1]
            where = rng.randrange(len(line) + 1)
            if kind == "bad-field":
                junk = (b"x", b"-", b"+", b" ", b".", b"\r", b"\t", b"\x00", b"\xe9", b"1")
                lines[at] = line[:where] + rng.choice(junk) + line[where + 1 :] + b"\n"
            elif kind == "short":
                lines[at] = line[:where] + b"\n"
            elif kind == "long":
                lines[at] = line + rng.choice((b"12345", b" ", b"x", b"\r", b"\r\r")) + b"\n"
            else:
                # The file ends in or after this row; a full row needs no newline.
                if kind == "open-row":
                    where = rng.choice((3598, 3599, 3599, 3600, 3601))
                    line = line.ljust(3601)
                lines[at:] = [line[:where]]
        elif wanted and kind == "short-end":
            lines[wanted[-1]] = last_row[:-2] + b"\n"
        data = b"".join(lines)
        if kind == "cut":
            data = data[: rng.randrange(len(data) + 1)]
        return data

    def damaged_regular(self, rng, years, missing, crlf):
        """Returns a regular file with something moved, so that its size still looks regular."""
        with open(self.shared_file(years, missing, crlf), "rb") as source:
            data = bytearray(source.read())
        kind = rng.choice("swap letter blank cut open crlf-row tail no-first".split())
        line_size = 3602 if crlf else 3601
        start = line_size * rng.randrange(len(data) // line_size)
        if kind == "swap":  # one line a character longer, its neighbour one shorter
            end = start + 3600
            other = end + rng.choice((-1, 1, -5, 5))
            if other < len(data):
                data[end], data[other] = data[other], data[end]
        elif kind in ("letter", "blank"):
            data[start + rng.randrange(3600)] = ord("x" if kind == "letter" else " ")
        elif kind == "cut":
            del data[len(data) - rng.choice((1, 2, 3600, 3601, 3602, line_size * 200)) :]
        elif kind == "open":
            del data[len(data) - (rng.choice((1, 2)) if crlf else 1) :]
        elif kind == "crlf-row":
            data[start + 3600 : start + line_size] = b"\n" if crlf else b"\r\n"
        elif kind == "tail":
            data += b"trailing text"
        else:
            del data[:line_size]
        return bytes(data)
