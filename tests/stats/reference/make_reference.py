#!/usr/bin/env python3
"""Makes the true values that the tests of the statistics are held against.

  make_reference.py            writes reference_values.h and real_frost_series.h here
  make_reference.py --check    writes nothing; fails unless both are what it would write
  make_reference.py --series FILE.csv.gz    takes the real frost days from FILE

Python's standard library only. Nothing here follows the C++ code: sums of samples
are exact fractions, ln(gamma) comes from Stirling's series, the incomplete beta
function from its power series, all to more than 50 digits. Each is checked against
itself (another start of the series, the reflected arguments, factorials) before a
value is written.

Arguments are 32-bit reals written with all their bits, so both sides start equal.
True values are written with 20 digits, more than a 64-bit real holds.
"""

import argparse
import gzip
import math
import pathlib
import struct
import sys
from decimal import Decimal, getcontext
from fractions import Fraction

HERE = pathlib.Path(__file__).resolve().parent
SAMPLE = HERE.parents[2] / "data" / "sample" / "cru_ts4.01_frs_1901_2016.csv.gz"

getcontext().prec = 70
GOOD_TO = Decimal(10) ** -55


def decimal_of(fraction):
    return Decimal(fraction.numerator) / Decimal(fraction.denominator)


def float32(value):
    """The 32-bit real nearest to `value`, as an exact fraction."""
    return Fraction(struct.unpack("<f", struct.pack("<f", float(value)))[0])


def check_close(left, right, what):
    scale = max(abs(left), abs(right), Decimal(1))
    if abs(left - right) > GOOD_TO * scale:
        sys.exit(f"make_reference.py: {what}: {left} and {right} differ")


# ---- ln(gamma) ---------------------------------------------------------------


def bernoulli_numbers(count):
    """B(2), B(4), ..., B(2 * count) as exact fractions."""
    row = [Fraction(1)]
    for n in range(1, 2 * count + 1):
        total = sum(math.comb(n + 1, k) * row[k] for k in range(n))
        row.append(-total / (n + 1))
    return [row[2 * k] for k in range(1, count + 1)]


BERNOULLI = bernoulli_numbers(40)
PI = Decimal("3.14159265358979323846264338327950288419716939937510"
             "58209749445923078164062862090")


def ln_gamma_from(x, start):
    """Stirling's series at x raised to at least `start`, brought back by products."""
    product = Decimal(1)
    z = decimal_of(x)
    while z < start:
        product *= z
        z += 1
    result = (z - Decimal("0.5")) * z.ln() - z + (2 * PI).ln() / 2
    for k, b in enumerate(BERNOULLI, start=1):
        result += decimal_of(b) / (2 * k * (2 * k - 1) * z ** (2 * k - 1))
    return result - product.ln()


def ln_gamma(x):
    x = Fraction(x)
    result = ln_gamma_from(x, 60)
    check_close(result, ln_gamma_from(x, 75), f"ln gamma({x})")
    return result if x not in (1, 2) else Decimal(0)


# ---- the incomplete beta function --------------------------------------------


def beta_fraction(a, b, x):
    """What the continued fraction is: I_x(a, b) * a * B(a, b) / (x^a (1 - x)^b).

    As a power series it is 1 + x (a+b)/(a+1) + x^2 (a+b)(a+b+1)/((a+1)(a+2)) + ...; all
    terms are positive for a, b > 0. It stops when a bound on the rest is negligible.
    """
    a, b, x = decimal_of(a), decimal_of(b), decimal_of(x)
    total = term = Decimal(1)
    n = 0
    while True:
        ratio = x * (a + b + n) / (a + 1 + n)
        term *= ratio
        total += term
        n += 1
        # From here on the ratios lie between this one and x, so the rest is smaller
        # than a geometric series of the larger of the two.
        bound = max(ratio, x)
        if bound < 1 and term * bound / (1 - bound) < total * GOOD_TO / 1000:
            return total


def beta_front(a, b, x):
    """x^a (1-x)^b / B(a, b)"""
    log = decimal_of(a) * decimal_of(x).ln() + decimal_of(b) * decimal_of(1 - x).ln()
    return (log - ln_gamma(a) - ln_gamma(b) + ln_gamma(a + b)).exp()


def incomplete_beta(a, b, x):
    """I_x(a, b), to full relative precision; checked against 1 - I_(1-x)(b, a)."""
    if x in (0, 1):
        return Decimal(int(x))
    below = beta_front(a, b, x) * beta_fraction(a, b, x) / decimal_of(a)
    above = beta_front(b, a, 1 - x) * beta_fraction(b, a, 1 - x) / decimal_of(b)
    check_close(below + above, Decimal(1), f"I_{x}({a}, {b}) and its reflection")
    return below


# ---- the whole test, in exact fractions --------------------------------------


def exact_test(sample1, sample2):
    """(f, d1, d2, prob) of two samples of whole numbers.

    The unit cancels in all of them. A quotient so near to a whole number that single
    precision may cut it off on the other side is refused.
    """
    n1, n2 = len(sample1), len(sample2)
    ave1, ave2 = Fraction(sum(sample1), n1), Fraction(sum(sample2), n2)
    squares1 = sum((v - ave1) ** 2 for v in sample1)
    squares2 = sum((v - ave2) ** 2 for v in sample2)
    fourths = sum((v - ave1) ** 4 for v in sample1)
    fourths += sum((v - ave2) ** 4 for v in sample2)
    total = n1 + n2
    kurtosis = (fourths / total) / ((squares1 + squares2) / total) ** 2

    def adjusted(n):
        quotient = Fraction(2 * n) / (kurtosis - Fraction(n - 3, n - 1))
        if abs(quotient - round(quotient)) < quotient * Fraction(1, 10**5):
            sys.exit(f"make_reference.py: {float(quotient)} is too near to whole")
        return max(int(quotient), 2)

    d1, d2 = adjusted(n1), adjusted(n2)
    var1, var2 = squares1 / (n1 - 1), squares2 / (n2 - 1)
    f, df1, df2 = (var1 / var2, d1 - 1, d2 - 1) if var1 > var2 else (
        var2 / var1, d2 - 1, d1 - 1)
    x = df2 / (df1 * f + df2)
    prob = 2 * incomplete_beta(Fraction(df2, 2), Fraction(df1, 2), x)
    return decimal_of(f), d1, d2, (2 - prob if prob > 1 else prob)


# ---- arguments and samples ---------------------------------------------------


class Generator:
    """The generator the C++ tests use too: 31 bits of state, the low 8 never shown."""

    def __init__(self, seed):
        self.state = seed

    def below(self, bound):
        self.state = (self.state * 1103515245 + 12345) & 0x7FFFFFFF
        return (self.state >> 8) % bound

    def sample(self, count, low, high):
        return [low + self.below(high - low + 1) for _ in range(count)]


def gammln_arguments():
    halves = [Fraction(k, 2) for k in range(1, 24)]
    wide = [float32(v) for v in (0.001, 0.1, 0.3, 0.9, 1.25, 1.45, 1.75, 2.1, 2.9, 33.3,
                                 100.5, 250, 500.5, 1619.5, 4999.5, 65536, 1e6, 1e9)]
    return sorted(set(halves + wide))


def beta_arguments():
    """Half degrees of freedom of three sizes, x on both sides of a / (a + b)."""
    generator = Generator(2016)
    rows = []
    for group, largest, count in ((0, 20, 30), (1, 400, 24), (2, 3000, 18)):
        while count:
            a, b = (Fraction(1 + generator.below(largest), 2) for _ in range(2))
            spread = math.sqrt(float(a * b / (a + b + 1))) / float(a + b)
            offset = (generator.below(801) - 400) / 100 * spread
            x = float32(float(a / (a + b)) + offset)
            if 0.001 < x < 0.999:  # nearer to the ends the series take too long
                rows.append((group, a, b, x))
                count -= 1
    return rows


SEEDED = [(1, 120, 120), (2, 12, 12), (3, 180, 180), (4, 12, 348), (5, 696, 696),
          (6, 24, 36), (7, 348, 12), (8, 60, 1332), (9, 700, 692), (10, 13, 7)]


def seeded_samples(seed, n1, n2):
    return (Generator(seed).sample(n1, 0, 3100),
            Generator(seed + 100).sample(n2, 0, 2500))


REAL_CELLS = (("-78.25", "38.75"), ("-76.75", "38.75"), ("-76.75", "39.25"))
REAL_FIRST_YEAR, REAL_CUTOFF_YEAR, REAL_LAST_YEAR = 1961, 1976, 1990


def real_series(path):
    """The frost days of REAL_CELLS, all months of the first year to the last."""
    with gzip.open(path, "rt", encoding="ascii") as lines:
        header = next(lines).rstrip("\n").split(",")
        start = header.index(f"{REAL_FIRST_YEAR}-01")
        end = header.index(f"{REAL_LAST_YEAR}-12") + 1
        found = {}
        for line in lines:
            fields = line.rstrip("\n").split(",")
            if (fields[0], fields[1]) in REAL_CELLS:
                found[fields[0], fields[1]] = [int(v) for v in fields[start:end]]
    return [found[cell] for cell in REAL_CELLS]


# ---- the two headers ---------------------------------------------------------


def real32(value):
    """`value` as a C++ literal with its bits: a decimal where a short one is exact."""
    if value * 4 == int(value * 4) and value < 10**6:
        return f"{float(value)}F"
    mantissa, exponent = float(value).hex().split("p")
    return f"{mantissa.rstrip('0')}p{exponent}F"


def digits(value):
    return f"{value:.19e}".replace("e+0", "") if value else "0.0"


def header(guard, body):
    return "\n".join([
        "// Made by make_reference.py; not to be edited or laid out anew.",
        "", f"#ifndef {guard}", f"#define {guard}", "", "#include <array>",
        "#include <cstdint>", "", "namespace veldmark::reference {", "", *body, "",
        "}  // namespace veldmark::reference", "", f"#endif  // {guard}", ""])


def table(comment, struct_name, fields, name, rows):
    rows = list(rows)
    return [f"// {comment}", f"struct {struct_name} {{", *(f"  {f};" for f in fields),
            "};",
            f"inline constexpr std::array<{struct_name}, {len(rows)}> {name} = {{{{",
            *(f"    {{{', '.join(row)}}}," for row in rows), "}};"]


def reference_values():
    whole = 1
    for n in range(1, 12):  # gamma(n) is (n - 1)!
        factorial = Decimal(whole).ln()
        check_close(ln_gamma_from(Fraction(n), 60), factorial, f"ln gamma({n})")
        whole *= n
    beta_rows = beta_arguments()
    body = table("ln(gamma(x)).", "GammlnValue", ["float x", "double value"],
                 "kGammln", ([real32(x), digits(ln_gamma(x))]
                             for x in gammln_arguments()))
    body += [""] + table(
        "The incomplete beta function I_x(a, b).\n"
        "// Group 0: a, b up to 10; 1: up to 200; 2: up to 1500.", "BetaiValue",
        ["int group", "float a", "float b", "float x", "double value"], "kBetai",
        ([str(g), *map(real32, (a, b, x)), digits(incomplete_beta(a, b, x))]
         for g, a, b, x in beta_rows))
    body += [""] + table(
        "The continued fraction, on the side where betai asks for it.", "BetacfValue",
        ["int group", "float a", "float b", "float x", "double value"], "kBetacf",
        ([str(g), *map(real32, (a, b, x)), digits(beta_fraction(a, b, x))]
         for g, a, b, x in beta_rows if x < (a + 1) / (a + b + 2)))
    rows = []
    for seed, n1, n2 in SEEDED:
        f, d1, d2, prob = exact_test(*seeded_samples(seed, n1, n2))
        rows.append([str(seed), str(n1), str(n2), digits(f), str(d1), str(d2),
                     digits(prob)])
    body += [""] + table(
        "The test of generated samples: values 0..3100 from `seed`, 0..2500 from\n"
        "// seed + 100.", "FtestValue",
        ["std::uint32_t seed", "std::int32_t n1", "std::int32_t n2", "double f",
         "std::int32_t d1", "std::int32_t d2", "double prob"], "kFtest", rows)
    return header("VELDMARK_TESTS_STATS_REFERENCE_REFERENCE_VALUES_H_", body)


def real_frost_series(path):
    first_count = 12 * (REAL_CUTOFF_YEAR - REAL_FIRST_YEAR)
    count = 12 * (REAL_LAST_YEAR - REAL_FIRST_YEAR + 1)
    body = [
        f"// Frost days of CRU TS 4.01, January {REAL_FIRST_YEAR} to December"
        f" {REAL_LAST_YEAR}, in hundredths of a day a",
        f"// month; true values of the test with the cutoff year {REAL_CUTOFF_YEAR}.",
        f"inline constexpr std::int32_t kFirstSampleCount = {first_count};",
        "struct RealFrostSeries {", "  float longitude;", "  float latitude;",
        "  double f;", "  std::int32_t d1;", "  std::int32_t d2;", "  double prob;",
        f"  std::array<std::int32_t, {count}> values;", "};",
        f"inline constexpr std::array<RealFrostSeries, {len(REAL_CELLS)}>"
        " kRealFrostSeries = {{"]
    for (longitude, latitude), values in zip(REAL_CELLS, real_series(path)):
        f, d1, d2, prob = exact_test(values[:first_count], values[first_count:])
        body.append(f"    {{{longitude}F, {latitude}F, {digits(f)}, {d1}, {d2},"
                    f" {digits(prob)}, {{")
        for year in range(0, count, 12):
            body.append("         " + "".join(f" {v}," for v in values[year:year + 12]))
        body[-1] = body[-1].rstrip(",") + "}},"
    body.append("}};")
    return header("VELDMARK_TESTS_STATS_REFERENCE_REAL_FROST_SERIES_H_", body)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--series", type=pathlib.Path, default=SAMPLE)
    arguments = parser.parse_args()
    made = {"reference_values.h": reference_values(),
            "real_frost_series.h": real_frost_series(arguments.series)}
    for name, text in made.items():
        if not arguments.check:
            (HERE / name).write_text(text, encoding="ascii")
        elif (HERE / name).read_text(encoding="ascii") != text:
            sys.exit(f"make_reference.py: {name} is not what this script makes")


if __name__ == "__main__":
    main()
