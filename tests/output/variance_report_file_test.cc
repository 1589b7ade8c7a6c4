#include "output/variance_report_file.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "util/file_fault.h"

namespace veldmark {
namespace {

constexpr std::int16_t kMissing = -999;
constexpr std::int64_t kFarAway = std::numeric_limits<std::int32_t>::max();

// Returns a series of three years; month m of year y is 100 y + m.
std::vector<std::int16_t> three_years() {
  std::vector<std::int16_t> series;
  for (int year = 1; year <= 3; ++year) {
    for (int month = 1; month <= 12; ++month) {
      series.push_back(static_cast<std::int16_t>(100 * year + month));
    }
  }
  return series;
}

std::vector<float> sample_of(SampleYears years, float SampleScale = 1) {
  std::vector<float> sample;
  collect_sample(three_years(), years, kMissing, SampleScale, sample);
  return sample;
}

// Returns the values of the years first..last.
std::vector<float> values_of(int first, int last) {
  std::vector<float> values;
  for (int year = first; year <= last; ++year) {
    for (int month = 1; month <= 12; ++month) {
      values.push_back(static_cast<float>(100 * year + month));
    }
  }
  return values;
}

TEST(CollectSample, HasTheMonthsOfTheYears) {
  EXPECT_EQ(sample_of({.first = 1, .last = 3}), values_of(1, 3));
  EXPECT_EQ(sample_of({.first = 1, .last = 1}), values_of(1, 1));
  EXPECT_EQ(sample_of({.first = 2, .last = 3}), values_of(2, 3));
  EXPECT_EQ(sample_of({.first = 3, .last = 3}), values_of(3, 3));
}

TEST(CollectSample, IgnoresYearsOutsideTheSeries) {
  EXPECT_EQ(sample_of({.first = -kFarAway, .last = kFarAway}), values_of(1, 3));
  EXPECT_EQ(sample_of({.first = 0, .last = 1}), values_of(1, 1));
  EXPECT_EQ(sample_of({.first = 3, .last = 4}), values_of(3, 3));
  EXPECT_EQ(sample_of({.first = 4, .last = 9}), std::vector<float>{});
  EXPECT_EQ(sample_of({.first = -5, .last = 0}), std::vector<float>{});
}

TEST(CollectSample, IsEmptyForNoYears) {
  EXPECT_EQ(sample_of({.first = 2, .last = 1}), std::vector<float>{});
  EXPECT_EQ(sample_of({.first = 3, .last = 1}), std::vector<float>{});
  EXPECT_EQ(sample_of({}), std::vector<float>{});
}

TEST(CollectSample, ScalesInSinglePrecision) {
  const std::vector<float> sample = sample_of({.first = 1, .last = 1}, 0.01F);
  ASSERT_EQ(sample.size(), 12U);
  EXPECT_EQ(sample.front(), 101.0F * 0.01F);
  EXPECT_EQ(sample.back(), 112.0F * 0.01F);
}

TEST(CollectSample, SkipsMissingMonthsAndAppends) {
  std::vector<std::int16_t> series(12, kMissing);
  series[3] = 0;
  series[11] = -998;
  std::vector<float> sample{5};
  collect_sample(series, {.first = 1, .last = 1}, kMissing, 1, sample);
  EXPECT_EQ(sample, (std::vector<float>{5, 0, -998}));
}

// The heading fits into the buffer, so nothing is written before the close.
TEST(VarianceReportFile, ThrowsOnClose) {
  VarianceReportFile report("/dev/full",
                            {.years = {.FYOD = 1901, .LYOD = 1910},
                             .CutoffYear = 1905,
                             .MissingCode = -999,
                             .SampleScale = 0.01F},
                            {.not_a_number = [] {}, .bad_argument = [](auto) {}});
  EXPECT_THROW(report.close(), FileFault);
}

}  // namespace
}  // namespace veldmark
