// The variance report (.ftst): the two samples of a cell, and a line for every cell
// tested.

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

// The years of a sample as year indices, 1 = FYOD, both included; last < first is
// empty.
struct SampleYears {
  std::int64_t first;
  std::int64_t last;
};

// Appends one cell's values of some years to `sample`, years in order, January first.
//
//   series        the cell's values of all months from January of FYOD
//   years         as far as the series goes; others have no values
//   MissingCode   months holding it are left out
//   SampleScale   sample unit per stored unit: 0.01 for frost days
//
// Source     docs/variance-test.md, "The two samples"; single precision.
void collect_sample(std::span<const std::int16_t> series, SampleYears years,
                    std::int32_t MissingCode, float SampleScale,
                    std::vector<float>& sample);

// What the variance test of a search goes by. SampleScale multiplies stored values.
struct VarianceTest {
  YearSpan years;
  std::int32_t CutoffYear;
  std::int32_t MissingCode;
  float SampleScale;
};

// What is called where a cell's test fails; neither is empty.
struct VarianceNotices {
  std::function<void()> not_a_number;  // f is NaN: the cell has no line
  BadArgumentHandler bad_argument;
};

// The report file of one search.
class VarianceReportFile : public CellSink {
 public:
  // Creates the file `name`, which must not be one of `in_use`, and heads it with the
  // periods compared. Throws FileFault where it can't be opened.
  // Kept on purpose: variance-cutoff-in-the-middle. The heading ends the first period
  // with the cutoff year, which the samples count to the second.
  VarianceReportFile(const std::string& name, const VarianceTest& test,
                     VarianceNotices notices, const FilesInUse& in_use = {});

  // The two periods as the heading names them.
  [[nodiscard]] std::string periods() const;

  // Tests a cell and writes its line. Throws FileFault where a write fails.
  void add(const SavedCell& cell) override;

  // Throws FileFault where the file can't be completed.
  void close() { file_.close(); }

 private:
  VarianceTest test_;
  VarianceNotices notices_;
  OutputFile file_;
  std::vector<float> before_;  // the two samples, members to keep their memory
  std::vector<float> after_;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_VARIANCE_REPORT_FILE_H_
