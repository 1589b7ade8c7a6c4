// The core without the dialogue: this program does not link the console.

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "catalogue/grid_file.h"
#include "catalogue/read_block.h"
#include "catalogue/read_fault.h"
#include "catalogue/variable_catalogue.h"
#include "output/cell_list_file.h"
#include "output/output_file.h"
#include "output/output_names.h"
#include "output/save_cells.h"
#include "output/time_series_file.h"
#include "output/variance_report_file.h"
#include "selection/grid_geometry.h"
#include "selection/lattice.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"
#include "util/file_fault.h"

namespace veldmark {
namespace {

using testing::file_content;
using testing::GridText;
using testing::TemporaryFolder;
using testing::write_file;

constexpr YearSpan kYears{.FYOD = 1902, .LYOD = 1903};
const VariableEntry& kFrostDays = *find_variable(9);

// Requests rows 201 and 202, columns 401 and 402. One cell has data.
BlockRequest request() {
  const SearchRegion region{.maxLat = 11, .minLat = 10, .maxLon = 21, .minLon = 20};
  return {.years = kYears,
          .ranges = find_ranges(region, kFrostDays.row_order, {}),
          .MissingCode = kFrostDays.MissingCode};
}

GridText grid() {
  GridText grid(1903, 201, 202, kFrostDays.MissingCode);
  for (int month = 1; month <= 12; ++month) {
    grid.set_value(1902, month, 202, 401, 100 * month);
    grid.set_value(1903, month, 202, 401, 200 * month);
  }
  return grid;
}

std::string six_characters(int value) {
  const std::string text = std::to_string(value);
  return std::string(6 - text.size(), ' ') + text;
}

std::string year_line(int year, int step) {
  std::string line = " " + std::to_string(year);
  for (int month = 1; month <= 12; ++month) {
    line += six_characters(step * month);
  }
  return line + "\n";
}

TEST(CoreAlone, ReadsABlockSavesItAndTestsIt) {
  const TemporaryFolder folder;
  write_file("frs", grid().text());
  const GridValues values = read_block(GridFile("frs"), request());
  const Lattice lattice = make_lattice(request().ranges, 1);

  OutputFile series_output("out.TSF");
  OutputFile list_output("out.XY");
  TimeSeriesFile time_series(series_output, kFrostDays, kYears);
  CellListFile cell_list(list_output, "out.TSF", kFrostDays, false);
  int not_numbers = 0;
  VarianceReportFile report("out.ftst",
                            {.years = kYears,
                             .CutoffYear = 1903,
                             .MissingCode = kFrostDays.MissingCode,
                             .SampleScale = *kFrostDays.SampleScale},
                            {.not_a_number = [&] { ++not_numbers; },
                             .bad_argument = [](std::string_view) {}});
  const std::array<CellSink*, 3> sinks{&report, &cell_list, &time_series};
  EXPECT_EQ(save_cells(values, lattice, kFrostDays.row_order, sinks), 1);
  report.close();
  list_output.close();
  series_output.close();

  const std::string place = "    20.250   10.750    CRUts4.01frs.";
  const std::string title = "glo.frs.days*100" + std::string(11, ' ');
  const std::string layout = "RFMT=(1x,i4,12f6.2)" + std::string(46, ' ');
  EXPECT_EQ(file_content("out.TSF"), place + title + layout + "\n" +
                                         year_line(1902, 100) + year_line(1903, 200));
  EXPECT_EQ(file_content("out.XY"), " #   Lon.     Lat.      out.TSF" +
                                        std::string(58, ' ') + "\n" + place + "   " +
                                        title + "\n");
  // The deviations of the second year are twice those of the first, so f is 4.
  const std::string tested =
      " # Ftest Comparison of Variance:  1902- 1903  1904- 1903\n"
      " # Lon.      Lat.     f      prob\n"
      "            20.25           10.75             4.0 ";
  EXPECT_EQ(file_content("out.ftst").substr(0, tested.size()), tested);
  EXPECT_EQ(not_numbers, 0);
}

TEST(CoreAlone, ReportsABadFieldWithLineAndColumn) {
  const TemporaryFolder folder;
  GridText broken = grid();
  broken.set_field(1902, 3, 202, 402, " 1x0 ");
  write_file("frs", broken.text());
  try {
    read_block(GridFile("frs"), request());
    ADD_FAILURE() << "no fault";
  } catch (const ReadFault& fault) {
    const auto* bad = std::get_if<BadField>(&fault.fact());
    ASSERT_NE(bad, nullptr);
    EXPECT_EQ(bad->line, line_number(1902, 3, 202));
    EXPECT_EQ(bad->field, 402);
    EXPECT_EQ(fault.name(), "frs");
    EXPECT_STREQ(fault.what(), "frs");
  }
}

TEST(CoreAlone, ReportsAFileThatCannotBeOpened) {
  const TemporaryFolder folder;
  try {
    const GridFile file("frs");
    ADD_FAILURE() << "no fault";
  } catch (const FileFault& fault) {
    EXPECT_EQ(fault.kind(), FileFault::Kind::kNotOpened);
    EXPECT_EQ(fault.error_number(), ENOENT);
    EXPECT_STREQ(fault.what(), "frs");
  }
}

}  // namespace
}  // namespace veldmark
