// The table of the saved cells on the console.

#ifndef VELDMARK_OUTPUT_CONSOLE_TABLE_H_
#define VELDMARK_OUTPUT_CONSOLE_TABLE_H_

#include <string>

#include "catalogue/variable_catalogue.h"
#include "console/console_dialogue.h"
#include "output/save_cells.h"
#include "selection/search_region.h"

namespace veldmark {

class ConsoleTable : public CellSink {
 public:
  // Writes the heading with the years. Requires that `console` outlives this object.
  ConsoleTable(ConsoleDialogue& console, const VariableEntry& entry,
               const YearSpan& years);

  // Writes the line of a cell: its number, coordinates, prefix and title.
  void add(const SavedCell& cell) override;

 private:
  ConsoleDialogue& console_;
  std::string line_suffix_;  // the part of a line after the coordinates
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_CONSOLE_TABLE_H_
