// The series of data/sample are expanded and compared with their own text, which is
// parsed here with simpler code than the program's.

#include <gtest/gtest.h>
#include <sys/types.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "read_text.h"
#include "series_to_grid/grid_writer.h"
#include "series_to_grid/series_file.h"
#include "series_to_grid/series_to_grid.h"
#include "support/memory_input.h"
#include "support/temporary_folder.h"

namespace veldmark::series_to_grid {
namespace {

// One cell of a sample file; the row is counted from the south.
struct SampleCell {
  int column = 0;
  int row = 0;
  std::vector<std::string> values;
};

std::string sample_text(const std::string& variable) {
  const std::string command = std::string("gzip -dc '") + SAMPLE_FOLDER +
                              "/cru_ts4.01_" + variable + "_1901_2016.csv.gz'";
  FILE* const pipe = popen(command.c_str(), "r");
  std::string text;
  std::vector<char> piece(65536);
  while (const std::size_t size = fread(piece.data(), 1, piece.size(), pipe)) {
    text.append(piece.data(), size);
  }
  EXPECT_EQ(pclose(pipe), 0) << command;
  return text;
}

std::vector<SampleCell> sample_cells(const std::string& text) {
  std::istringstream lines(text);
  std::string line;
  std::getline(lines, line);
  std::vector<SampleCell> cells;
  while (std::getline(lines, line)) {
    std::istringstream fields(line);
    std::string lon;
    std::string lat;
    std::getline(fields, lon, ',');
    std::getline(fields, lat, ',');
    SampleCell cell;
    cell.column = 1 + static_cast<int>(std::lround((std::stod(lon) + 179.75) * 2));
    cell.row = 1 + static_cast<int>(std::lround((std::stod(lat) + 89.75) * 2));
    for (std::string value; std::getline(fields, value, ',');) {
      cell.values.push_back(value);
    }
    cells.push_back(cell);
  }
  return cells;
}

std::string right_aligned(const std::string& value) {
  return std::string(5 - value.size(), ' ') + value;
}

// Five characters of the grid file at the line of a year, month (1..12) and row.
std::string field_at(std::ifstream& grid, int year, int month, int row, int column) {
  const off_t line = off_t{year - 1901} * 4320 + off_t{month - 1} * 360 + row;
  grid.seekg((line - 1) * 3601 + off_t{column - 1} * 5);
  std::string field(5, '?');
  grid.read(field.data(), 5);
  return field;
}

TEST(SampleSeries, KnownTemperaturesStandOnTheirLines) {
  const testing::TemporaryFolder folder;
  const testing::MemoryInput input(sample_text("tmp"));
  std::ostringstream messages;
  const companion::Environment environment{.input = input.descriptor(),
                                           .output = messages,
                                           .messages = {.stream = messages}};
  const std::vector<std::string> arguments = {"--years", "1901-1902", "grid"};
  ASSERT_EQ(run_series_to_grid(arguments, environment), 0);
  EXPECT_EQ(messages.str(),
            "series_to_grid: wrote 'grid': 71 cells, values in 24 of 24 months, "
            "31112640 bytes\n");
  std::ifstream grid("grid", std::ios::binary);
  // 139.75 W 60.25 N is column 81, row 301; 48.25 W 25.25 S is column 264, row 130.
  EXPECT_EQ(field_at(grid, 1901, 1, 301, 81), " -186");
  EXPECT_EQ(field_at(grid, 1901, 2, 301, 81), " -186");
  EXPECT_EQ(field_at(grid, 1901, 12, 301, 81), " -145");
  EXPECT_EQ(field_at(grid, 1902, 1, 301, 81), " -162");
  EXPECT_EQ(field_at(grid, 1902, 2, 301, 81), " -130");
  EXPECT_EQ(field_at(grid, 1901, 1, 130, 264), "  227");
  EXPECT_EQ(field_at(grid, 1901, 2, 130, 264), "  226");
  EXPECT_EQ(field_at(grid, 1901, 1, 130, 265), " -999");
}

// Every value of every month of a variable, and as many values as there should be.
void expect_whole_sample(const std::string& variable, std::size_t cell_count) {
  const std::string text = sample_text(variable);
  const std::vector<SampleCell> cells = sample_cells(text);
  ASSERT_EQ(cells.size(), cell_count) << variable;
  const Series series = read_text(text);
  std::size_t month_index = 0;
  make_grid(series, {1901, 2016}, {}, [&](std::string_view month) {
    for (const SampleCell& cell : cells) {
      const int at = (cell.row - 1) * 3601 + (cell.column - 1) * 5;
      ASSERT_EQ(month.substr(static_cast<std::size_t>(at), 5),
                right_aligned(cell.values.at(month_index)))
          << variable << " month " << month_index << " row " << cell.row << " column "
          << cell.column;
    }
    ++month_index;
  });
  EXPECT_EQ(month_index, 1392U);
}

TEST(SampleSeries, EveryValueOfTemperatureAndPrecipitationIsInItsField) {
  expect_whole_sample("tmp", 71);
  expect_whole_sample("pre", 71);
}

TEST(SampleSeries, EveryValueOfTheOtherVariablesIsInItsField) {
  for (const std::string variable :
       {"dtr", "tmn", "tmx", "vap", "pet", "cld", "frs", "wet"}) {
    expect_whole_sample(variable, 62);
  }
}

}  // namespace
}  // namespace veldmark::series_to_grid
