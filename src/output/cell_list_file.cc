#include "output/cell_list_file.h"

namespace veldmark {
namespace {

// Returns the part of a line after the coordinates.
std::string line_suffix(const VariableEntry& entry, bool CrossesDateLine) {
  std::string rest = "    ";
  rest += entry.OutputPrefix.view();
  rest += CrossesDateLine ? "" : "   ";
  rest += entry.TitleText.view();
  return rest + "\n";
}

}  // namespace

CellListFile::CellListFile(OutputFile& file, const OutputName& TsfName,
                           const VariableEntry& entry, bool CrossesDateLine)
    : file_(file), line_suffix_(line_suffix(entry, CrossesDateLine)) {
  file_.write(" #   Lon.     Lat.      " + std::string(TsfName.view()) + "\n");
}

void CellListFile::add(const SavedCell& cell) {
  file_.write(" " + cell.longitude.text + cell.latitude.text + line_suffix_);
}

}  // namespace veldmark
