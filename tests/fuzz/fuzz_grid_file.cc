// Reads the block of a search from an edited data file.
//
// The input is a search and a script of edits. Half of the files are regular ones of
// full size: there the regular reader must give what the line-by-line reader gives, or
// decline. The others hold full lines for the requested rows only, and read_block must
// give what a plain reading of the text gives.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "catalogue/line_by_line_reader.h"
#include "catalogue/read_block.h"
#include "catalogue/read_fault.h"
#include "catalogue/regular_reader.h"
#include "catalogue/row_format.h"
#include "data_files.h"
#include "fuzz_input.h"
#include "reached.h"
#include "require.h"
#include "search_of_input.h"
#include "support/block_of.h"
#include "support/plain/reading.h"

namespace veldmark::fuzz {
namespace {

using testing::block_of;
using testing::block_of_reading;

constexpr int kTallest = 10;  // eighths of a degree: at most four rows
constexpr std::size_t kMostEdits = 16;

// --- Regular files of full size

// The number of years of a file, up to the last requested one.
int years_of_file(const BlockRequest& request) {
  return request.years.LYOD - kFirstDataYear + 1;
}

// Returns whether the regular reader promises to check this line: all requested lines,
// and the first line of every other month up to the last requested one.
bool is_looked_at(std::int64_t line, const BlockRequest& request) {
  const std::int64_t first = request.years.SkipLines();
  if (line < 0 || line >= first + request.years.YearCount() * kLinesPerYear) {
    return false;
  }
  const auto row = static_cast<std::int32_t>(line % kGridRows) + 1;
  const GridRanges& ranges = request.ranges;
  const bool none = std::max(ranges.FirstRow, 1) > ranges.LastRow;
  if (line < first || none) return row == 1;
  return ranges.FirstRow <= row && row <= ranges.LastRow;
}

// Returns an offset in a line, often a critical one: near its end, or near the first or
// last requested field.
int place_on_line(FuzzInput& input, const GridRanges& ranges) {
  constexpr int kEnd = static_cast<int>(kLineLength);
  const int kind = input.byte();
  const int step = kind / 4 % 16;
  switch (kind % 4) {
    case 0:
      return input.between(0, kEnd + 1);
    case 1:
      return kEnd - 6 + step / 2;
    case 2:
      return std::max(5 * ranges.FirstCol - 12 + step, 0);
    default:
      return std::max(5 * ranges.LastCol - 8 + step, 0);
  }
}

// Returns a character, often a critical one.
char character_of(FuzzInput& input) {
  constexpr std::string_view kCharacters = " \n\r\t-+09x";
  const std::uint8_t byte = input.byte();
  if (byte < 192) return kCharacters[byte % kCharacters.size()];
  return static_cast<char>(input.byte());
}

// Overwrites one character near the requested rows. In lines that the reader doesn't
// check, line ends are neither added nor removed: the reader need not notice that,
// which is documented.
void edit_character(FuzzInput& input, const BlockRequest& request, RegularFile& file) {
  const std::int64_t month = input.between(0, 12 * years_of_file(request) - 1);
  const std::uint8_t row_kind = input.byte();
  const std::int64_t row = row_kind % 4 == 3
                               ? input.between(1, kGridRows)
                               : request.ranges.FirstRow + row_kind / 4 % 8 - 1;
  const std::int64_t line = month * kGridRows + row - 1;
  const std::int64_t place =
      line * file.line_size() + place_on_line(input, request.ranges);
  const char character = character_of(input);
  if (place < 0 || place >= file.size()) return;
  const bool is_end = place % file.line_size() >= static_cast<int>(kLineLength);
  const bool looked_at =
      is_looked_at(place / file.line_size(), request) ||
      (is_end && is_looked_at(place / file.line_size() + 1, request));
  if (!looked_at && (character == '\n' || file.character(place) == '\n')) return;
  file.put(place, character);
}

// Adds or removes whole lines, and overwrites a few characters.
void edit_size(FuzzInput& input, RegularFile& file) {
  const std::int64_t lines = input.between(-static_cast<int>(file.kMostCut) + 1, 2);
  const bool few = input.flag();
  const std::int64_t characters = few ? input.byte() % 9 - 4 : input.between(0, 3600);
  file.resize(file.size() + lines * file.line_size() + characters);
}

void edit_regular_file(FuzzInput& input, const BlockRequest& request,
                       RegularFile& file) {
  for (std::size_t i = 0; i < kMostEdits && !input.empty(); ++i) {
    if (input.byte() % 16 == 15) {
      edit_size(input, file);
    } else {
      edit_character(input, request, file);
    }
  }
}

void check_regular(const std::string& name, const BlockRequest& request) {
  const GridFile file(name);
  const std::optional<GridValues> fast = read_regular(file, request);
  reached(fast ? "regular files" : "files that are not regular");
  if (!fast) return;  // read_block then reads line by line, as the definition does
  const plain::Block defined =
      block_of_reading([&] { return read_line_by_line(file, request); });
  require(block_of(*fast) == defined, "the regular reader gives what the file means",
          defined.end);
}

// --- Files of any shape

// A limit on the full lines of each month, to save time.
constexpr std::int64_t kMostFullRows = 8;

// The lines of a file, each with its end; lines outside the request are empty.
std::vector<std::string> lines_of_file(const BlockRequest& request, bool crlf) {
  const std::string line_end = crlf ? "\r\n" : "\n";
  std::vector<std::string> lines;
  for (std::int64_t number = 0; number < years_of_file(request) * kLinesPerYear;
       ++number) {
    const std::int64_t row = number % kGridRows + 1;
    const std::int64_t place = row - std::max(request.ranges.FirstRow, 1);
    const bool wanted =
        0 <= place && place < kMostFullRows && row <= request.ranges.LastRow;
    lines.push_back((wanted ? usual_line(number) : "") + line_end);
  }
  return lines;
}

void edit_line(FuzzInput& input, const GridRanges& ranges, std::string& line) {
  const auto place =
      std::min(static_cast<std::size_t>(place_on_line(input, ranges)), line.size());
  const std::uint8_t kind = input.byte();
  if (kind % 8 < 3) {
    line.replace(place, 1, 1, character_of(input));
  } else if (kind % 8 == 3) {
    const std::string text = input.text(kind / 8U);
    line.replace(place, text.size(), text);
  } else if (kind % 8 == 4) {
    line.insert(place, input.text(kind / 8U));
  } else if (kind % 8 == 5) {
    line.erase(place, 1U + kind / 8U);
  } else if (kind % 8 == 6) {
    line = input.text(kind / 8U);
  } else {
    line.insert(line.begin() + static_cast<std::ptrdiff_t>(place),
                static_cast<std::size_t>(kind) * 32, '5');
  }
}

// Positions at which a line can straddle two reads of the file.
struct PieceEnd {
  std::size_t line;
  std::size_t place;
};

// Returns a requested line or another one; `kind` chooses the row.
std::size_t line_near(FuzzInput& input, const BlockRequest& request,
                      std::uint8_t kind) {
  const int month = input.between(0, 12 * years_of_file(request) - 1);
  const int row = kind % 2 == 0 ? request.ranges.FirstRow + kind / 2 % 8 - 1
                                : input.between(1, kGridRows);
  return static_cast<std::size_t>(month * kGridRows + std::clamp(row, 1, kGridRows) -
                                  1);
}

PieceEnd piece_end_of(FuzzInput& input, const BlockRequest& request) {
  const std::size_t line = line_near(input, request, input.byte());
  return {line, static_cast<std::size_t>(place_on_line(input, request.ranges))};
}

// Makes the first line so long that a read ends at `end`. Files are read 256 KiB at a
// time.
void lengthen_first_line(std::vector<std::string>& lines, const PieceEnd& end) {
  constexpr std::size_t kPiece = std::size_t{256} * 1024;
  std::size_t before = end.place;
  for (std::size_t i = 0; i < end.line; ++i) before += lines[i].size();
  if (before < kPiece) lines[0].insert(0, kPiece - before, ' ');
}

// Returns the lines up to the cut, if the file is cut.
std::size_t edit_lines(FuzzInput& input, const BlockRequest& request,
                       std::vector<std::string>& lines) {
  std::size_t count = lines.size();
  for (std::size_t i = 0; i < kMostEdits && !input.empty(); ++i) {
    const std::uint8_t kind = input.byte();
    const std::size_t number = line_near(input, request, kind);
    std::string& line = lines[number];
    if (kind < 240) {
      edit_line(input, request.ranges, line);
    } else {
      const int place = place_on_line(input, request.ranges);
      line.resize(std::min(line.size(), static_cast<std::size_t>(place)));
      count = number + 1;
    }
  }
  return count;
}

std::string edited_text(FuzzInput& input, const BlockRequest& request) {
  const std::uint8_t kind = input.byte();
  std::vector<std::string> lines = lines_of_file(request, kind % 2 != 0);
  const bool in_two_pieces = kind / 2 % 2 != 0;
  const PieceEnd end = in_two_pieces ? piece_end_of(input, request) : PieceEnd{};
  const std::size_t count = edit_lines(input, request, lines);
  if (in_two_pieces) lengthen_first_line(lines, end);
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += lines[i];
  return text;
}

void check_any_shape(const std::string& text, const BlockRequest& request) {
  static const MemoryFile file;
  file.resize(0);
  file.write(0, text);
  const plain::Block block =
      block_of_reading([&] { return read_block(GridFile(file.name()), request); });
  const plain::Block expected = plain::Reading(text, request).block();
  const std::size_t number = expected.end.find_first_of("0123456789");
  reached(expected.end.substr(0, std::min(number, expected.end.size() + 1) - 1));
  for (const auto& [place, series] : expected.cells) {
    reached("values read", series.size());
  }
  require(block.end == expected.end, "a reading ends as the description has it",
          block.end + " / " + expected.end);
  require(block == expected, "a block holds what the description has it hold");
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veldmark::fuzz;  // NOLINT
  FuzzInput input(data, size);
  const std::uint8_t kind = input.byte();
  veldmark::BlockRequest request;
  request.ranges = ranges_of(input, kTallest);
  request.MissingCode = input.flag() ? -9999 : -999;
  request.years = {.FYOD = 1901, .LYOD = 1901};
  if (kind % 4 >= 2) {
    request.years.FYOD += kind / 4 % 8 == 6 ? 1 : 0;
    request.years.LYOD += kind / 4 % 8 >= 6 ? 1 : 0;
    check_any_shape(edited_text(input, request), request);
    return 0;
  }
  static RegularFile two_years(2, "\n");
  static RegularFile with_carriage_returns(1, "\r\n");
  if (kind % 4 == 0) {
    request.years.FYOD += kind / 4 % 4 == 3 ? 1 : 0;
    request.years.LYOD += kind / 4 % 4 >= 2 ? 1 : 0;
  }
  RegularFile& file = kind % 4 == 0 ? two_years : with_carriage_returns;
  edit_regular_file(input, request, file);
  check_regular(file.name(), request);
  file.take_edits_back();
  return 0;
}
