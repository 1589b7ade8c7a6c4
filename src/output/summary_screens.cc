#include "output/summary_screens.h"

#include <string>

#include "util/fixed_field.h"

namespace veldmark {

void write_summary(ConsoleDialogue& console, std::int32_t CellsDefined,
                   std::int32_t CellsSaved, const OutputName& TsfName) {
  console.blank_line();
  console.blank_line();
  console.write_line(" PROGRAM TERMINATING NORMALLY");
  console.write_line(" " + fixed_integer(CellsDefined, 10) + " Grids Defined");
  console.write_line(" " + fixed_integer(CellsSaved, 10) + " Grids Selected and Saved");
  console.write_line(" Output is in file " + std::string(TsfName.view()));
}

}  // namespace veldmark
