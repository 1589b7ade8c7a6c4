// Reads a search's block from a regular grid file, whose lines can be found by
// computation: the fast way for what nearly every file looks like.

#ifndef VELDMARK_CATALOGUE_REGULAR_READER_H_
#define VELDMARK_CATALOGUE_REGULAR_READER_H_

#include <optional>

#include "catalogue/block_request.h"
#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"

namespace veldmark {

// Reads the block if the file is regular and all requested fields are integers.
//
// A file is regular when its size is a whole number of lines of 3601 bytes (3602 with
// CR LF; the last line end may be absent), at least as many as there are up to December
// of LYOD, and every requested line, and the first line of every other month up to
// then, is framed: a line end before it, a line end at its end, none inside.
//
// Returns nullopt if the file is not regular; the caller falls back to the line-by-line
// reader. A skipped line that is broken so that size and frames still fit is not
// noticed.
std::optional<GridValues> read_regular(const GridFile& file,
                                       const BlockRequest& request);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_REGULAR_READER_H_
