#include "output/console_table.h"

#include "util/fixed_field.h"

namespace veldmark {
namespace {

// Returns the part of a line after the coordinates.
std::string line_suffix(const VariableEntry& entry) {
  std::string rest = "   ";
  rest += entry.OutputPrefix.view();
  rest += "   ";
  rest += entry.TitleText.view();
  return rest;
}

}  // namespace

ConsoleTable::ConsoleTable(ConsoleDialogue& console, const VariableEntry& entry,
                           const YearSpan& years)
    : console_(console), line_suffix_(line_suffix(entry)) {
  console_.write_lines({"",
                        "  Saving Cell data : " + fixed_integer(years.FYOD, 4) + " - " +
                            fixed_integer(years.LYOD, 4),
                        "     #    longitude latitude   dattype       title"});
}

// One blank is added before each coordinate, which are nine characters wide in the
// files.
void ConsoleTable::add(const SavedCell& cell) {
  console_.write_line("  " + fixed_integer(cell.number, 6) + " " + cell.longitude.text +
                      " " + cell.latitude.text + line_suffix_);
}

}  // namespace veldmark
