#include "output/cell_list_file.h"

namespace veldmark {

CellListFile::CellListFile(OutputFile& file, const OutputName& TsfName,
                           const VariableEntry& entry, bool CrossesDateLine)
    : file_(file) {
  rest_of_line_ = "    ";
  rest_of_line_ += entry.OutputPrefix.view();
  rest_of_line_ += CrossesDateLine ? "" : "   ";
  rest_of_line_ += entry.TitleText.view();
  rest_of_line_ += '\n';
  file_.write(" #   Lon.     Lat.      " + std::string(TsfName.view()) + "\n");
}

void CellListFile::add(const SavedCell& cell) {
  file_.write(" " + cell.longitude.text + cell.latitude.text + rest_of_line_);
}

}  // namespace veldmark
