// The cell list (.XY): a heading, and one line for each saved cell.

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
  // Writes the heading, which contains the name of the time-series file. Requires that
  // `file` outlives this object.
  //
  // Kept on purpose: across-the-meridian-then-ordinary. After a box across the 180
  // degree meridian, all later lists of the run lack the blanks between prefix and
  // title.
  CellListFile(OutputFile& file, const OutputName& TsfName, const VariableEntry& entry,
               bool CrossesDateLine);

  // Throws FileFault if a write fails.
  void add(const SavedCell& cell) override;

 private:
  OutputFile& file_;
  std::string line_suffix_;  // the part of a line after the coordinates
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_CELL_LIST_FILE_H_
