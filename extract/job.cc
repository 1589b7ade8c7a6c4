#include "extract/job.h"

#include "companion/progress_line.h"
#include "extract/block_reader.h"
#include "grid/grid_layout.h"
#include "util/interrupt_watch.h"

namespace veldmark::extract {
namespace {

// A progress line that appears only when the work takes more than half a second.
class DelayedProgress {
 public:
  DelayedProgress(const companion::ProgressLine::Screen& screen, std::int64_t all)
      : screen_(screen),
        line_(screen, "reading", all),
        begin_(screen.clock() + kDelaySeconds) {}

  void add(std::int64_t count) {
    InterruptWatch::throw_if_caught();
    waiting_ += count;
    if (screen_.clock() >= begin_) {
      line_.add(waiting_);
      waiting_ = 0;
    }
  }

 private:
  static constexpr double kDelaySeconds = 0.5;

  const companion::ProgressLine::Screen& screen_;
  companion::ProgressLine line_;
  double begin_;
  std::int64_t waiting_ = 0;
};

}  // namespace

SeriesBlock read_cells_of(const Job& job, const CellSet& cells) {
  DelayedProgress progress(job.environment.messages,
                           bytes_to_read(job.input, cells, job.years));
  return read_cells(job.input, cells, job.years,
                    [&](std::int64_t count) { progress.add(count); });
}

bool has_data(const Job& job, std::span<const std::int16_t> series) {
  const bool first_month_counts =
      job.options.tsf_rule || job.options.format == Format::kTsf;
  return !series.empty() &&
         !(first_month_counts && series.front() == job.input.entry.MissingCode);
}

std::size_t second_period(const Job& job) {
  const std::int32_t years = *job.options.variance_test - job.years.first;
  return static_cast<std::size_t>(years) * kMonthsPerYear;
}

std::string count_of(std::int64_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void note(const Job& job, const std::string& text) {
  companion::start_message(job.environment, kProgram) << text << "\n";
}

}  // namespace veldmark::extract
