"""docs/variance-test.md: its worked example in exact arithmetic, its constants."""

import struct
import sys
from fractions import Fraction

from support import (
    FRS,
    PAUSE,
    TOP,
    DocumentTest,
    one_line,
    page,
    run,
    search_answers,
    write_lines,
)
from values_test import sample_series

sys.path.insert(0, str(TOP / "tests" / "stats" / "reference"))
from make_reference import exact_test  # noqa: E402

PAGE = "docs/variance-test.md"


def float32(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


def mean_and_variance(sample):
    mean = sum(sample) / len(sample)
    return mean, sum((value - mean) ** 2 for value in sample) / (len(sample) - 1)


class WorkedExample(DocumentTest):
    """Its numbers are of the first cell, 1901 to 1910, frost days in hundredths."""

    def setUp(self):
        super().setUp()
        values = sample_series("frs")["-78.25", "38.75"]
        self.samples = [values[:60], values[60:120]]
        self.text = one_line(page(PAGE))
        self.rows = [
            [cell.strip() for cell in line.strip("|").split("|")]
            for line in self.find(
                r"(?m)^\| \| 1901-1905 \| 1906-1910 \|\n.*\n((?:\|.*\n)+)", page(PAGE), "rows"
            ).splitlines()
        ]

    def test_means_and_variances_are_exact(self):
        labels = [row[0] for row in self.rows[:3]]
        self.assertEqual(labels, ["values", "mean, days a month", "variance"])
        for column, sample in enumerate(self.samples, start=1):
            days = [Fraction(value, 100) for value in sample]
            mean, variance = mean_and_variance(days)
            told = [row[column] for row in self.rows[:3]]
            self.assertEqual(
                told, [str(len(days)), f"{float(mean):.5f}", f"{float(variance):.3f}"]
            )

    def true_kurtosis(self):
        squares = fourths = 0
        for sample in self.samples:
            mean = Fraction(sum(sample), len(sample))
            squares += sum((value - mean) ** 2 for value in sample)
            fourths += sum((value - mean) ** 4 for value in sample)
        return fourths * sum(map(len, self.samples)) / squares**2

    def test_counts_f_and_prob_are_exact(self):
        f, count1, count2, prob = exact_test(*self.samples)
        label, *counts = self.rows[3]
        self.assertEqual(counts, [str(count1), str(count2)])
        kurtosis = self.find(r"K = ([\d.]+)", label, "K")
        self.assertEqual(kurtosis, f"{float(self.true_kurtosis()):.5f}")
        top, bottom, ratio, df1, df2 = self.find(
            r"f = ([\d.]+) / ([\d.]+) = ([\d.]+), tested with (\d+) and (\d+) degrees",
            self.text,
            "f",
        )
        variances = [mean_and_variance([Fraction(v, 100) for v in s])[1] for s in self.samples]
        self.assertEqual([top, bottom], [f"{float(v):.3f}" for v in variances])
        self.assertEqual(ratio, f"{float(f):.5f}")
        self.assertEqual((int(df1), int(df2)), (count1 - 1, count2 - 1))
        true, printed, error = self.find(
            r"The true prob is ([\d.]+); the printed ([\d.]+) is too small by a relative ([\d.e-]+)\.",
            self.text,
            "prob",
        )
        self.assertEqual(true, f"{float(prob):.6f}")
        self.assertIn(f"       1.1112789      {printed}", page(PAGE))
        below = float(1 - Fraction(printed) / Fraction(prob))
        self.assertEqual(float(error), float(f"{below:.1e}"))


class Constants(DocumentTest):
    def setUp(self):
        super().setUp()
        self.text = one_line(page(PAGE))

    def told(self, pattern):
        return float(self.find(pattern, self.text, "a constant"))

    def in_source(self, name, constant):
        text = one_line(page(f"src/stats/{name}"))
        return float(self.find(rf"{constant} = ([\d.e-]+)F?;", text, constant))

    def test_are_those_of_the_source(self):
        told = {
            "kTolerance": self.told(r"Stop if \|d \* c - 1\| < ([\d.e-]+)\."),
            "kMinMagnitude": self.told(r"below ([\d.e-]+) in size is replaced"),
            "kMaxIterations": self.told(r"For m = 1 to (\d+), with"),
        }
        for constant, value in told.items():
            self.assertEqual(value, self.in_source("betacf.cc", constant), constant)
        start = self.told(r"the series starts at ([\d.]+) and")
        self.assertEqual(start, self.in_source("gammln.cc", "kSeriesStart"))
        root = self.told(r"ln\(([\d.]+) \* series / x\)")
        self.assertEqual(root, self.in_source("gammln.cc", "kRootOfTwoPi"))

    def test_rounds_is_said_once_more(self):
        self.assertEqual(
            self.told(r"after (\d+) rounds"), self.in_source("betacf.cc", "kMaxIterations")
        )

    def test_multiplying_differs_from_dividing_as_often_as_told(self):
        count, of = self.find(r"last bit of (\d+) of the (\d+) values from 0 to 3100", self.text, "it")
        scale = float32(0.01)
        different = sum(
            float32(value * scale) != float32(value / 100) for value in range(3101)
        )
        self.assertEqual((int(count), int(of)), (different, 3101))

    def test_adjusted_counts_are_as_told(self):
        quotient = self.told(r"with n = 12 and K = 0\.5 the quotient is ([\d.-]+)\.")
        self.assertEqual(quotient, round(24 / (0.5 - 9 / 11), 2))
        counts = self.find(r"then d is n - 2 \(n = ([\d, ]+) and", self.text, "the counts")
        for n in map(int, counts.split(", ")):
            ratio = float32((n - 3) / (n - 1))
            self.assertEqual(int(float32(2 * n / float32(3 - ratio))), n - 2)


class ConstantSamples(DocumentTest):
    def test_give_the_negative_f_that_is_told(self):
        days, first, last, cutoff, f = self.find(
            r"With frost days of (\d+\.\d+) in every month, (\d+)-(\d+) and the cutoff year "
            r"(\d+), .* and f is (-[\d.]+)\. A negative",
            one_line(page(PAGE)),
            "the constant samples",
        )
        stored = round(float(days) * 100)
        months = (int(last) - 1900) * 12
        write_lines(
            self.folder / FRS,
            int(last),
            {month * 360 + 201: {401: stored} for month in range(months)},
        )
        search = search_answers("9", ("10.5", "10.0", "20.5", "20.0"), (first, last), cutoff)
        screen = run(["veldmark"], self.folder, [PAUSE, PAUSE, *search, PAUSE, "F"]).stdout
        report = (self.folder / f"{FRS}.ftst").read_text().splitlines()
        self.assertIn("bad argument x in betai", screen)
        self.assertEqual(len(report), 3)
        self.assertEqual(f"{float(report[2][34:49]):.4f}", f)
        self.assertEqual(report[2].split()[3], "NaN")
