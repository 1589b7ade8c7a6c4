#include "output/variance_report.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "console/run_end.h"
#include "stats/ftest.h"
#include "util/fixed_field.h"
#include "util/free_form.h"

namespace veldmark {
namespace {

constexpr int kMargin = 1;
constexpr int kNoticeMargin = 4;

// The two periods as the headings name them.
std::string compared_periods(const VarianceTest& test) {
  const std::int64_t after_cutoff = std::int64_t{test.CutoffYear} + 1;
  return free_form_integer(test.years.FYOD) + "-" + free_form_integer(test.CutoffYear) +
         " " + free_form_integer(after_cutoff) + "-" +
         free_form_integer(test.years.LYOD);
}

}  // namespace

void collect_sample(std::span<const std::int16_t> series, SampleYears years,
                    std::int32_t MissingCode, float SampleScale,
                    std::vector<float>& sample) {
  const auto YearCount = static_cast<std::int64_t>(series.size()) / kMonthsPerYear;
  const std::int64_t first = std::max<std::int64_t>(years.first, 1);
  const std::int64_t last = std::min(years.last, YearCount);
  if (first > last) {
    return;
  }
  const auto begin = static_cast<std::size_t>((first - 1) * kMonthsPerYear);
  const auto count = static_cast<std::size_t>((last - first + 1) * kMonthsPerYear);
  for (const std::int16_t value : series.subspan(begin, count)) {
    if (value != MissingCode) {
      sample.push_back(static_cast<float>(value) * SampleScale);
    }
  }
}

std::optional<std::int32_t> ask_cutoff_year(ConsoleDialogue& console,
                                            const YearSpan& years) {
  console.blank_line();
  console.write_line(kMargin, "OK, You may now (finally) opt to test the within grid");
  console.write_line(kMargin,
                     "variance for equality. To do this you must enter a year");
  console.write_line(kMargin,
                     "at which you feel the variance in the grid values may change.");
  console.blank_line();
  console.prompt(kMargin, "Perform Ftest of Vairance? [T]rue or [F]alse ==> ");
  const bool FtestChosen = console.read_logical();
  if (!FtestChosen) {
    return std::nullopt;
  }
  console.blank_line();
  console.write_line(kMargin, "Enter cutoff year for Ftest. The value must be");
  console.prompt(kMargin, "between " + fixed_integer(years.FYOD, 4) + "-" +
                              fixed_integer(years.LYOD, 4) + " ==> ");
  return console.read_free_integer();
}

VarianceReport::VarianceReport(ConsoleDialogue& console, const std::string& name,
                               const VarianceTest& test, const FilesInUse& in_use)
    : test_(test), file_(name, in_use) {
  const std::string periods = compared_periods(test);
  console.write_line(kMargin, "Ftest Comparison of Variance: " + periods);
  file_.write(" # Ftest Comparison of Variance: " + periods + "\n");
  file_.write(" # Lon.      Lat.     f      prob\n");
}

void VarianceReport::add_cell(ConsoleDialogue& console, const CellCentre& centre,
                              std::span<const std::int16_t> series) {
  const std::int64_t CutoffOffset = std::int64_t{test_.CutoffYear} - test_.years.FYOD;
  before_.clear();
  after_.clear();
  collect_sample(series, {.first = 1, .last = CutoffOffset}, test_.MissingCode,
                 test_.SampleScale, before_);
  collect_sample(series, {.first = CutoffOffset + 1, .last = test_.years.YearCount()},
                 test_.MissingCode, test_.SampleScale, after_);

  auto count1 = static_cast<std::int32_t>(before_.size());
  auto count2 = static_cast<std::int32_t>(after_.size());
  float f{};
  float prob{};
  ftest(before_, count1, after_, count2, f, prob,
        [&](std::string_view text) { console.pause(text); });
  if (std::isnan(f)) {
    console.write_line(kNoticeMargin, "*** Ftest Nan computed ***");
    return;
  }
  file_.write(" " + free_form_real(centre.longitude) + free_form_real(centre.latitude) +
              free_form_real(f) + free_form_real(prob) + "\n");
}

}  // namespace veldmark
