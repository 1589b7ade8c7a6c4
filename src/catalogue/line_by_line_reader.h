// Reads the block of a search line by line from the start of the file, whatever its
// lines look like. This reader defines what a grid file means.

#ifndef VELDMARK_CATALOGUE_LINE_BY_LINE_READER_H_
#define VELDMARK_CATALOGUE_LINE_BY_LINE_READER_H_

#include "catalogue/block_request.h"
#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"

namespace veldmark {

// Returns and throws what read_block does.
GridValues read_line_by_line(const GridFile& file, const BlockRequest& request);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_LINE_BY_LINE_READER_H_
