// A condensed grid file: 116 years x 12 months x 360 lines of 720 five-character
// integers, and the reading of a search's block from it.
//
// The line of year Y, month M and row R is line (Y - 1901) * 4320 + (M - 1) * 360 + R,
// counted from 1. Lines that a search passes over may hold anything and have any
// length.

#ifndef VELDMARK_CATALOGUE_GRID_FILE_H_
#define VELDMARK_CATALOGUE_GRID_FILE_H_

#include <cstddef>
#include <string>

#include "catalogue/grid_values.h"
#include "console/console_dialogue.h"
#include "selection/grid_geometry.h"
#include "selection/search_region.h"
#include "util/file_descriptor.h"

namespace veldmark {

// An open data file (channel 13), read from its start onward.
class GridFile {
 public:
  // Opens `name` for reading. A file that can't be opened, a folder too, ends the run
  // (RunEnd).
  explicit GridFile(std::string name);

  [[nodiscard]] const std::string& name() const { return name_; }

  // Reads up to `size` further bytes; gives their number, 0 at the end. A failure of
  // the system ends the run (RunEnd).
  std::size_t read(char* buffer, std::size_t size);

 private:
  std::string name_;
  FileDescriptor file_;
};

// Reads the values of `years` for the cells of `ranges` and closes the file. Of every
// month all 360 lines are passed; rows outside 1..360 are not there to be read.
//
// Failures end the run (RunEnd), after a message of their own in the first two cases:
//   a wanted line with a field that is no integer, or too short for its fields
//   the end of the file at a wanted line, or inside the last line when it is wanted
//   the end of the file at a line that is passed over
GridValues read_block(ConsoleDialogue& console, GridFile file, const YearSpan& years,
                      const GridRanges& ranges);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_GRID_FILE_H_
