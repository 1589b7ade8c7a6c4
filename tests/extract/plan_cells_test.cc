// Which fields of a line are read how, and what is wrong with one that can't be.

#include "extract/line_plan.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "extract/line_fault.h"

namespace veldmark::extract {
namespace {

using Columns = std::vector<std::int32_t>;

// "3-5 data, 7 sea": the runs of a plan.
std::string runs_of(const Columns& columns, const Columns& data, const Columns& late) {
  std::string text;
  for (const FieldRun& run : plan_cells(columns, data, late).runs) {
    const std::int32_t last = run.first_field + run.count - 1;
    text += (text.empty() ? "" : ", ") + std::to_string(run.first_field) +
            (run.count > 1 ? "-" + std::to_string(last) : "") +
            (run.has_data ? " data" : " sea");
  }
  return text;
}

TEST(PlanCells, JoinsNeighboursOfOneKind) {
  EXPECT_EQ(runs_of({}, {}, {}), "");
  EXPECT_EQ(runs_of({3}, {}, {}), "3 sea");
  EXPECT_EQ(runs_of({3, 4, 5, 7, 8}, {3, 4, 5, 7, 8}, {}), "3-5 data, 7-8 data");
  EXPECT_EQ(runs_of({3, 4, 5, 6, 7}, {4, 5}, {}), "3 sea, 4-5 data, 6-7 sea");
}

TEST(PlanCells, LeavesLateStartsOut) {
  EXPECT_EQ(runs_of({3, 4, 5, 6}, {3}, {5}), "3 data, 4 sea, 6 sea");
  EXPECT_EQ(runs_of({1, 2}, {}, {1, 2}), "");
}

// A line of 720 fields that are all "    0" but for some.
std::string line_with(const std::vector<std::pair<std::int32_t, std::string>>& fields) {
  std::string line;
  for (int i = 0; i < 720; ++i) {
    line += "    0";
  }
  for (const auto& [column, field] : fields) {
    line.replace(static_cast<std::size_t>(column - 1) * 5, 5, field);
  }
  return line;
}

TEST(ValueOf, ReadsTheFieldOfAColumn) {
  const std::string line = line_with({{1, " -999"}, {2, "32767"}, {720, "-9999"}});
  EXPECT_EQ(value_of(line, 1), -999);
  EXPECT_EQ(value_of(line, 2), 32767);
  EXPECT_EQ(value_of(line, 3), 0);
  EXPECT_EQ(value_of(line, 720), -9999);
}

TEST(FindLineFault, NamesTheFirstBadFieldOfTheColumns) {
  const std::string line =
      line_with({{2, "32767"}, {4, "32768"}, {6, " 1x2 "}, {720, "1   x"}});
  EXPECT_EQ(find_line_fault(line, Columns{1, 2, 3, 5}), std::nullopt);
  EXPECT_EQ(find_line_fault(line, Columns{4, 6}),
            "characters 16-20 (column 4): '32768' is too large for a value");
  EXPECT_EQ(find_line_fault(line, Columns{5, 6}),
            "characters 26-30 (column 6): ' 1x2 ' is no integer");
  EXPECT_EQ(find_line_fault(line, Columns{720}),
            "characters 3596-3600 (column 720): '1   x' is no integer");
  EXPECT_EQ(find_line_fault(line_with({{9, "12\n34"}}), Columns{1}),
            "it ends early, after 42 characters");
}

}  // namespace
}  // namespace veldmark::extract
