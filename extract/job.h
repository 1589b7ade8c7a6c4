// What all kinds of extraction share: their input, options and messages.

#ifndef VELDMARK_EXTRACT_JOB_H_
#define VELDMARK_EXTRACT_JOB_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "companion/run.h"
#include "extract/cell_set.h"
#include "extract/input_file.h"
#include "extract/options.h"
#include "extract/series_block.h"

namespace veldmark::extract {

constexpr std::string_view kProgram = "veldmark-extract";

// Thrown if no cell with data was found; exit status 3.
struct NothingFound : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Refers to values that must outlive it.
struct Job {
  const Options& options;
  const InputFile& input;
  Years years;               // requested; the file holds all of them
  std::string command_line;  // the arguments, a blank before each
  const companion::Environment& environment;
};

// Reads the series of `cells` in the years of the job and shows progress on a terminal.
// Throws what read_cells throws, and Interrupted.
SeriesBlock read_cells_of(const Job& job, const CellSet& cells);

// Returns whether a series counts as data: in any month or, with --tsf-rule or the
// format tsf, in the first month. An empty series does not.
bool has_data(const Job& job, std::span<const std::int16_t> series);

// Calls `use` with each of `cells` that has data, and its series.
template <typename Use>
void for_each_series(const Job& job, const std::vector<Cell>& cells,
                     const SeriesBlock& block, Use use) {
  for (const Cell& cell : cells) {
    const std::span<const std::int16_t> series = block.series(cell);
    if (has_data(job, series)) {
      use(cell, series);
    }
  }
}

// Returns the first month of the variance test's second period, counted from 0.
// Requires options.variance_test.
std::size_t second_period(const Job& job);

// Returns "1 cell", "2 cells".
std::string count_of(std::int64_t count, const std::string& what);

// Writes a line to the messages, after the program's name.
void note(const Job& job, const std::string& text);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_JOB_H_
