#include "output/variance_report_file.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "stats/ftest.h"
#include "util/free_form.h"

namespace veldmark {
namespace {

constexpr std::int64_t kFirstYear = 1;  // the years of a series are counted from it

}  // namespace

void collect_sample(std::span<const std::int16_t> series, SampleYears years,
                    std::int32_t MissingCode, float SampleScale,
                    std::vector<float>& sample) {
  const auto YearCount = static_cast<std::int64_t>(series.size()) / kMonthsPerYear;
  const std::int64_t first = std::max(years.first, kFirstYear);
  const std::int64_t last = std::min(years.last, YearCount);
  if (first > last) {
    return;
  }
  const auto begin = static_cast<std::size_t>((first - kFirstYear) * kMonthsPerYear);
  const auto count = static_cast<std::size_t>((last - first + 1) * kMonthsPerYear);
  for (const std::int16_t value : series.subspan(begin, count)) {
    if (value != MissingCode) {
      sample.push_back(static_cast<float>(value) * SampleScale);
    }
  }
}

VarianceReportFile::VarianceReportFile(const std::string& name,
                                       const VarianceTest& test,
                                       VarianceNotices notices,
                                       const FilesInUse& in_use)
    : test_(test), notices_(std::move(notices)), file_(name, in_use) {
  file_.write(" # Ftest Comparison of Variance: " + periods() + "\n");
  file_.write(" # Lon.      Lat.     f      prob\n");
}

std::string VarianceReportFile::periods() const {
  const std::int64_t after_cutoff = std::int64_t{test_.CutoffYear} + 1;
  return free_form_integer(test_.years.FYOD) + "-" +
         free_form_integer(test_.CutoffYear) + " " + free_form_integer(after_cutoff) +
         "-" + free_form_integer(test_.years.LYOD);
}

void VarianceReportFile::add(const SavedCell& cell) {
  const std::int64_t CutoffOffset = std::int64_t{test_.CutoffYear} - test_.years.FYOD;
  before_.clear();
  after_.clear();
  collect_sample(cell.series, {.first = kFirstYear, .last = CutoffOffset},
                 test_.MissingCode, test_.SampleScale, before_);
  collect_sample(cell.series,
                 {.first = CutoffOffset + 1, .last = test_.years.YearCount()},
                 test_.MissingCode, test_.SampleScale, after_);

  auto count1 = static_cast<std::int32_t>(before_.size());
  auto count2 = static_cast<std::int32_t>(after_.size());
  float f{};
  float prob{};
  ftest(before_, count1, after_, count2, f, prob, notices_.bad_argument);
  const bool FtestNan = std::isnan(f);
  if (FtestNan) {
    notices_.not_a_number();
    return;
  }
  file_.write(" " + free_form_real(cell.longitude.degrees) +
              free_form_real(cell.latitude.degrees) + free_form_real(f) +
              free_form_real(prob) + "\n");
}

}  // namespace veldmark
