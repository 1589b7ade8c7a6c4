// The variance report (.ftst): compares two periods of each saved cell, and has one
// line per cell.

#ifndef VELDMARK_OUTPUT_VARIANCE_REPORT_FILE_H_
#define VELDMARK_OUTPUT_VARIANCE_REPORT_FILE_H_

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "output/output_file.h"
#include "output/save_cells.h"
#include "selection/search_region.h"
#include "stats/betai.h"
#include "util/file_identity.h"

namespace veldmark {

// The years of a sample as year indices (1 is FYOD), both included; empty if last <
// first.
struct SampleYears {
  std::int64_t first;
  std::int64_t last;
};

// Appends the values of a cell for `years` to `sample`, month by month. Single
// precision; see docs/variance-test.md, "The two samples".
//
//   series        the values of the cell for all months from January of FYOD
//   years         years outside the series are ignored
//   MissingCode   months with this value are skipped
//   SampleScale   factor from stored units to sample units: 0.01 for frost days
void collect_sample(std::span<const std::int16_t> series, SampleYears years,
                    std::int32_t MissingCode, float SampleScale,
                    std::vector<float>& sample);

// The parameters of the variance test of a search.
struct VarianceTest {
  YearSpan years;
  std::int32_t CutoffYear;
  std::int32_t MissingCode;
  float SampleScale;  // factor from stored units to sample units
};

// Callbacks for tests that fail. Neither may be empty.
struct VarianceNotices {
  std::function<void()> not_a_number;  // f is NaN, so the cell gets no line
  BadArgumentHandler bad_argument;
};

// The report file of one search.
class VarianceReportFile : public CellSink {
 public:
  // Creates or truncates the file `name`, which must not be one of `in_use`, and writes
  // the heading with the two periods. Throws FileFault if it cannot be opened.
  //
  // Kept on purpose: variance-cutoff-in-the-middle. In the heading the cutoff year ends
  // the first period, but its values are part of the second sample.
  VarianceReportFile(const std::string& name, const VarianceTest& test,
                     VarianceNotices notices, const FilesInUse& in_use = {});

  // Returns the two periods as the heading names them.
  [[nodiscard]] std::string periods() const;

  // Tests a cell and writes its line. Throws FileFault if a write fails.
  void add(const SavedCell& cell) override;

  // Flushes and closes the file. Throws FileFault if that fails.
  void close() { file_.close(); }

 private:
  VarianceTest test_;
  VarianceNotices notices_;
  OutputFile file_;
  std::vector<float> before_;  // the two samples; members, to reuse their memory
  std::vector<float> after_;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_VARIANCE_REPORT_FILE_H_
