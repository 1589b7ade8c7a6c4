// The variance test of a search: its dialogue, the two samples of a cell, and the
// report file (.ftst) with a line for each cell tested.

#ifndef VELDMARK_OUTPUT_VARIANCE_REPORT_H_
#define VELDMARK_OUTPUT_VARIANCE_REPORT_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "console/console_dialogue.h"
#include "output/output_file.h"
#include "selection/search_region.h"

namespace veldmark {

// Where a cell's centre is, degrees, north and east positive.
struct CellCentre {
  float longitude;
  float latitude;
};

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

// Offers the variance test. Result: the cutoff year, any 32-bit integer; nothing when
// the user declines.
std::optional<std::int32_t> ask_cutoff_year(ConsoleDialogue& console,
                                            const YearSpan& years);

// What the variance test of a search goes by. SampleScale multiplies stored values.
struct VarianceTest {
  YearSpan years;
  std::int32_t CutoffYear;
  std::int32_t MissingCode;
  float SampleScale;
};

// The report file of one search.
class VarianceReport {
 public:
  // Creates the file `name`, which must not be one of `in_use`, and heads it, and the
  // console, with the periods compared.
  // Kept on purpose: the heading ends the first period with the cutoff year, which the
  // samples count to the second.
  VarianceReport(ConsoleDialogue& console, const std::string& name,
                 const VarianceTest& test, const FilesInUse& in_use = {});

  // Tests a cell, given its values of all months, and writes its line; where f is not a
  // number the console says so instead.
  void add_cell(ConsoleDialogue& console, const CellCentre& centre,
                std::span<const std::int16_t> series);

  void close() { file_.close(); }

 private:
  VarianceTest test_;
  OutputFile file_;
  std::vector<float> before_;  // the two samples, kept for their memory
  std::vector<float> after_;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_VARIANCE_REPORT_H_
