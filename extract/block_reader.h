// Reads the series of chosen cells from a condensed grid file.

#ifndef VELDMARK_EXTRACT_BLOCK_READER_H_
#define VELDMARK_EXTRACT_BLOCK_READER_H_

#include <cstdint>

#include "extract/cell_set.h"
#include "extract/framed_lines.h"
#include "extract/input_file.h"
#include "extract/series_block.h"

namespace veldmark::extract {

// Reads the series of `cells` in `years`, which the file holds. Only the lines of rows
// with cells are read.
// Calls `progress` from any of the reading threads, one call at a time; its exceptions
// pass through.
//
// Throws Failure
//   for a field of a cell that is not an integer or does not fit into 16 bits, with its
//   line, character positions and text
//   for a line of the wrong length, with the line
//   for a read that fails, with the reason
SeriesBlock read_cells(const InputFile& input, const CellSet& cells, const Years& years,
                       const Progress& progress);

// Returns the number of bytes that read_cells reports to `progress`.
std::int64_t bytes_to_read(const InputFile& input, const CellSet& cells,
                           const Years& years);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_BLOCK_READER_H_
