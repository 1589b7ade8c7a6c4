// Compares reading a block from whole grid files with a plain reader, which splits the
// text into lines and has no fast path.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/line_by_line_reader.h"
#include "catalogue/read_block.h"
#include "catalogue/read_fault.h"
#include "catalogue/row_format.h"
#include "support/block_of.h"
#include "support/grid_text.h"
#include "support/plain/fields.h"
#include "support/plain/reading.h"
#include "support/sweep.h"
#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::block_of_reading;
using testing::GridText;
using testing::record_cases;
using testing::TemporaryFolder;
using testing::write_file;

constexpr std::int32_t kMissing = -999;

// Both readers must agree with the plain one.
void expect_plain(std::string_view text, const BlockRequest& request) {
  const plain::Block expected = plain::Reading(text, request).block();
  const auto by = [&](auto read) {
    return block_of_reading([&] { return read(GridFile("grid"), request); });
  };
  ASSERT_EQ(by(read_line_by_line), expected) << text.size() << " bytes";
  ASSERT_EQ(by(read_block), expected) << text.size() << " bytes";
}

// The first and the last of each, both included.
struct Search {
  YearSpan years;
  struct {
    std::int32_t first;
    std::int32_t last;
  } rows, columns;
};

BlockRequest request_of(const Search& search) {
  return {.years = search.years,
          .ranges = {.FirstRow = search.rows.first,
                     .LastRow = search.rows.last,
                     .FirstCol = search.columns.first,
                     .LastCol = search.columns.last},
          .MissingCode = kMissing};
}

// Truncates the file "grid", which contains `text`, byte by byte down to `shortest`
// bytes and compares each time. Returns the number of comparisons.
std::size_t expect_plain_wherever_cut(std::string_view text, std::size_t shortest,
                                      const BlockRequest& request) {
  write_file("grid", text);
  std::size_t cases = 0;
  for (std::size_t size = text.size() + 1; size > shortest; --size) {
    std::filesystem::resize_file("grid", size - 1);
    expect_plain(text.substr(0, size - 1), request);
    if (::testing::Test::HasFatalFailure()) {
      break;
    }
    ++cases;
  }
  return cases;
}

// Returns a file of one year with `requested` in the requested rows and empty lines
// elsewhere.
std::string small_file(const BlockRequest& request, const std::string& requested,
                       const std::string& line_end) {
  std::string text;
  for (int line = 0; line < 4320; ++line) {
    const std::int32_t row = line % 360 + 1;
    const bool is_requested =
        request.ranges.FirstRow <= row && row <= request.ranges.LastRow;
    text += (is_requested ? requested : "") + line_end;
  }
  return text;
}

TEST(BlockSweep, SmallFileCutAtEveryByte) {
  const TemporaryFolder folder;
  const BlockRequest request =
      request_of({.years = {1901, 1901}, .rows = {300, 301}, .columns = {2, 4}});
  record_cases(expect_plain_wherever_cut(
                   small_file(request, "  -12    1 -999   3", "\n"), 0, request),
               4'777);
}

TEST(BlockSweep, SmallFileWithCarriageReturnsCutAtEveryByteOfItsLastMonths) {
  const TemporaryFolder folder;
  const BlockRequest request =
      request_of({.years = {1901, 1901}, .rows = {359, 360}, .columns = {1, 2}});
  const std::string text = small_file(request, "  -12    1", "\r\n");
  record_cases(expect_plain_wherever_cut(text, text.size() - 3000, request), 3'001);
}

// The newline can be missing only after a last line of 3600 characters.
TEST(BlockSweep, FullLastLineCutAtEveryByte) {
  const TemporaryFolder folder;
  const BlockRequest request =
      request_of({.years = {1901, 1901}, .rows = {360, 360}, .columns = {1, 2}});
  std::string text = small_file(request, "  -12    1", "\n");
  text.pop_back();
  const std::string longest = text + std::string(3590, ' ') + "\r\n";
  const std::string too_short = text + std::string(3589, ' ') + "\r\n";
  record_cases(expect_plain_wherever_cut(longest, text.size() - 20, request) +
                   expect_plain_wherever_cut(too_short, too_short.size() - 20, request),
               3'634);
}

std::string random_field(std::mt19937& random) {
  const std::size_t kind = random() % 100;
  if (kind < 40) {
    return " -999";
  }
  std::string text;
  if (kind < 96) {
    text = std::to_string(static_cast<std::int32_t>(random() % 105000) - 5000);
    text.insert(0, 5 - std::min<std::size_t>(5, text.size()), ' ');
    return text.substr(0, 5);
  }
  while (text.size() < 5) {
    text += " \t+-0123456789"[random() % 14];
  }
  return plain::integer(text) ? text : "    0";
}

std::string random_fields(std::mt19937& random, std::size_t count) {
  std::string line;
  for (std::size_t field = 0; field < count; ++field) {
    line += random_field(random);
  }
  return line;
}

// How often a random file has each kind of fault, in lines per thousand.
struct Oddness {
  std::size_t carriage_returns;
  std::size_t longer;
  std::size_t text_between;
  std::size_t faults;
};

void put_fault(std::mt19937& random, std::string& line) {
  switch (random() % 3) {
    case 0:
      line.resize(random() % (line.size() + 1));
      break;
    case 1:
      line[random() % line.size()] = "x-+.\r\n"[random() % 6];
      break;
    default:
      line.insert(random() % line.size(), 1, " 7"[random() % 2]);
  }
}

// Returns a file with all years up to the last one of the request. Its lines are as
// long as required or longer; those that are not requested can be empty or hold other
// text. There can be faults, a line too many or too few, or an early end.
std::string random_file(std::mt19937& random, const BlockRequest& request) {
  const std::size_t often[] = {0, 0, 5, 300, 1000};
  const Oddness odd{often[random() % 5], often[random() % 5], often[random() % 5],
                    random() % 3 == 0 ? std::size_t{1} + random() % 40 : 0};
  const auto happens = [&](std::size_t of_thousand) {
    return random() % 1000 < of_thousand;
  };
  const auto fields = static_cast<std::size_t>(request.ranges.LastCol);
  const int lines = (request.years.LYOD - 1900) * 4320;
  std::string text;
  for (int index = 0; index < lines; ++index) {
    const std::int32_t row = index % 360 + 1;
    std::string line;
    if (request.ranges.FirstRow <= row && row <= request.ranges.LastRow) {
      line = random_fields(random, fields);
      if (happens(odd.longer)) {
        line += random_fields(random, random() % (740 - fields));
      }
      if (happens(odd.faults)) {
        put_fault(random, line);
      }
    } else if (happens(odd.text_between)) {
      line = "no field of any kind";
    }
    text += line + (happens(odd.carriage_returns) ? "\r\n" : "\n");
  }
  if (random() % 6 == 0) {
    text.resize(text.size() - std::min<std::size_t>(text.size(), random() % 3000));
  } else if (random() % 20 == 0) {
    text.insert(0, "\n");
  } else if (random() % 20 == 0) {
    text.erase(0, text.find('\n') + 1);
  }
  return text;
}

TEST(BlockSweep, RandomIrregularFiles) {
  const TemporaryFolder folder;
  std::mt19937 random(5);
  constexpr std::size_t kCases = 300;
  std::map<std::string, std::size_t> ends;
  for (std::size_t i = 0; i < kCases; ++i) {
    const auto below = [&](std::uint32_t bound) {
      return static_cast<std::int32_t>(random() % bound);
    };
    const std::int32_t FYOD = 1901 + (below(5) == 0 ? 1 : 0);
    const std::int32_t row = 1 + below(360);
    const std::int32_t column = below(20) == 0 ? 1 + below(715) : 1 + below(20);
    const BlockRequest request =
        request_of({.years = {FYOD, FYOD + (below(8) == 0 ? 1 : 0)},
                    .rows = {row, std::min(360, row + below(4))},
                    .columns = {column, column + below(6)}});
    const std::string text = random_file(random, request);
    write_file("grid", text);
    expect_plain(text, request);
    ASSERT_FALSE(HasFatalFailure()) << "file " << i;
    const std::string end = plain::Reading(text, request).block().end;
    ++ends[end.substr(0, end.find_first_of("0123456789"))];
  }
  EXPECT_EQ(ends.size(), 4U) << "every end is met";
  EXPECT_GT(ends["complete"], kCases / 3);
  record_cases(kCases, 300);
}

// Damages a regular file of one year in one place, compares, and repairs it; many
// times.
void damage_regular_file(const std::string& line_end, std::uint32_t seed,
                         std::size_t cases) {
  const TemporaryFolder folder;
  std::mt19937 random(seed);
  std::vector<std::string> lines;
  for (int i = 0; i < 24; ++i) {
    lines.push_back(random_fields(random, 720) + line_end);
  }
  std::string text;
  for (int index = 0; index < 4320; ++index) {
    text += lines[random() % lines.size()];
  }
  write_file("grid", text);
  std::fstream grid("grid", std::ios::in | std::ios::out | std::ios::binary);
  const std::size_t line_size = lines.front().size();
  for (std::size_t i = 0; i < cases; ++i) {
    const auto row = static_cast<std::int32_t>(1 + random() % 355);
    const auto column = static_cast<std::int32_t>(1 + random() % 700);
    const BlockRequest request = request_of(
        {.years = {1901, 1901},
         .rows = {row, row + 4},
         .columns = {column, column + static_cast<std::int32_t>(random() % 20)}});
    // Only in a requested line or its line endings: a newline added or removed
    // elsewhere is not detected, which is documented.
    const std::size_t line =
        random() % 12 * 360 + static_cast<std::size_t>(row) - 1 + random() % 5;
    const std::size_t in_line =
        random() % 3 == 0 ? 3600 + random() % line_end.size() : random() % line_size;
    const std::size_t place = line * line_size + in_line;
    const char before = text[place];
    const char damage = "\n\rx-+ 7\t"[random() % 8];
    const auto put = [&](char character) {
      text[place] = character;
      grid.seekp(static_cast<std::streamoff>(place)).put(character).flush();
    };
    put(damage);
    expect_plain(text, request);
    ASSERT_FALSE(::testing::Test::HasFatalFailure()) << "damage at " << place;
    put(before);
  }
  record_cases(cases, 60);
}

TEST(BlockSweep, DamagedRegularFiles) { damage_regular_file("\n", 6, 60); }

TEST(BlockSweep, DamagedRegularFilesWithCarriageReturns) {
  damage_regular_file("\r\n", 7, 60);
}

}  // namespace
}  // namespace veldmark
