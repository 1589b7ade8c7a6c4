// The saving of a search's cells: the time-series file (.TSF), the cell list (.XY), the
// table on the console and the closing counts.

#ifndef VELDMARK_OUTPUT_TIME_SERIES_OUTPUT_H_
#define VELDMARK_OUTPUT_TIME_SERIES_OUTPUT_H_

#include <cstdint>
#include <optional>
#include <string>

#include "catalogue/grid_values.h"
#include "catalogue/variable_catalogue.h"
#include "console/console_dialogue.h"
#include "output/output_file.h"
#include "output/variance_report.h"
#include "selection/grid_geometry.h"
#include "selection/lattice.h"
#include "selection/search_region.h"

namespace veldmark {

// What there is to save. Refers to values that must outlive it.
struct SaveRequest {
  const VariableEntry& entry;
  const GridValues& values;
  const Lattice& lattice;
  YearSpan years;
  RowOrder order;
  bool CrossesDateLine;
};

// Writes every cell of the lattice that has data to the two files and to the table on
// the console: rows upward, in each row the columns in the lattice's order.
//
//   TsfName           the name of the time-series file as the cell list shows it, 65
//                     characters
//   variance_report   where each cell is tested before it is written, if wanted
//
// Result     how many cells were saved (CellsSaved).
// Values are written in stored units, without scaling; a month without data holds the
// missing code.
// Kept on purpose: once a box of the run has crossed the 180 degree meridian, the cell
// list has no blanks between prefix and title.
// Errors     a failed write ends the run (RunEnd).
std::int32_t save_cells(ConsoleDialogue& console, const SaveRequest& request,
                        const std::string& TsfName, OutputFile& time_series,
                        OutputFile& cell_list,
                        std::optional<VarianceReport>& variance_report);

// Writes the closing counts. `CellsDefined` counts the cells of the search before
// thinning, sea included.
// Kept on purpose: the heading says that the program ends, although it goes on to ask.
void write_summary(ConsoleDialogue& console, std::int32_t CellsDefined,
                   std::int32_t CellsSaved, const std::string& TsfName);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_TIME_SERIES_OUTPUT_H_
