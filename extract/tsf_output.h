// Writes the two text files of the dialogue: the series (.TSF) and the cell list (.XY).

#ifndef VELDMARK_EXTRACT_TSF_OUTPUT_H_
#define VELDMARK_EXTRACT_TSF_OUTPUT_H_

#include "extract/box_cells.h"
#include "extract/job.h"

namespace veldmark::extract {

// Writes NAME.TSF and NAME.XY with the cells of `box` that have data, in the order of
// the file, as the dialogue writes them in the first search of a run; both appear when
// both are complete. The cell list shows the name of the series without folders. The
// headings have the release of the input, not that of the dialogue.
// Throws Failure or FileFault if a write fails.
void write_tsf(const Job& job, const BoxCells& box, const SeriesBlock& block);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_TSF_OUTPUT_H_
