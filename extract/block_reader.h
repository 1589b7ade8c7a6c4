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
// Throws Failure that names line, characters and text when a field of a cell is no
// integer or too large for 16 bits, when a line has no line end in its place, and when
// the system fails to read.
SeriesBlock read_cells(const InputFile& input, const CellSet& cells, const Years& years,
                       const Progress& progress);

// How many bytes read_cells reads.
std::int64_t bytes_to_read(const InputFile& input, const CellSet& cells,
                           const Years& years);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_BLOCK_READER_H_
