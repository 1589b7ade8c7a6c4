"""Searches: their rows and columns on the grid, and the answers that make them."""

import dataclasses

MENU_CHOICES = {"pre": 1, "frs": 9}

RETURN = ""


@dataclasses.dataclass(frozen=True)
class Search:
    """A box with edges at whole or half degrees, its years, and the thinning factor.

    North and east are positive; min_lon > max_lon is a box across the 180 degree
    meridian. Years are both included.
    """

    max_lat: float
    min_lat: float
    max_lon: float
    min_lon: float
    first_year: int = 1901
    last_year: int = 2016
    factor: int = 1

    def rows(self):
        """Returns the first and last row, counted from 1 in the south."""
        return round((self.min_lat + 90) * 2) + 1, round((self.max_lat + 90) * 2)

    def column_ranges(self):
        """Returns the first and last column of each piece, counted from 1 in the west."""
        first = round((self.min_lon + 180) * 2) + 1
        last = round((self.max_lon + 180) * 2)
        return [(first, last)] if first <= last else [(1, last), (first, 720)]

    def cells(self):
        """Returns the number of cells in the box, sea included."""
        first, last = self.rows()
        columns = sum(end - begin + 1 for begin, end in self.column_ranges())
        return (last - first + 1) * columns


def answers(variable, search, cutoff=None, searches=1):
    """Returns the answers of a session that repeats `search` `searches` times, one a line.

    cutoff   cutoff year of the variance test; None leaves the test out
    """
    region = [search.max_lat, search.min_lat, search.max_lon, search.min_lon]
    lines = [RETURN]
    for number in range(searches):
        lines += [RETURN, MENU_CHOICES[variable], RETURN]
        if number == 0:
            lines += [RETURN, *map(float, region), "T"]
            lines += [search.first_year, search.last_year, "T"]
        lines += [search.factor, "y"]
        lines += ["F"] if cutoff is None else ["T", cutoff]
        last = number == searches - 1
        lines += ["F"] if last else ["T", "F"]
    return "".join(f"{line}\n" for line in lines)


LEAVE_AT_THE_MENU = f"{RETURN}\n{RETURN}\n0\n"
