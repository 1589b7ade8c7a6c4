#include "tersify/grid_check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "companion/digits.h"
#include "tersify/character_masks.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

using companion::LineBuffer;

// The most fields that fit in one block of 64 characters.
constexpr std::int32_t kFieldsAtATime = 12;
constexpr std::size_t kCharactersAtATime = kFieldsAtATime * kFieldWidth;
constexpr std::uint64_t kAllCharacters = (std::uint64_t{1} << kCharactersAtATime) - 1;
constexpr std::uint64_t kLastCharacters = [] {
  std::uint64_t last = 0;
  for (std::size_t i = kFieldWidth - 1; i < kCharactersAtATime; i += kFieldWidth) {
    last |= std::uint64_t{1} << i;
  }
  return last;
}();

bool is_good_field(std::string_view field) {
  field.remove_prefix(std::min(field.find_first_not_of(' '), field.size()));
  if (field.starts_with('+') || field.starts_with('-')) {
    field.remove_prefix(1);
  }
  return companion::is_number(field);
}

std::optional<std::string> fault_of_line(const LineBuffer::Line& line,
                                         const GridShape& shape) {
  const std::string_view text = line.text.substr(0, shape.line_length());
  const std::int32_t good = count_good_fields(text);
  const std::string column = ", column " + std::to_string(good + 1) + ": ";
  const std::size_t good_length = static_cast<std::size_t>(good) * kFieldWidth;
  if (text.size() - good_length >= kFieldWidth) {
    return column + in_quotes(text.substr(good_length, kFieldWidth), kShownOfField) +
           " is not an integer that ends at the right edge of its field";
  }
  if (line.text.size() == shape.line_length()) {
    return std::nullopt;
  }
  const std::string needed = std::to_string(shape.line_length()) + " characters";
  if (line.text.size() > text.size()) {
    return column + "the line has more than " + needed;
  }
  if (line.end == LineBuffer::End::kFileEnd) {
    return column + "the file ends in this line, after " + std::to_string(text.size()) +
           " of " + needed;
  }
  return column + "the line ends after " + std::to_string(text.size()) + " of " +
         needed;
}

// A file that exceeds the expected extent by less than a year has surplus lines; a
// longer one holds more years.
bool is_just_beyond(std::int64_t line, const GridShape& shape) {
  const std::int64_t beyond = line - shape.line_count();
  return 0 < beyond && beyond <= shape.lines_per_year();
}

std::string fault_of_too_many(const GridShape& shape) {
  const std::int64_t last = shape.line_count();
  return "line " + std::to_string(last + 1) +
         ": the file goes on after its last row, " + name_of_line(last, shape);
}

// Returns the fault of a file of `lines` valid lines; nullopt if the number is right.
std::optional<std::string> fault_of_end(std::int64_t lines, const GridShape& shape) {
  const std::int64_t year = shape.lines_per_year();
  const bool are_whole_years = lines != 0 && lines % year == 0;
  const bool are_too_few = shape.years_are_named && lines < shape.line_count();
  if (are_whole_years && !are_too_few) {
    return std::nullopt;
  }
  if (is_just_beyond(lines, shape)) {
    return fault_of_too_many(shape);
  }
  const std::int64_t all = std::max(shape.line_count(), (lines / year + 1) * year);
  std::string text = "the file ends after " + std::to_string(lines) + " of " +
                     std::to_string(all) + " lines; the next is " +
                     name_of_line(lines + 1, shape);
  if (are_whole_years) {
    text += "; its name says " + std::to_string(shape.years) + " years, and it holds " +
            std::to_string(lines / year);
  }
  return text;
}

}  // namespace

std::optional<std::string> find_fault(LineBuffer& lines, const GridShape& shape,
                                      const OnLine& on_line) {
  std::int64_t number = 0;
  while (const std::optional<LineBuffer::Line> line = lines.next()) {
    ++number;
    if (const auto fault = fault_of_line(*line, shape)) {
      return is_just_beyond(number, shape) ? fault_of_too_many(shape)
                                           : name_of_line(number, shape) + *fault;
    }
    if (on_line) {
      on_line(number, line->text);
    }
  }
  return fault_of_end(number, shape);
}

std::int32_t count_good_fields(std::string_view line) {
  std::int32_t count = 0;
  while (line.size() >= kCharactersAtATime && are_twelve_good_fields(line.data())) {
    line.remove_prefix(kCharactersAtATime);
    count += kFieldsAtATime;
  }
  // The next twelve fields contain a fault or a plus sign, or the line ends.
  while (line.size() >= kFieldWidth) {
    const std::string_view next =
        line.substr(0, std::min(kCharactersAtATime, line.size()));
    const std::int32_t good = count_good_fields_scalar(next);
    count += good;
    if (good < static_cast<std::int32_t>(next.size() / kFieldWidth)) {
      break;
    }
    line.remove_prefix(static_cast<std::size_t>(good) * kFieldWidth);
  }
  return count;
}

// In a valid field the last character is a digit, and each other character is a blank
// or is followed by a digit.
bool are_twelve_good_fields(const char* fields) {
  const CharacterMasks kinds = find_kinds(fields);
  const std::uint64_t known = kinds.blanks | kinds.minuses | kinds.digits;
  const std::uint64_t in_order = kinds.blanks | kinds.digits >> 1U;
  const std::uint64_t good =
      known & ((kLastCharacters & kinds.digits) | (~kLastCharacters & in_order));
  return (good & kAllCharacters) == kAllCharacters;
}

std::int32_t count_good_fields_scalar(std::string_view line) {
  std::int32_t count = 0;
  while (line.size() >= kFieldWidth && is_good_field(line.substr(0, kFieldWidth))) {
    line.remove_prefix(kFieldWidth);
    ++count;
  }
  return count;
}

}  // namespace veldmark::tersify
