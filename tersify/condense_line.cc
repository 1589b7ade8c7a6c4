#include "tersify/condense_line.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "companion/digits.h"
#include "tersify/character_masks.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

using EightCharacters = std::array<char, 8>;

constexpr std::uint64_t eight_of(char c) {
  return std::bit_cast<std::uint64_t>(EightCharacters{c, c, c, c, c, c, c, c});
}

constexpr std::uint64_t kBlanks = eight_of(' ');

// Entry n leaves out all but the last n of the first five characters, in either byte
// order. It selects the characters behind them, too.
constexpr std::array<std::uint64_t, kFieldWidth + 1> kLastOfFive = [] {
  std::array<std::uint64_t, kFieldWidth + 1> masks{};
  for (std::size_t count = 0; count <= kFieldWidth; ++count) {
    EightCharacters selected{};
    std::fill(selected.begin() + (kFieldWidth - count), selected.end(),
              static_cast<char>(0xFF));
    masks[count] = std::bit_cast<std::uint64_t>(selected);
  }
  return masks;
}();

// Finds the ends of a line's numbers, in blocks of 64 characters. The masks of each
// block are kept, as their highest bits carry over into the next block.
class NumberScanner {
 public:
  // Returns a mask of the characters that follow a number; nullopt if the block
  // contains anything but blanks and integers in their shortest form.
  //
  //   inside    mask of the block's characters that belong to the line
  std::optional<std::uint64_t> find_ends(const CharacterMasks& kinds,
                                         std::uint64_t inside) {
    const std::uint64_t digits = kinds.digits & inside;
    const std::uint64_t minuses = kinds.minuses & inside;
    const std::uint64_t words = digits | minuses;
    const std::uint64_t after_word = words << 1U | words_ >> 63U;
    const std::uint64_t after_minus = minuses << 1U | minuses_ >> 63U;
    const std::uint64_t starts = words & ~after_word;
    const std::uint64_t leading_zeros = kinds.zeros & starts;
    const std::uint64_t after_zero = leading_zeros << 1U | leading_zeros_ >> 63U;

    // The last of two, four and six consecutive characters of a number.
    const std::uint64_t twos = words & after_word;
    const std::uint64_t fours = twos & (twos << 2U | twos_ >> 62U);
    const std::uint64_t sixes = fours & (twos << 4U | twos_ >> 60U);

    const std::uint64_t unknown = inside & ~(words | kinds.blanks);
    const std::uint64_t minus_inside = minuses & ~starts;
    const std::uint64_t minus_alone = after_minus & ~digits;
    const std::uint64_t zero_too_many =
        (kinds.zeros & after_minus) | (digits & after_zero);
    words_ = words;
    minuses_ = minuses;
    leading_zeros_ = leading_zeros;
    twos_ = twos;
    if ((unknown | minus_inside | minus_alone | zero_too_many | sixes) != 0) {
      return std::nullopt;
    }
    return after_word & ~words;
  }

 private:
  std::uint64_t words_{};
  std::uint64_t minuses_{};
  std::uint64_t leading_zeros_{};
  std::uint64_t twos_{};
};

bool is_separator(char c) { return c == ' ' || c == '\t'; }

// Removes the next word from the front of `line` and returns it; empty at the end.
std::string_view take_word(std::string_view& line) {
  const auto* const begin = std::find_if_not(line.begin(), line.end(), is_separator);
  const auto* const end = std::find_if(begin, line.end(), is_separator);
  line = {end, line.end()};
  return {begin, end};
}

// Returns the shortest text of an integer; "" if `word` is not an integer.
std::string shortest_text(std::string_view word) {
  const bool negative = word.starts_with('-');
  if (negative || word.starts_with('+')) {
    word.remove_prefix(1);
  }
  if (!companion::is_number(word)) {
    return "";
  }
  word.remove_prefix(std::min(word.find_first_not_of('0'), word.size() - 1));
  return (negative && word != "0" ? "-" : "") + std::string(word);
}

}  // namespace

std::optional<LineFault> condense_line(std::string_view line, char* output) {
  return condense_line_fast(line, output) ? std::nullopt
                                          : condense_line_by_fields(line, output);
}

// Copies the five characters that end with a number, and masks out those of the
// number's left neighbour: no loop over characters, and no branch on a number's length.
bool condense_line_fast(std::string_view line, char* output) {
  NumberScanner numbers;
  const char* const complete = output + kCondensedLine;
  std::size_t last_end = 0;
  // `<=`: a number that fills the last block ends in the next one.
  for (std::size_t begin = 0; begin <= line.size(); begin += kMaskedCharacters) {
    const std::size_t left = line.size() - begin;
    const std::uint64_t inside =
        left < kMaskedCharacters ? (std::uint64_t{1} << left) - 1 : ~std::uint64_t{0};
    std::optional<std::uint64_t> ends =
        numbers.find_ends(find_kinds(line.data() + begin), inside);
    if (!ends) {
      return false;
    }
    for (; *ends != 0; *ends &= *ends - 1) {
      const std::size_t end = begin + static_cast<std::size_t>(std::countr_zero(*ends));
      const std::size_t own = std::min(end - last_end, kFieldWidth);
      std::uint64_t text = 0;
      std::memcpy(&text, line.data() + end - kFieldWidth, sizeof(text));
      text = (text & kLastOfFive[own]) | (kBlanks & ~kLastOfFive[own]);
      std::memcpy(output, &text, sizeof(text));
      output += kFieldWidth;
      last_end = end;
    }
    if (output > complete) {
      return false;
    }
  }
  return output == complete;
}

std::optional<LineFault> condense_line_by_fields(std::string_view line, char* output) {
  for (std::int32_t field = 1; field <= kGridColumns; ++field) {
    const std::string_view word = take_word(line);
    if (word.empty()) {
      if (field == 1) {
        return LineFault{field, "the line is empty"};
      }
      return LineFault{field, "the line ends before it; a line holds 720 integers"};
    }
    const std::string text = shortest_text(word);
    if (text.empty()) {
      return LineFault{field, in_quotes(word, kShownOfField) + " is not an integer"};
    }
    if (text.size() > kFieldWidth) {
      return LineFault{
          field, in_quotes(word, kShownOfField) + " needs more than five characters"};
    }
    output = std::fill_n(output, kFieldWidth - text.size(), ' ');
    output = std::copy(text.begin(), text.end(), output);
  }
  if (const std::string_view word = take_word(line); !word.empty()) {
    return LineFault{kGridColumns + 1, in_quotes(word, kShownOfField) +
                                           " is too many; a line holds 720 integers"};
  }
  return std::nullopt;
}

}  // namespace veldmark::tersify
