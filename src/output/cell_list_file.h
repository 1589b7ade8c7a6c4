// The cell list (.XY): a heading and a line for every saved cell.

#ifndef VELDMARK_OUTPUT_CELL_LIST_FILE_H_
#define VELDMARK_OUTPUT_CELL_LIST_FILE_H_

#include <string>

#include "catalogue/variable_catalogue.h"
#include "output/output_file.h"
#include "output/output_names.h"
#include "output/save_cells.h"

namespace veldmark {

class CellListFile : public CellSink {
 public:
  // Writes to `file`, which must outlive it, first the heading, which shows the name of
  // the time-series file.
  // Kept on purpose: across-the-meridian-then-ordinary. Once a box of the run has
  // crossed the 180 degree meridian, there are no blanks between prefix and title.
  CellListFile(OutputFile& file, const OutputName& TsfName, const VariableEntry& entry,
               bool CrossesDateLine);

  // Throws FileFault where a write fails.
  void add(const SavedCell& cell) override;

 private:
  OutputFile& file_;
  std::string line_suffix_;  // what follows the coordinates
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_CELL_LIST_FILE_H_
