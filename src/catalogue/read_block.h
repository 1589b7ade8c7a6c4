// Reads the values that a search needs from its grid file.

#ifndef VELDMARK_CATALOGUE_READ_BLOCK_H_
#define VELDMARK_CATALOGUE_READ_BLOCK_H_

#include "catalogue/block_request.h"
#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"

namespace veldmark {

// Reads the requested block and closes the file. Rows outside 1..360, which a request
// may have (grid_geometry.h), are skipped and have no cells with data. Lines that are
// not requested are skipped; they may contain anything and have any length.
//
// Throws FileFault if a read fails, and ReadFault with
//   BadField             if a requested field is not an integer, or missing because its
//                        line is too short
//   EndAtRequestedLine   if the file ends before or inside a requested line
//   EndAtSkippedLine     if the file ends before a skipped line
GridValues read_block(GridFile file, const BlockRequest& request);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_READ_BLOCK_H_
