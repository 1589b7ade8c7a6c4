#include "sessions/prepared_data.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <map>
#include <sstream>

#include "support/grid_text.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

// Returns the text between the bars at the end of a data line.
std::string text_in_bars(const std::string& line) {
  const std::size_t begin = line.find('|');
  return line.substr(begin + 1, line.rfind('|') - begin - 1);
}

struct PreparedGrids {
  std::map<std::string, GridText> grids;

  GridText& of(const std::string& variable) { return grids.at(variable); }
};

void prepare_grid(std::istringstream& words, PreparedGrids& prepared) {
  std::string variable;
  int last_year = 0;
  int first_row = 0;
  int last_row = 0;
  int missing = 0;
  char dash = 0;
  words >> variable >> last_year >> first_row >> dash >> last_row >> missing;
  prepared.grids.emplace(variable, GridText(last_year, first_row, last_row, missing));
}

// Handles a line of `prepare_data` that changes a grid file. Returns whether it was
// one.
bool change_grid(const std::string& kind, std::istringstream& words,
                 const std::string& line, PreparedGrids& prepared) {
  std::string variable;
  words >> variable;
  int year = 0;
  int month = 0;
  int row = 0;
  int column = 0;
  int value = 0;
  if (kind == "series") {
    words >> year >> row >> column;
    for (month = 1; month <= 12 && words >> value; ++month) {
      prepared.of(variable).set_value(year, month, row, column, value);
    }
  } else if (kind == "constant") {
    int last_year = 0;
    char dash = 0;
    words >> year >> dash >> last_year >> row >> column >> value;
    for (; year <= last_year; ++year) {
      for (month = 1; month <= 12; ++month) {
        prepared.of(variable).set_value(year, month, row, column, value);
      }
    }
  } else if (kind == "value") {
    words >> year >> month >> row >> column >> value;
    prepared.of(variable).set_value(year, month, row, column, value);
  } else if (kind == "field") {
    words >> year >> month >> row >> column;
    prepared.of(variable).set_field(year, month, row, column, text_in_bars(line));
  } else if (kind == "line") {
    words >> year >> month >> row;
    prepared.of(variable).set_line(year, month, row, text_in_bars(line));
  } else if (kind == "crlf") {
    prepared.of(variable).end_lines_with_crlf();
  } else if (kind == "cut") {
    std::size_t characters = 0;
    words >> year >> month >> row >> characters;
    prepared.of(variable).cut(year, month, row, characters);
  } else {
    return false;
  }
  return true;
}

}  // namespace

void prepare_data(const std::vector<std::string>& lines) {
  PreparedGrids prepared;
  for (const std::string& line : lines) {
    std::istringstream words(line);
    std::string kind;
    words >> kind;
    if (kind == "grid") {
      prepare_grid(words, prepared);
    } else if (kind == "folder") {
      std::string name;
      words >> name;
      std::filesystem::create_directory(name);
    } else if (kind == "file") {
      std::string name;
      words >> name;
      write_file(name, text_in_bars(line) + "\n");
    } else {
      EXPECT_TRUE(change_grid(kind, words, line, prepared)) << line;
    }
  }
  for (const auto& [variable, grid] : prepared.grids) {
    write_file(data_file_name(variable), grid.text());
  }
}

}  // namespace veldmark::testing
