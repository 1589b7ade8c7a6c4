#include "output/console_table.h"

#include "util/fixed_field.h"

namespace veldmark {
namespace {

// What follows the coordinates on a line.
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

// The coordinates stand in ten columns here, in nine in the files.
void ConsoleTable::add(const SavedCell& cell) {
  console_.write_line("  " + fixed_integer(cell.number, 6) + " " + cell.longitude.text +
                      " " + cell.latitude.text + line_suffix_);
}

}  // namespace veldmark
