#include "support/grid_text.h"

#include <cstdio>
#include <utility>

namespace veldmark::testing {
namespace {

std::string five_columns(int value) {
  std::string text = std::to_string(value);
  text.insert(0, 5 - text.size(), ' ');
  return text;
}

}  // namespace

std::size_t GridText::line_index(int year, int month, int row) {
  return static_cast<std::size_t>(year - 1901) * 4320 +
         static_cast<std::size_t>(month - 1) * 360 + static_cast<std::size_t>(row - 1);
}

GridText::GridText(int last_year, int first_row, int last_row, int missing)
    : lines_(line_index(last_year + 1, 1, 1)), cut_line_(lines_.size()) {
  std::string full_line;
  for (int column = 1; column <= 720; ++column) {
    full_line += five_columns(missing);
  }
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const int row = static_cast<int>(i % 360) + 1;
    if (first_row <= row && row <= last_row) {
      lines_[i] = full_line;
    }
  }
}

void GridText::set_value(int year, int month, int row, int column, int value) {
  set_field(year, month, row, column, five_columns(value));
}

void GridText::set_field(int year, int month, int row, int column,
                         std::string_view five) {
  std::string& line = lines_.at(line_index(year, month, row));
  line.replace(static_cast<std::size_t>(column - 1) * 5, 5, five);
}

void GridText::set_line(int year, int month, int row, std::string text) {
  lines_.at(line_index(year, month, row)) = std::move(text);
}

void GridText::cut(int year, int month, int row, std::size_t characters) {
  cut_line_ = line_index(year, month, row);
  cut_characters_ = characters;
}

std::string GridText::text() const {
  std::string text;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const std::string line = lines_[i] + line_end_;
    if (i == cut_line_) {
      return text + line.substr(0, cut_characters_);
    }
    text += line;
  }
  return text;
}

std::string data_file_name(std::string_view variable) {
  if (variable == "scPDSI") {
    return "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new";
  }
  return "cru_ts4.01.1901.2016." + std::string(variable) + ".dat.new";
}

}  // namespace veldmark::testing
