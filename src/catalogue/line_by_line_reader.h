// Reads a search's block line by line, from the first line of the file on. This is the
// definition of what a grid file means, whatever its lines look like.

#ifndef VELDMARK_CATALOGUE_LINE_BY_LINE_READER_H_
#define VELDMARK_CATALOGUE_LINE_BY_LINE_READER_H_

#include "catalogue/block_request.h"
#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"
#include "console/console_dialogue.h"

namespace veldmark {

// Results and failures are those of read_block.
GridValues read_line_by_line(ConsoleDialogue& console, const GridFile& file,
                             const BlockRequest& request);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_LINE_BY_LINE_READER_H_
