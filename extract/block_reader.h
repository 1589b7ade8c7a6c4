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
// Throws Failure, which names line, characters and text, if a field of a cell is not an
// integer or does not fit into 16 bits, if a line has the wrong length, and if a read
// fails.
SeriesBlock read_cells(const InputFile& input, const CellSet& cells, const Years& years,
                       const Progress& progress);

// Returns the number of bytes that read_cells reads.
std::int64_t bytes_to_read(const InputFile& input, const CellSet& cells,
                           const Years& years);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_BLOCK_READER_H_
