#include "output/summary_screens.h"

#include <string>

#include "util/fixed_field.h"

namespace veldmark {

void write_summary(ConsoleDialogue& console, std::int32_t CellsDefined,
                   std::int32_t CellsSaved, const OutputName& TsfName) {
  console.write_lines({
      "",
      "",
      " PROGRAM TERMINATING NORMALLY",
      " " + fixed_integer(CellsDefined, 10) + " Grids Defined",
      " " + fixed_integer(CellsSaved, 10) + " Grids Selected and Saved",
      " Output is in file " + std::string(TsfName.view()),
  });
}

}  // namespace veldmark
