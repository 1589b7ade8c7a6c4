// The reading of a search's block of values from its grid file.

#ifndef VELDMARK_CATALOGUE_READ_BLOCK_H_
#define VELDMARK_CATALOGUE_READ_BLOCK_H_

#include "catalogue/block_request.h"
#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"

namespace veldmark {

// Reads the requested block and closes the file. All 360 lines of a month are read or
// skipped; rows outside 1..360 are not there to be read. Skipped lines may hold
// anything and have any length.
//
// Throws ReadFault
//   BadField             a requested field is no integer, or its line is too short
//   EndAtRequestedLine   the file ends before or inside a requested line
//   EndAtSkippedLine     the file ends before a line that is skipped
// and FileFault where the system cannot read.
GridValues read_block(GridFile file, const BlockRequest& request);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_READ_BLOCK_H_
