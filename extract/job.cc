#include "extract/job.h"

namespace veldmark::extract {

bool has_data(const Job& job, std::span<const std::int16_t> series) {
  const bool first_month_counts =
      job.options.tsf_rule || job.options.format == Format::kTsf;
  return !series.empty() &&
         !(first_month_counts && series.front() == job.input.entry.MissingCode);
}

void note(const Job& job, const std::string& text) {
  job.messages << "veldmark-extract: " << text << "\n";
}

}  // namespace veldmark::extract
