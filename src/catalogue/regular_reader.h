// Reads the block of a search from a regular grid file, where the offset of each line
// can be computed. Nearly all files are regular; this is the fast reader for them.

#ifndef VELDMARK_CATALOGUE_REGULAR_READER_H_
#define VELDMARK_CATALOGUE_REGULAR_READER_H_

#include <optional>

#include "catalogue/block_request.h"
#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"

namespace veldmark {

// Returns the block if the file is regular and all requested fields are integers.
// Otherwise returns nullopt; the caller falls back to the line-by-line reader.
//
// A file is regular if
//   - its size is a whole number of lines of 3601 bytes (3602 with CR LF); the last
//     line ending may be missing
//   - it has all lines up to December of LYOD
//   - every requested line is delimited (a line ending before it and after it, no
//     newline inside), and so is the first line of every month up to then that has no
//     requested lines
//
// Damage to skipped lines that leaves all this unchanged is not detected.
std::optional<GridValues> read_regular(const GridFile& file,
                                       const BlockRequest& request);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_REGULAR_READER_H_
