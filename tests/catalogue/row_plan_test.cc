#include "catalogue/row_plan.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veldmark {

bool operator==(const FieldRun& a, const FieldRun& b) {
  return a.first_field == b.first_field && a.count == b.count &&
         a.has_data == b.has_data;
}

// Prints a run of fields in messages of failed tests.
void PrintTo(const FieldRun& run, std::ostream* out) {
  *out << run.count << " from " << run.first_field << (run.has_data ? "" : " without")
       << " data";
}

namespace {

using Columns = std::vector<std::int32_t>;
using Runs = std::vector<FieldRun>;

TEST(MissingLine, HasTheCodeInEveryField) {
  const std::string line = missing_line(-999);
  EXPECT_EQ(line.size(), 3600U);
  EXPECT_EQ(line.substr(0, 15), " -999 -999 -999");
  EXPECT_EQ(line.substr(5), line.substr(0, 3595));
}

TEST(PlanRow, JoinsConsecutiveFieldsOfAKind) {
  const FieldGroups format{.first = {10, 10, 8}, .second = {}};
  const RowPlan plan = plan_row(format, Columns{10, 11, 14, 17});
  EXPECT_EQ(plan.runs, (Runs{{10, 2, true},
                             {12, 2, false},
                             {14, 1, true},
                             {15, 2, false},
                             {17, 1, true}}));
  EXPECT_EQ(plan.blank_fields, 0U);
}

TEST(PlanRow, IsEmptyForNoFields) {
  const RowPlan plan = plan_row({.first = {1, 1, 0}, .second = {}}, Columns{1, 2});
  EXPECT_EQ(plan.runs, Runs{});
  EXPECT_EQ(plan.blank_fields, 0U);
}

TEST(PlanRow, AcceptsASecondRangeOfOneField) {
  const FieldGroups format{.first = {1, 1, 2}, .second = {720, 720, 1}};
  EXPECT_EQ(plan_row(format, Columns{1, 720}).runs,
            (Runs{{1, 1, true}, {2, 1, false}, {720, 1, true}}));
}

TEST(PlanRow, KeepsRangesApartThatAreApartOnTheLine) {
  const FieldGroups format{.first = {1, 1, 2}, .second = {719, 719, 2}};
  EXPECT_EQ(plan_row(format, Columns{1, 2, 719, 720}).runs,
            (Runs{{1, 2, true}, {719, 2, true}}));
  EXPECT_EQ(plan_row(format, Columns{}).runs, (Runs{{1, 2, false}, {719, 2, false}}));
}

TEST(PlanRow, JoinsRangesThatMeet) {
  const FieldGroups format{.first = {1, 1, 360}, .second = {361, 361, 360}};
  EXPECT_EQ(plan_row(format, Columns{}).runs, (Runs{{1, 720, false}}));
}

TEST(PlanRow, AssignsCommonColumnsOfOverlappingRangesToTheSecond) {
  // Columns 1..5, and 4..6 from fields 6..8.
  const FieldGroups format{.first = {1, 1, 5}, .second = {6, 4, 3}};
  EXPECT_EQ(plan_row(format, Columns{3, 4, 5, 6}).runs,
            (Runs{{1, 2, false}, {3, 1, true}, {4, 2, false}, {6, 3, true}}));
  const FieldGroups one{.first = {1, 1, 5}, .second = {6, 4, 1}};
  EXPECT_EQ(plan_row(one, Columns{3, 4}).runs,
            (Runs{{1, 2, false}, {3, 1, true}, {4, 2, false}, {6, 1, true}}));
}

TEST(PlanRow, IgnoresFieldsOutsideTheLine) {
  const FieldGroups before{.first = {0, 0, 3}, .second = {}};
  EXPECT_EQ(plan_row(before, Columns{1}).runs, (Runs{{1, 1, true}, {2, 1, false}}));

  const FieldGroups behind{.first = {1, 1, 1}, .second = {719, 717, 4}};
  const RowPlan plan = plan_row(behind, Columns{717, 718, 719});
  EXPECT_EQ(plan.runs, (Runs{{1, 1, false}, {719, 2, true}}));
  EXPECT_EQ(plan.blank_fields, 1U);
  EXPECT_EQ(plan_row(behind, Columns{719, 720}).blank_fields, 2U);
}

TEST(PlanRow, IncludesTheLastColumnOfASingleRange) {
  const FieldGroups format{.first = {719, 719, 2}, .second = {}};
  EXPECT_EQ(plan_row(format, Columns{720}).runs,
            (Runs{{719, 1, false}, {720, 1, true}}));
}

// Returns a line of 720 fields with the missing code, except for `fields`.
std::string line_with(const std::vector<std::pair<std::size_t, std::string>>& fields) {
  std::string line;
  for (int field = 1; field <= 720; ++field) line += " -999";
  for (const auto& [field, text] : fields) line.replace((field - 1) * 5, 5, text);
  return line + "\n";
}

// Reads a line by the plan for columns 10..19, of which 11, 12 and 19 have data.
// Returns " bad" if that fails.
std::string read(const std::string& line_and_end) {
  const RowPlan plan =
      plan_row({.first = {10, 10, 10}, .second = {}}, Columns{11, 12, 19});
  std::vector<std::int16_t> cells(4, -7);
  const std::string missing = line_with({});
  const std::string_view line(line_and_end.data(), 3600);
  if (!read_by_plan(line, plan, std::string_view(missing.data(), 3600), cells.data())) {
    return " bad";
  }
  std::string values;
  for (const std::int16_t cell : cells) values += " " + std::to_string(cell);
  return values;
}

TEST(ReadByPlan, ReadsTheValuesOfTheCellsWithData) {
  EXPECT_EQ(read(line_with({{11, "  123"}, {12, "   -5"}, {19, "-9999"}})),
            " 123 -5 -9999 -7");
}

TEST(ReadByPlan, ChecksTheOtherRequestedFields) {
  EXPECT_EQ(read(line_with({{10, "    x"}})), " bad");
  EXPECT_EQ(read(line_with({{11, "    x"}})), " bad");
  EXPECT_EQ(read(line_with({{13, "x    "}})), " bad");
  EXPECT_EQ(read(line_with({{18, "    x"}})), " bad");
  EXPECT_EQ(read(line_with({{19, "x    "}})), " bad");
  EXPECT_EQ(read(line_with({{10, "    7"}, {18, "  1 2"}})), " -999 -999 -999 -7");
}

TEST(ReadByPlan, FindsNewlinesInAllOtherFields) {
  EXPECT_EQ(read(line_with({{9, "x   x"}, {20, "x   x"}})), " -999 -999 -999 -7");
  for (const std::size_t field : {1U, 5U, 9U, 20U, 400U, 720U}) {
    EXPECT_EQ(read(line_with({{field, "\n    "}})), " bad") << field;
    EXPECT_EQ(read(line_with({{field, "    \n"}})), " bad") << field;
  }
}

TEST(ReadByPlan, FindsNewlinesBetweenRanges) {
  const RowPlan plan =
      plan_row({.first = {1, 1, 2}, .second = {719, 719, 2}}, Columns{});
  const std::string missing = line_with({});
  const auto is_good = [&](const std::string& line) {
    return read_by_plan(std::string_view(line.data(), 3600), plan,
                        std::string_view(missing.data(), 3600), nullptr);
  };
  EXPECT_TRUE(is_good(line_with({{3, "xxxxx"}, {718, "xxxxx"}})));
  EXPECT_FALSE(is_good(line_with({{3, "\nxxxx"}})));
  EXPECT_FALSE(is_good(line_with({{718, "xxxx\n"}})));
}

TEST(ReadByPlan, ReadsFieldsAfterTheLineAsZero) {
  const RowPlan plan =
      plan_row({.first = {1, 1, 1}, .second = {720, 718, 3}}, Columns{718, 719, 720});
  const std::string line = line_with({{720, "   42"}});
  std::vector<std::int16_t> cells(4, -7);
  EXPECT_TRUE(read_by_plan(std::string_view(line.data(), 3600), plan,
                           std::string_view(line.data(), 3600), cells.data()));
  EXPECT_EQ(cells, (std::vector<std::int16_t>{42, 0, 0, -7}));
}

TEST(ContainsNewline, FindsOneAnywhere) {
  EXPECT_FALSE(contains_newline(""));
  EXPECT_FALSE(contains_newline("a\rb"));
  EXPECT_TRUE(contains_newline("\n"));
  EXPECT_TRUE(contains_newline("ab\n"));
}

}  // namespace
}  // namespace veldmark
