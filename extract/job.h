// What all kinds of extraction work on, and how they report.

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

// No cell with data was found; status 3.
struct NothingFound : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Refers to values that must outlive it.
struct Job {
  const Options& options;
  const InputFile& input;
  Years years;               // chosen, all of them in the file
  std::string command_line;  // the arguments, each after a blank
  const companion::Surroundings& around;
};

// Reads the series of `cells` in the years of the job, and shows on a terminal how far
// that has come. Throws what read_cells throws, and Interrupted.
SeriesBlock read_cells_of(const Job& job, const CellSet& cells);

// Does a series hold data: in any month or, where that rule was chosen or the format
// has it, in the first month? An empty series holds none.
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
// Requires that the test is asked for.
std::size_t second_period(const Job& job);

// Returns "1 cell", "2 cells".
std::string count_of(std::int64_t count, const std::string& what);

// Writes a note of the program on its messages.
void note(const Job& job, const std::string& text);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_JOB_H_
