// Both readers of a block must agree. The line-by-line reader is the definition. The
// regular reader may decline a file, but what it returns must be the same.

#include "catalogue/regular_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "catalogue/line_by_line_reader.h"
#include "catalogue/read_fault.h"
#include "support/block_of.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::block_of;
using testing::block_of_reading;
using testing::GridText;
using testing::TemporaryFolder;
using testing::write_file;

constexpr std::int32_t kMissing = -999;

plain::Block read_plainly(const BlockRequest& request) {
  return block_of_reading([&] { return read_line_by_line(GridFile("grid"), request); });
}

std::optional<plain::Block> read_fast(const BlockRequest& request) {
  const GridFile file("grid");
  const std::optional<GridValues> values = read_regular(file, request);
  if (!values) {
    return std::nullopt;
  }
  return block_of(*values);
}

// Returns a grid of 1901 and 1902 with full lines and some cells with data in rows
// 100..200.
GridText regular_grid() {
  GridText grid(1902, 1, 360, kMissing);
  std::mt19937 random(42);
  for (int row = 100; row <= 200; row += 3) {
    for (int i = 0; i < 12; ++i) {
      const int column = static_cast<int>(random() % 720) + 1;
      for (int month = 0; month < 24; ++month) {
        const bool has_value = random() % 20 != 0;
        grid.set_value(1901 + month / 12, month % 12 + 1, row, column,
                       has_value ? static_cast<int>(random() % 14000) - 500 : kMissing);
      }
    }
  }
  return grid;
}

// Degrees, from south to north and from west to east.
struct Search {
  YearSpan years;
  struct {
    float from;
    float to;
  } latitudes, longitudes;
};

BlockRequest request_of(const Search& search, const GridRanges& previous = {}) {
  const SearchRegion region{.maxLat = search.latitudes.to,
                            .minLat = search.latitudes.from,
                            .maxLon = search.longitudes.to,
                            .minLon = search.longitudes.from};
  return {.years = search.years,
          .ranges = find_ranges(region, RowOrder::kSouthFirst, previous),
          .MissingCode = kMissing};
}

GridRanges once_across() {
  return request_of(
             {.years = {1901, 1901}, .latitudes = {-10, 10}, .longitudes = {170, -170}})
      .ranges;
}

// Requests of every shape: small, whole, two ranges, overlapping ones, none; 73 rows,
// one more than are read at a time; one row with data.
std::vector<BlockRequest> requests() {
  return {
      request_of(
          {.years = {1901, 1901}, .latitudes = {-40, -30}, .longitudes = {0, 20}}),
      request_of(
          {.years = {1902, 1902}, .latitudes = {-40, 10}, .longitudes = {-180, 180}}),
      request_of(
          {.years = {1901, 1902}, .latitudes = {-90, 90}, .longitudes = {-180, 180}}),
      request_of({.years = {1901, 1902},
                  .latitudes = {-39, -2.5F},
                  .longitudes = {-180, 180}}),
      request_of({.years = {1901, 1902},
                  .latitudes = {-39, -38.5F},
                  .longitudes = {-180, 180}}),
      request_of(
          {.years = {1901, 1902}, .latitudes = {-40, 10}, .longitudes = {100, -100}}),
      request_of(
          {.years = {1902, 1902}, .latitudes = {-40, 10}, .longitudes = {0.5F, 0.25F}}),
      request_of(
          {.years = {1901, 1902}, .latitudes = {-40, -20}, .longitudes = {0, 20}},
          once_across()),
      request_of(
          {.years = {1901, 1901}, .latitudes = {-40, -20}, .longitudes = {180, 180}},
          once_across()),
      request_of({.years = {1901, 1901},
                  .latitudes = {-40, -20},
                  .longitudes = {179.8F, 180}}),
      request_of(
          {.years = {1901, 1901}, .latitudes = {89.8F, 90}, .longitudes = {0, 20}}),
      request_of(
          {.years = {1902, 1902}, .latitudes = {-20, -20}, .longitudes = {0, 20}}),
      request_of({.years = {1901, 1902},
                  .latitudes = {10.25F, 10.25F},
                  .longitudes = {20, 20}})};
}

// Checks that both readers agree on every request. Returns how many the regular reader
// accepted.
int expect_agreement() {
  int taken = 0;
  for (const BlockRequest& request : requests()) {
    const std::optional<plain::Block> fast = read_fast(request);
    if (fast) {
      ++taken;
      EXPECT_EQ(*fast, read_plainly(request));
    }
  }
  return taken;
}

TEST(RegularReader, ReadsARegularFileAndAgrees) {
  const TemporaryFolder folder;
  write_file("grid", regular_grid().text());
  EXPECT_EQ(expect_agreement(), static_cast<int>(requests().size()));
}

TEST(RegularReader, ReadsCarriageReturnsAndAgrees) {
  const TemporaryFolder folder;
  GridText grid = regular_grid();
  grid.end_lines_with_crlf();
  write_file("grid", grid.text());
  EXPECT_EQ(expect_agreement(), static_cast<int>(requests().size()));
}

TEST(RegularReader, ReadsAFileWithoutItsLastNewline) {
  const TemporaryFolder folder;
  GridText grid = regular_grid();
  grid.set_value(1901, 1, 360, 5, 12);
  grid.cut(1902, 12, 360, 3600);
  write_file("grid", grid.text());
  EXPECT_EQ(expect_agreement(), static_cast<int>(requests().size()));
}

// Rows at the edges of the grid and of what is read at a time (72 lines), columns at
// the ends of a line, all months: this is where offsets go wrong. The expected values
// are computed here.
constexpr std::array<int, 6> kEndRows{1, 72, 73, 144, 145, 360};
constexpr std::array<int, 4> kEndColumns{1, 2, 719, 720};

int end_value(std::size_t month, int row, int column) {
  return static_cast<int>(month) + 24 * row + (column > 2 ? 10000 : 0) + column % 2;
}

GridText grid_with_ends() {
  GridText grid(1902, 1, 360, kMissing);
  for (const int row : kEndRows) {
    for (std::size_t month = 0; month < 24; ++month) {
      for (const int column : kEndColumns) {
        grid.set_value(1901 + static_cast<int>(month) / 12,
                       static_cast<int>(month) % 12 + 1, row, column,
                       end_value(month, row, column));
      }
    }
  }
  return grid;
}

void expect_ends_of(const BlockRequest& request) {
  const GridFile file("grid");
  const std::optional<GridValues> values = read_regular(file, request);
  ASSERT_TRUE(values.has_value());
  const std::size_t first_month =
      12 * static_cast<std::size_t>(request.years.FYOD - 1901);
  for (const int row : kEndRows) {
    const auto columns = values->data_columns(row);
    ASSERT_EQ(std::vector<int>(columns.begin(), columns.end()),
              std::vector<int>(kEndColumns.begin(), kEndColumns.end()));
    for (std::size_t month = 0; month < values->month_count(); ++month) {
      const auto cells = values->month_of_row(month, row);
      for (std::size_t i = 0; i < kEndColumns.size(); ++i) {
        ASSERT_EQ(cells[i], end_value(first_month + month, row, kEndColumns[i]))
            << "month " << month << " row " << row << " column " << kEndColumns[i];
      }
    }
  }
}

TEST(RegularReader, ReadsTheValuesAtAllEdges) {
  const TemporaryFolder folder;
  for (const bool crlf : {false, true}) {
    for (const bool last_line_end : {true, false}) {
      GridText grid = grid_with_ends();
      if (crlf) grid.end_lines_with_crlf();
      if (!last_line_end) grid.cut(1902, 12, 360, 3600);
      write_file("grid", grid.text());
      expect_ends_of(request_of(
          {.years = {1901, 1902}, .latitudes = {-90, 90}, .longitudes = {-180, 180}}));
      expect_ends_of(request_of(
          {.years = {1902, 1902}, .latitudes = {-90, 90}, .longitudes = {-180, 180}}));
      expect_ends_of(request_of(
          {.years = {1901, 1901}, .latitudes = {-90, 90}, .longitudes = {-180, 180}}));
    }
  }
}

TEST(RegularReader, DeclinesAFileThatIsTooShort) {
  const TemporaryFolder folder;
  const BlockRequest request = request_of(
      {.years = {1901, 1902}, .latitudes = {-40, -30}, .longitudes = {0, 20}});
  GridText grid = regular_grid();
  for (const std::size_t characters : {0, 1, 3599}) {
    grid.cut(1902, 12, 360, characters);
    write_file("grid", grid.text());
    EXPECT_EQ(read_fast(request), std::nullopt) << characters;
  }
  write_file("grid", "");
  EXPECT_EQ(read_fast(request), std::nullopt);
}

// Writes a file of `size` bytes that starts with regular lines.
void write_sized(const std::string& text, std::size_t size) {
  std::string sized = text.substr(0, size);
  sized.resize(size, ' ');
  write_file("grid", sized);
}

TEST(RegularReader, ChecksTheSizeOfTheFile) {
  const TemporaryFolder folder;
  const BlockRequest request = request_of(
      {.years = {1901, 1901}, .latitudes = {-40, -30}, .longitudes = {0, 20}});
  for (const bool crlf : {false, true}) {
    GridText grid = regular_grid();
    if (crlf) grid.end_lines_with_crlf();
    const std::string text = grid.text();
    const std::size_t line_size = crlf ? 3602 : 3601;
    const std::size_t end_size = crlf ? 2 : 1;
    const std::size_t year_size = 4320 * line_size;
    const auto taken = [&](std::size_t size) {
      write_sized(text, size);
      return read_fast(request).has_value();
    };
    EXPECT_TRUE(taken(year_size));
    EXPECT_TRUE(taken(year_size - end_size));
    EXPECT_TRUE(taken(year_size + line_size));
    EXPECT_TRUE(taken(year_size + line_size - end_size));
    EXPECT_FALSE(taken(year_size + 1));
    EXPECT_FALSE(taken(year_size + end_size + 1));
    EXPECT_FALSE(taken(year_size - end_size - 1));
    EXPECT_FALSE(taken(year_size + line_size - end_size - 1));
    EXPECT_FALSE(taken(year_size - line_size));
    EXPECT_FALSE(taken(year_size - line_size - end_size));
    EXPECT_FALSE(taken(3600));
    EXPECT_FALSE(taken(line_size));
    EXPECT_FALSE(taken(0));
  }
}

TEST(RegularReader, RequiresTheLinesOfAllYearsUpToTheLast) {
  const TemporaryFolder folder;
  write_sized(regular_grid().text(), std::size_t{4320} * 3601);
  EXPECT_TRUE(read_fast(request_of({.years = {1901, 1901},
                                    .latitudes = {-40, -30},
                                    .longitudes = {0, 20}}))
                  .has_value());
  EXPECT_FALSE(read_fast(request_of({.years = {1901, 1902},
                                     .latitudes = {-40, -30},
                                     .longitudes = {0, 20}}))
                   .has_value());
  EXPECT_FALSE(read_fast(request_of({.years = {1902, 1902},
                                     .latitudes = {-40, -30},
                                     .longitudes = {0, 20}}))
                   .has_value());
}

// The first row of the first month has no line before it, and the last row of the file
// may have no newline.
TEST(RegularReader, DeclinesBrokenLineEndingsAtTheEndsOfTheFile) {
  const TemporaryFolder folder;
  const std::string text = regular_grid().text();
  const BlockRequest all = request_of(
      {.years = {1901, 1902}, .latitudes = {-90, 90}, .longitudes = {0, 20}});
  const auto declined_with = [&](std::size_t place, char byte) {
    std::string broken = text;
    broken[place] = byte;
    write_file("grid", broken);
    return read_fast(all) == std::nullopt;
  };
  EXPECT_FALSE(declined_with(0, ' '));
  EXPECT_TRUE(declined_with(0, '\n'));
  EXPECT_TRUE(declined_with(text.size() - 1, ' '));
  EXPECT_TRUE(declined_with(text.size() - 3602, ' '));
  EXPECT_TRUE(declined_with(text.size() - 2, '\n'));
}

TEST(RegularReader, DeclinesBrokenLineEndingsWhereNoRowIsRequested) {
  const TemporaryFolder folder;
  const BlockRequest nothing = request_of(
      {.years = {1902, 1902}, .latitudes = {-20, -20}, .longitudes = {0, 20}});
  ASSERT_GT(nothing.ranges.FirstRow, nothing.ranges.LastRow);
  std::string text = regular_grid().text();
  write_file("grid", text);
  EXPECT_NE(read_fast(nothing), std::nullopt);
  text[GridText::line_index(1902, 12, 1) * 3601 + 100] = '\n';
  write_file("grid", text);
  EXPECT_EQ(read_fast(nothing), std::nullopt);
}

TEST(RegularReader, DeclinesCarriageReturnsWithoutALineFeed) {
  const TemporaryFolder folder;
  GridText grid = regular_grid();
  grid.end_lines_with_crlf();
  const std::string text = grid.text();
  const BlockRequest request = request_of(
      {.years = {1901, 1901}, .latitudes = {-40, -30}, .longitudes = {0, 20}});
  for (const std::size_t character : {3600U, 3601U}) {
    std::string broken = text;
    broken[GridText::line_index(1901, 5, 110) * 3602 + character] = ' ';
    write_file("grid", broken);
    EXPECT_EQ(read_fast(request), std::nullopt) << character;
  }
}

TEST(RegularReader, DeclinesBrokenLineEndingsOfRequestedLines) {
  const TemporaryFolder folder;
  const std::string text = regular_grid().text();
  const BlockRequest request = request_of({.years = {1902, 1902},
                                           .latitudes = {-40, -30},
                                           .longitudes = {0, 20}});  // rows 101..120
  const auto declined_with = [&](int month, int row, std::size_t character, char byte) {
    std::string broken = text;
    broken[GridText::line_index(1902, month, row) * 3601 + character] = byte;
    write_file("grid", broken);
    return read_fast(request) == std::nullopt;
  };
  EXPECT_TRUE(declined_with(3, 101, 3600, ' '));
  EXPECT_TRUE(declined_with(3, 100, 3600, ' '));
  EXPECT_TRUE(declined_with(3, 120, 3600, ' '));
  EXPECT_TRUE(declined_with(3, 110, 0, '\n'));
  EXPECT_TRUE(declined_with(3, 110, 3599, '\n'));
  EXPECT_TRUE(declined_with(1, 110, 0, '\n'));
  EXPECT_TRUE(declined_with(3, 110, 1800, 'x'));
  EXPECT_FALSE(declined_with(3, 121, 3600, ' '));
  EXPECT_FALSE(declined_with(1, 1, 3600, ' '));
  EXPECT_FALSE(declined_with(3, 110, 0, 'x'));
}

TEST(RegularReader, DeclinesBrokenLineEndingsOfTheFirstLineOfSkippedMonths) {
  const TemporaryFolder folder;
  const std::string text = regular_grid().text();
  const BlockRequest request = request_of(
      {.years = {1902, 1902}, .latitudes = {-40, -30}, .longitudes = {0, 20}});
  for (const int month : {1, 7, 12}) {
    for (const std::size_t character : {0U, 1800U, 3600U}) {
      std::string broken = text;
      broken[GridText::line_index(1901, month, 1) * 3601 + character] =
          character == 3600 ? ' ' : '\n';
      write_file("grid", broken);
      EXPECT_EQ(read_fast(request), std::nullopt) << month << " " << character;
    }
  }
}

TEST(RegularReader, DeclinesWhatIsNotARegularFile) {
  const TemporaryFolder folder;
  for (const char* const name : {"/dev/null", "/dev/zero"}) {
    const GridFile device(name);
    EXPECT_FALSE(read_regular(device, request_of({.years = {1901, 1901},
                                                  .latitudes = {-40, -30},
                                                  .longitudes = {0, 20}}))
                     .has_value());
  }
}

TEST(RegularReader, DeclinesABadFieldOfALaterMonthInACellWithData) {
  const TemporaryFolder folder;
  const BlockRequest request = request_of(
      {.years = {1902, 1902}, .latitudes = {-40, -30}, .longitudes = {0, 20}});
  GridText grid = regular_grid();
  grid.set_value(1902, 1, 110, 400, 5);
  grid.set_field(1902, 3, 110, 400, "  x 5");
  write_file("grid", grid.text());
  EXPECT_EQ(read_fast(request), std::nullopt);
  grid.set_field(1902, 3, 110, 400, "    5");
  write_file("grid", grid.text());
  EXPECT_NE(read_fast(request), std::nullopt);
}

// What the regular reader returns for a randomly damaged file must agree with the
// definition. Damage outside the requested lines that keeps the size and all line
// endings changes neither result.
TEST(RegularReader, AgreesOnRandomlyDamagedFiles) {
  const TemporaryFolder folder;
  write_file("grid", regular_grid().text());
  std::fstream grid("grid", std::ios::in | std::ios::out | std::ios::binary);
  const std::vector<BlockRequest> all = requests();
  std::mt19937 random(3);
  int taken = 0;
  for (int i = 0; i < 60; ++i) {
    const BlockRequest& request = all[random() % all.size()];
    // Mostly in a requested row. Elsewhere no newline is added or removed: that would
    // change the meaning of the file undetected, which is documented.
    const std::int32_t row = std::clamp(
        request.ranges.FirstRow + static_cast<std::int32_t>(random() % 20), 1, 360);
    const bool requested =
        request.ranges.FirstRow <= row && row <= request.ranges.LastRow;
    const int year = request.years.FYOD;
    const int month = static_cast<int>(random() % 12) + 1;
    const auto place = static_cast<std::streamoff>(
        GridText::line_index(year, month, row) * 3601 + random() % 3600);
    const std::string bytes = requested ? "\n\r x-+7" : "\r x-+7";
    char before = 0;
    grid.seekg(place).get(before);
    grid.seekp(place).put(bytes[random() % bytes.size()]).flush();
    const std::optional<plain::Block> fast = read_fast(request);
    if (fast) {
      ++taken;
      ASSERT_EQ(*fast, read_plainly(request)) << "damage at " << place;
    }
    grid.seekp(place).put(before).flush();
  }
  EXPECT_GT(taken, 5);
  EXPECT_LT(taken, 60);
}

}  // namespace
}  // namespace veldmark
