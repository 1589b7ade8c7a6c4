// The reading of a search's block of values from its grid file.

#ifndef VELDMARK_CATALOGUE_READ_BLOCK_H_
#define VELDMARK_CATALOGUE_READ_BLOCK_H_

#include "catalogue/block_request.h"
#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"
#include "console/console_dialogue.h"

namespace veldmark {

// Reads the requested block and closes the file. Of every month all 360 lines are
// passed; rows outside 1..360 are not there to be read. Lines that are passed over may
// hold anything and have any length.
//
// Failures end the run (RunEnd), after a message of their own in the first two cases:
//   a wanted line with a field that is no integer, or too short for its fields
//   the end of the file at a wanted line, or inside the last line when it is wanted
//   the end of the file at a line that is passed over
GridValues read_block(ConsoleDialogue& console, GridFile file,
                      const BlockRequest& request);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_READ_BLOCK_H_
