// Searches in files of all 116 years, at the edges of time and space. The files have
// full size, but only the lines that a search reads are written; the rest are holes,
// which take no disk space. Each value identifies its year, month, row and column.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support/grid_text.h"
#include "support/series.h"
#include "support/session.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

constexpr int kFirstYear = 1901;
constexpr int kLastYear = 2016;
constexpr int kRows = 360;
constexpr int kColumns = 720;

// Returns a value of 0..32748, a prime number of values: it changes if only the month
// (counted from January 1901), only the row or only the column changes.
int value_of(int year, int month, int row, int column) {
  const int months = (year - kFirstYear) * 12 + month - 1;
  return (months * 20011 + row * 9973 + column * 31) % 32749;
}

std::string line_of(int year, int month, int row) {
  std::string line;
  for (int column = 1; column <= kColumns; ++column) {
    const std::string digits = std::to_string(value_of(year, month, row, column));
    line += std::string(5 - digits.size(), ' ') + digits;
  }
  return line;
}

// Returns the number of different values among the positions 1..count of one direction.
std::size_t different(int count, const std::function<int(int)>& value) {
  std::set<int> values;
  for (int place = 1; place <= count; ++place) {
    values.insert(value(place));
  }
  EXPECT_GE(*values.begin(), 0);
  EXPECT_LE(*values.rbegin(), 32767);
  return values.size();
}

TEST(WholeFile, ValuesDifferInEveryDirection) {
  for (const int row : {1, 73, 360}) {
    EXPECT_EQ(
        different(720, [&](int column) { return value_of(2016, 12, row, column); }),
        720U);
    EXPECT_EQ(different(116 * 12,
                        [&](int months) {
                          return value_of(1901 + (months - 1) / 12,
                                          (months - 1) % 12 + 1, row, 720);
                        }),
              1392U);
  }
  EXPECT_EQ(different(360, [](int row) { return value_of(1901, 1, row, 1); }), 360U);
}

struct Shape {
  std::string_view line_end;
  bool ends_with_line_end;
};

constexpr std::array<Shape, 4> kShapes{
    {{"\n", true}, {"\n", false}, {"\r\n", true}, {"\r\n", false}}};

// A regular file of full size in which only some lines are written.
class SparseFile {
 public:
  SparseFile(const std::string& name, const Shape& shape)
      : shape_(shape), file_(name, std::ios::binary) {
    const std::string blank(3600, ' ');
    for (int year = kFirstYear; year <= kLastYear; ++year) {
      for (int month = 1; month <= 12; ++month) {
        write(year, month, 1, blank);
      }
    }
    std::size_t size = GridText::line_index(kLastYear + 1, 1, 1) * line_size();
    if (!shape_.ends_with_line_end) {
      size -= shape_.line_end.size();
    }
    file_.flush();
    std::filesystem::resize_file(name, size);
  }

  // Writes a line with its line ending, and the line ending of the line before.
  void write(int year, int month, int row, const std::string& text) {
    const std::size_t index = GridText::line_index(year, month, row);
    const std::string end(shape_.line_end);
    const bool first = index == 0;
    const bool last = index + 1 == GridText::line_index(kLastYear + 1, 1, 1);
    file_.seekp(
        static_cast<std::streamoff>(index * line_size() - (first ? 0 : end.size())));
    file_ << (first ? "" : end) << text
          << (last && !shape_.ends_with_line_end ? "" : end);
  }

  void flush() { file_.flush(); }

 private:
  [[nodiscard]] std::size_t line_size() const { return 3600 + shape_.line_end.size(); }

  Shape shape_;
  std::ofstream file_;
};

struct Range {
  int first;
  int last;
};

constexpr std::array<Range, 6> kYears{{{1901, 1901},
                                       {1901, 1902},
                                       {1970, 1970},
                                       {1999, 2001},
                                       {2000, 2000},
                                       {2016, 2016}}};
constexpr std::array<Range, 3> kRowRanges{{{1, 2}, {72, 73}, {359, 360}}};
constexpr std::array<Range, 2> kColumnRanges{{{1, 2}, {719, 720}}};

// Calls `use` with every month and row that one of the searches requests.
void for_each_requested_line(const std::function<void(int, int, int)>& use) {
  std::set<int> all_years;
  for (const Range& years : kYears) {
    for (int year = years.first; year <= years.last; ++year) {
      all_years.insert(year);
    }
  }
  for (const int year : all_years) {
    for (int month = 1; month <= 12; ++month) {
      for (const Range& rows : kRowRanges) {
        use(year, month, rows.first);
        use(year, month, rows.last);
      }
    }
  }
}

// Returns the southern (western) edge of a row (column), with the decimal point that an
// answer needs.
std::string edge(double begin, int place) {
  const int tenths = static_cast<int>(begin * 10) + 5 * (place - 1);
  const int size = tenths < 0 ? -tenths : tenths;
  return (tenths < 0 ? "-" : "") + std::to_string(size / 10) + "." +
         std::to_string(size % 10);
}

// Searches a box and compares the saved values.
void expect_search(const Range& years, const Range& rows, const Range& columns) {
  const SessionResult result =
      run_session({"", "", "1", "", "", edge(-90, rows.last + 1), edge(-90, rows.first),
                   edge(-180, columns.last + 1), edge(-180, columns.first), "T",
                   std::to_string(years.first), std::to_string(years.last), "T", "1",
                   "y", "F", "F"});
  ASSERT_EQ(result.status, 0) << result.errors << result.output;
  SeriesByPlace expected;
  for (int row = rows.first; row <= rows.last; ++row) {
    for (int column = columns.first; column <= columns.last; ++column) {
      auto& series = expected[{-17975 + 50 * (column - 1), -8975 + 50 * (row - 1)}];
      for (int year = years.first; year <= years.last; ++year) {
        for (int month = 1; month <= 12; ++month) {
          series.push_back(value_of(year, month, row, column));
        }
      }
    }
  }
  const std::string output = file_content(data_file_name("pre") + ".TSF");
  EXPECT_EQ(read_time_series(output, years.first), expected)
      << years.first << "-" << years.last << ", rows from " << rows.first;
}

void expect_all_searches() {
  for (const Range& years : kYears) {
    for (const Range& rows : kRowRanges) {
      for (const Range& columns : kColumnRanges) {
        expect_search(years, rows, columns);
      }
    }
  }
}

class RegularWholeFile : public ::testing::TestWithParam<Shape> {};

TEST_P(RegularWholeFile, ReadsItsFirstAndLastYears) {
  const TemporaryFolder folder;
  SparseFile file(data_file_name("pre"), GetParam());
  for_each_requested_line([&](int year, int month, int row) {
    file.write(year, month, row, line_of(year, month, row));
  });
  file.flush();
  expect_all_searches();
}

INSTANTIATE_TEST_SUITE_P(LineEnds, RegularWholeFile, ::testing::ValuesIn(kShapes),
                         [](const ::testing::TestParamInfo<Shape>& shape) {
                           const std::string end =
                               shape.param.line_end == "\n" ? "LF" : "CRLF";
                           return end + (shape.param.ends_with_line_end
                                             ? ""
                                             : "WithoutTheLast");
                         });

// A file that is not regular is read line by line.
TEST(WholeFile, ReadsItsFirstAndLastYearsLineByLine) {
  const TemporaryFolder folder;
  GridText grid(kLastYear, 0, 0, 0);
  for_each_requested_line([&](int year, int month, int row) {
    grid.set_line(year, month, row, line_of(year, month, row));
  });
  write_file(data_file_name("pre"), grid.text());
  expect_all_searches();
}

}  // namespace
}  // namespace veldmark::testing
