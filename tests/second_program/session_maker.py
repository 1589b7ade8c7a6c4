"""Makes random sessions: the answers and the data files.

A session is planned first (variable, region, years, thinning and test of each search),
then written as answers.  Most sessions are valid and reach the output files.  The same
answer is written in different ways, some answers are refused and asked for again, and
sometimes an answer is wrong, missing or doubled, or the input ends early.
"""

import second_program as second
from grid_file_maker import FIRST_YEAR

MOST_BYTES = 3_000_000  # of one made data file
MOST_FIELDS = 250_000  # read in one search
MOST_LINES = 6_000  # written in one search
MOST_SAMPLES = 15_000  # values that go through the variance test in one search


class Need:
    """What the searches of a session need from the file of a variable."""

    def __init__(self):
        self.rows = set()
        self.first_year = 9999
        self.last_year = FIRST_YEAR
        self.last_field = 1

    def add(self, selection, first_year, last_year):
        self.rows.update(range(max(1, selection.FirstRow), min(360, selection.LastRow) + 1))
        self.first_year = min(self.first_year, first_year)
        self.last_year = max(self.last_year, last_year)
        for field, _ in selection.fields_and_columns():
            self.last_field = max(self.last_field, min(field, 720))

    def row_lines(self):
        return len(self.rows) * 12 * (self.last_year - self.first_year + 1)

    def size(self):
        return self.row_lines() * self.last_field * 5


class Search:
    """One search of a session."""


class Session:
    def __init__(self):
        self.answers = b""
        self.files = {}  # name: bytes, or ("link", path), "directory" or "full"


class TooDear(Exception):
    """Raised if the plan would take too long; another one is drawn."""


class SessionMaker:
    def __init__(self, files):
        self.files = files

    def make(self, rng):
        while True:
            try:
                return SessionDraft(rng, self.files).session()
            except TooDear:
                continue


class SessionDraft:
    def __init__(self, rng, files):
        self.rng = rng
        self.files = files
        self.lines = []
        self.needs = {}  # variable: Need
        self.absent = set()
        self.regular = False
        self.crlf = False  # of regular files
        self.late = False
        self.quiet = None

    def chance(self, probability):
        return self.rng.random() < probability

    # ---- plan

    def session(self):
        rng = self.rng
        self.late = self.chance(0.05)
        self.regular = not self.late and self.chance(0.12)
        self.crlf = self.chance(0.5)
        searches = self.plan()
        if not self.late and self.chance(0.15):
            self.plan_quiet(searches)
        session = Session()
        self.make_files(session)
        self.spell(searches)
        self.spoil()
        session.answers = self.joined()
        self.set_folder(session, searches)
        if self.chance(0.01):
            name = second.CATALOGUE[rng.choice(searches).variable][0]
            session.files[name + rng.choice((".TSF", ".XY"))] = "full"
        return session

    def plan(self):
        rng = self.rng
        selection = second.Selection()
        searches = []
        count = rng.choices((1, 2, 3, 4), (60, 22, 12, 6))[0]
        variables = list(range(1, 12))
        weights = [1] * 11
        weights[second.FROST_DAYS - 1] = 5
        weights[second.SCPDSI - 1] = 3
        for number in range(count):
            one = Search()
            one.pauses = []
            one.variable = rng.choices(variables, weights)[0]
            if number and self.chance(0.4):
                one.variable = searches[-1].variable
            one.change = number == 0 or self.chance(0.5)
            if one.change:
                one.region = self.region(one.variable)
                one.years = self.years()
            else:
                one.region, one.years = searches[-1].region, searches[-1].years
            selection.find(*one.region, one.variable == second.SCPDSI)
            self.plan_search(one, selection)
            need = self.needs.setdefault(one.variable, Need())
            need.add(selection, *one.years)
            searches.append(one)
        for need in self.needs.values():
            if not self.regular and need.size() > MOST_BYTES:
                raise TooDear
        return searches

    def plan_search(self, one, selection):
        rng = self.rng
        years = one.years[1] - one.years[0] + 1
        rows = max(0, min(360, selection.LastRow) - max(1, selection.FirstRow) + 1)
        if rows * 12 * years * len(selection.fields_and_columns()) > MOST_FIELDS:
            raise TooDear
        limit = max(1, min(selection.RowCount, selection.ColCount))
        one.thinning = rng.choice(
            (1, 1, 1, 2, 2, 3, 7, limit, limit + 1, rng.randint(1, 40), 2147483647)
        )
        cells = sum(1 for _ in selection.strided_cells(one.thinning))
        if cells * (years + 3) > MOST_LINES:
            raise TooDear
        frost = one.variable == second.FROST_DAYS
        one.test = self.chance(0.6 if frost else 0.25) and cells * years * 12 <= MOST_SAMPLES
        first, last = one.years
        one.cutoff = rng.choice(
            [first, last, last + 1, rng.randint(first, last), rng.randint(first, last)]
            + [rng.choice((0, -1, first - 1, last + 2, 2147483647, -2147483648))]
        )

    def plan_quiet(self, searches):
        """Plans frost days that vary little or not at all before the cutoff year."""
        rng = self.rng
        self.regular = False
        first = FIRST_YEAR
        last = first + rng.choice((1, 2, 5, 20, 40, 85))
        one = searches[0]
        del searches[1:]
        one.variable, one.region = second.FROST_DAYS, (60.0, 59.5, 10.5, 10.0)
        if last - first < 10:
            one.region = (61.0, 59.5, 11.5, 10.0)
        one.years, one.thinning, one.test = (first, last), 1, True
        one.cutoff = rng.randint(first, last)
        if self.chance(0.6):
            style = rng.choice(
                ("still", "calm1", "calm30", "calm300", "calm1000", "calm1500", "calm2000")
            )
            self.quiet = style, one.cutoff - 1
        else:
            self.plan_flat(one)
        selection = second.Selection()
        selection.find(*one.region, False)
        self.needs = {one.variable: Need()}
        self.needs[one.variable].add(selection, first, last)

    def plan_flat(self, one):
        """Plans frost days of one value: variances of zero, close to it or even below it."""
        rng = self.rng
        one.region = (60.0, 59.5, 10.5, 10.0)  # a single cell
        value = rng.choice((1313, 681, 500, 1, 7, 999, rng.randint(0, 3100)))
        first, last = one.years
        if (first, last) == (1901, 1986) and self.chance(0.5):
            one.cutoff, value = 1926, 1313
        self.quiet = value, last if self.chance(0.6) else one.cutoff - 1
        if self.quiet[1] < last or one.cutoff == first:
            return
        # A variance below zero makes the test pause once for the cell.
        sample = [second.mul(float(value), second.f32(0.01))]
        n1, n2 = 12 * (one.cutoff - first), 12 * (last - one.cutoff + 1)
        second.ftest(sample * n1, n1, sample * n2, n2, lambda: one.pauses.append("pause"))

    def years(self):
        rng = self.rng
        if self.regular:
            first = rng.randint(1901, 1902)
            return first, rng.randint(first, 1902)
        if self.late:
            first = rng.randint(1980, 2016)
            return first, min(2016, first + rng.choice((0, 1, 3)))
        if self.chance(0.03):
            first = rng.randint(1901, 2016)
            return first, min(2016, first + rng.choice((0, 1, 3)))
        if self.chance(0.06):
            return 1901, 1901 + rng.randint(3, 30)
        first = rng.choice((1901, 1901, 1901, 1902, 1903))
        return first, first + rng.choice((0, 0, 1, 1, 2, 3))

    def region(self, variable):
        """Returns (maxLat, minLat, maxLon, minLon) as 32-bit reals."""
        rng = self.rng
        kind = rng.choices(
            "small between edge dateline overlap rows wide globe".split(),
            (50, 10, 10, 12, 6, 5, 7, 4 if self.regular else 0),
        )[0]
        grid = rng.choice((0.5, 0.5, 0.25, 0.1))

        def near(value, low, high):
            return min(high, max(low, round(round(value / grid) * grid, 2)))

        top = near(rng.uniform(-89, 90), -90.0, 90.0)
        bottom = near(top - rng.choice((0, 0.25, 0.5, 1, 1.5, 2, 3)), -90.0, top)
        left = near(rng.uniform(-180, 175), -180.0, 180.0)
        right = near(left + rng.choice((0, 0.25, 0.5, 1, 2, 5, 10, 30)), left, 180.0)
        if kind == "between":
            top = round(rng.uniform(-89, 89), 2)
            bottom = max(-90.0, round(top - rng.choice((0.0, 0.05, 0.3, 0.45)), 2))
            right = round(rng.uniform(-179, 179), 2)
            left = max(-180.0, round(right - rng.choice((0.0, 0.05, 0.3, 0.45, 2)), 2))
        elif kind == "edge":
            if self.chance(0.5):
                top = rng.choice((90.0, 89.8, 89.75, 89.5))
                bottom = rng.choice((88.5, 89.0, 89.5, 89.75, 89.8, 90.0))
            else:
                top = rng.choice((-88.5, -89.0, -89.5, -89.75, -90.0))
                bottom = rng.choice((-90.0, -89.8, -89.75, -89.5))
            bottom = min(top, bottom)
            if self.chance(0.7):
                left = rng.choice((-180.0, -179.8, -179.75, -179.5, 179.5, 179.8, 180.0))
                right = left if self.chance(0.4) else min(180.0, left + 1.0)
        elif kind == "dateline":
            left = rng.choice((180.0, 179.8, 179.75, 179.5, 179.0, 175.0, 170.0))
            right = rng.choice((-180.0, -179.8, -179.75, -179.5, -179.0, -175.0, -170.0))
        elif kind == "overlap":
            right = near(rng.uniform(-170, 170), -180.0, 180.0)
            left = right + rng.choice((0.25, 0.5, 1.0))
            bottom = max(-90.0, top - 0.5)
        elif kind == "rows":
            top, bottom = rng.choice(((90.0, -90.0), (89.5, -89.5), (90.0, 0.0), (0.0, -90.0)))
            left = -180.0
            right = rng.choice((-179.5, -179.0))
        elif kind == "wide":
            left, right = -180.0, 180.0
            bottom = max(-90.0, top - 0.5)
        elif kind == "globe":
            top, bottom, left, right = 90.0, -90.0, -180.0, 180.0
        if variable == second.SCPDSI and self.chance(0.1):
            left = rng.choice((500.0, 999.0, -500.0, 180.5, -200.0))
        return tuple(second.f32(v) for v in (top, bottom, right, left))

    # ---- data files

    def make_files(self, session):
        rng = self.rng
        for variable, need in self.needs.items():
            name = second.CATALOGUE[variable][0]
            missing = -9999 if variable == second.SCPDSI else -999
            if self.regular:
                years = need.last_year - FIRST_YEAR + 1
                if self.chance(0.15):
                    damaged = self.files.damaged_regular(rng, years, missing, self.crlf)
                    session.files[name] = damaged
                else:
                    path = self.files.shared_file(years, missing, self.crlf)
                    session.files[name] = ("link", path)
                continue
            lines, wanted = self.files.lines(rng, need, missing, self.quiet)
            if self.chance(0.2) and not self.quiet:
                session.files[name] = self.files.damaged(rng, lines, wanted)
            else:
                session.files[name] = b"".join(lines)

    def set_folder(self, session, searches):
        rng = self.rng
        names = [entry[0] for entry in second.CATALOGUE.values()]
        for variable in self.absent:
            session.files.pop(second.CATALOGUE[variable][0], None)
        if self.chance(0.05):
            session.files[rng.choice(names) + "OLD"] = b"not this one\n"
        if self.chance(0.05):
            session.files["another.dat.new"] = b""
        if self.chance(0.1):
            name = second.CATALOGUE[rng.choice(searches).variable][0]
            ending = rng.choice((".TSF", ".XY", ".ftst"))
            session.files[name + ending] = b"of an earlier run\n" * 50
        if self.chance(0.03):
            session.files[rng.choice((".TSF", ".XY"))] = b"of an earlier run\n"
        if self.chance(0.015):
            name = second.CATALOGUE[rng.choice(searches).variable][0]
            session.files[name + rng.choice(("", ".TSF", ".XY", ".ftst"))] = "directory"

    # ---- answers

    def say(self, text):
        self.lines.append(text)

    def spell(self, searches):
        rng = self.rng
        for number, one in enumerate(searches):
            if one.change:
                self.say(self.rubbish_or_nothing())  # after the banner
            self.say(self.rubbish_or_nothing())  # before the menu
            self.spell_menu(one)
            if one.change:
                self.spell_region(one)
                self.spell_years(one)
            self.spell_thinning(one)
            self.spell_test(one)
            if number + 1 < len(searches):
                self.say(self.true())
                self.say(self.true() if searches[number + 1].change else self.false())
            elif self.chance(0.15):
                self.end_at_menu()
            else:
                self.say(self.false())
        if self.chance(0.1):
            self.say(rng.choice(("", "t", "0", "left over")))

    def end_at_menu(self):
        rng = self.rng
        self.say(self.true())
        change = self.chance(0.5)
        self.say(self.true() if change else self.false())
        for _ in range(2 if change else 1):
            self.say("")
        if self.chance(0.3):
            # No such variable: the run goes on without an input file.
            answer = rng.choice(("12", "99", "-1", "-3", "-9", "50"))
            self.say(answer)
            if answer.startswith("-"):
                self.say("")
            if change:
                one = Search()
                one.variable, one.region, one.years = 1, self.region(1), self.years()
                self.spell_region(one)
                self.spell_years(one)
        else:
            self.say(rng.choice(("0", "", " ", "00", "+0", "-0", "\t", "0 no more")))

    def rubbish_or_nothing(self):
        return self.rng.choice(("", "", "", " ", "x", "0", "t", "\tgo on"))

    def spell_menu(self, one):
        rng = self.rng
        while self.chance(0.06):
            # A variable without a file: back to the menu.
            variable = rng.randint(1, 11)
            if variable in self.needs:
                break
            self.absent.add(variable)
            self.say(str(variable))
            self.say("")
            self.say("")
        if self.chance(0.02):
            wrong = ("12", "99", "-1", "-3", "0", "", "x", "3x", "1.", "+", "- 1")
            self.say(rng.choice(wrong))
        text = str(one.variable)
        if len(text) == 1:
            text = rng.choice((text, text, text, " " + text, text + " ", "0" + text))
            text = rng.choice((text, "+" + text.strip()[-1], "\t" + text.strip()[-1]))
        if len(text) == 2 and self.chance(0.2):
            text += rng.choice(("x", " ", "5", ".0", ",", "\t9"))
        self.say(text)
        self.say(self.rubbish_or_nothing())

    def spell_region(self, one):
        rng = self.rng
        while True:
            self.say(self.rubbish_or_nothing())  # below the world diagram
            maxLat, minLat, maxLon, minLon = one.region
            tries = {
                "maxLat": ("90.01", "-90.01", "100.0", "-100.0", "1.e39", "-1.e39", "-999.99"),
                "minLat": ("90.5", "-90.01", "-95.0", "-1000.", "1.e39", "-1.e39", "-100.0"),
                "maxLon": ("180.01", "-180.5", "1000.0", "-1000.0", "99999.0", "1.e39"),
                "minLon": ("180.01", "-180.5", "999.0", "-1000.0", "-1.e39", "1.e39"),
            }
            for name, value in zip(tries, one.region):
                while self.chance(0.06):
                    pointless = ("45", "", "45,0", "000000045.0", "abc", "        1.0")
                    self.say(rng.choice(pointless))
                if self.chance(0.06) and (name, one.variable) != ("minLon", second.SCPDSI):
                    self.say(rng.choice(tries[name]))
                self.say(self.coordinate(value))
            if self.chance(0.94):
                self.say(self.true())
                return
            self.say(self.false())

    def coordinate(self, value):
        rng = self.rng
        plain = repr(value)
        for decimals in range(6):
            plain = "%.*f" % (decimals, value)
            if "." not in plain:
                plain += "."
            if second.read_real(plain[:8]) == value:
                break
        forms = [plain] * 6 + [plain + "0", "+" + plain, " " + plain, "\t" + plain]
        forms += [plain + "E0", plain + "d0", plain + "e+0", plain + " N", plain + ",5.0"]
        forms += [plain + "/", plain + "\tx", "0" + plain, plain.replace("0.", ".", 1)]
        if value == 0.0:
            forms += ["-0.0", "-.0", "0.", ".0", "0.e9"]
        text = rng.choice(forms)
        # The first eight characters must have the same value.
        padded = text[:8].ljust(8)
        if "." not in padded or second.read_real(padded) != value:
            text = plain[:8]
        if len(text) >= 8 and self.chance(0.3):
            text = text[:8] + rng.choice(("x", "9", " ", ".5"))
        return text

    def spell_years(self, one):
        rng = self.rng
        wrong = ("19x1", "1.0", "abcd", "+", "", "0", "1900", "2017", "-190", "19 5", "99999")
        while True:
            for year in one.years:
                while self.chance(0.07):
                    self.say(rng.choice(wrong))
                text = str(year)
                if self.chance(0.15):
                    text += rng.choice(("x", " ", "0", ".0", "\t", ",2"))
                self.say(text)
            if self.chance(0.94):
                self.say(self.true())
                return
            self.say(self.false())

    def spell_thinning(self, one):
        rng = self.rng
        while self.chance(0.08):
            self.say(self.integer(rng.choice((1, 2, 3, 5, 100, 2147483647))))
            self.say(rng.choice(("n", "N", "no", " n", "\tNever", "n,y", "not y")))
        if self.chance(0.02):
            self.say(
                rng.choice(
                    ("0", "-1", "-3", "-2147483648", "2x", "-", "1.0")
                    + ("2147483648", "99999999999")
                )
            )
        self.say(self.integer(one.thinning))
        self.say(rng.choice(("y", "y", "yes", "Y", "", "x", " y", ",n", "/n", "1", "\t", "yn")))

    def spell_test(self, one):
        if not one.test:
            self.say(self.false())
            return
        self.say(self.true())
        self.say(self.integer(one.cutoff))
        for _ in one.pauses:
            self.say(self.rubbish_or_nothing())

    def integer(self, value):
        rng = self.rng
        while self.chance(0.08):  # lines without a value are skipped
            self.say(rng.choice(("", " ", "\t", ",", " ,3", "/", " / 4")))
        text = str(value)
        if value >= 0 and self.chance(0.15):
            text = rng.choice(("+", "0", "000", "+00000000000")) + text
        if self.chance(0.15):
            text = rng.choice((" ", "\t", "   \t ")) + text
        if self.chance(0.2):
            text += rng.choice((" ", ",", "/", "\t", " 7", ",x", "/x", "\tno"))
        return text

    def true(self):
        return self.rng.choice(
            ("t", "t", "T", "TRUE", "true", ".t", ".T.", ".true.", "  t", "\tT", "t,f", "tea")
        )

    def false(self):
        return self.rng.choice(
            ("f", "f", "F", "false", ".F.", "", "yes", "1", "no")
            + (",t", "/T", "..t", ". t", " ", "\t,t")
        )

    def spoil(self):
        """Makes a random typing error in some sessions."""
        rng = self.rng
        nasty = (
            "x", "3x", "a.b", "45.0N", "4.5.0", ".", "-", "1e5", "0", "-1", "", "12", "-3",
            "99999999999", "\x00", "\xff\xfe.", "1.5.", "t", "n", "\r", "5\r5", "t" * 5000,
            "1.e99999", "1.d-9999", "-.e1", "1.e", "1.e+", ".e5", "'1.0'", "2*1.0",
        )
        if self.chance(0.10):
            self.lines[rng.randrange(len(self.lines))] = rng.choice(nasty)
        if self.chance(0.03):
            del self.lines[rng.randrange(len(self.lines))]
        if self.chance(0.03):
            self.lines.insert(rng.randrange(len(self.lines) + 1), rng.choice(nasty))

    def joined(self):
        rng = self.rng
        ends = rng.choices(("\n", "\r\n", None), (85, 10, 5))[0]
        text = ""
        for line in self.lines:
            text += line + (ends or rng.choice(("\n", "\r\n", "\r\r\n")))
        if self.chance(0.1) and text:
            text = text[:-1]
        if self.chance(0.06):
            text = text[: rng.randrange(len(text) + 1)]
        return text.encode("latin-1")
