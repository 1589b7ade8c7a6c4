#include "util/in_quotes.h"

#include <algorithm>
#include <array>

namespace veldmark {
namespace {

unsigned byte_at(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

// UTF-8 sequences by their first byte: the length, and the range of the second byte.
// That range is narrower where it keeps out overlong sequences, surrogates, values
// above U+10FFFF or control characters (U+0080 to U+009F).
struct Sequence {
  unsigned first_byte;
  unsigned last_first_byte;
  std::size_t length;
  unsigned second_byte;
  unsigned last_second_byte;
};

constexpr auto kSequences = std::to_array<Sequence>({{0xC2, 0xC2, 2, 0xA0, 0xBF},
                                                     {0xC3, 0xDF, 2, 0x80, 0xBF},
                                                     {0xE0, 0xE0, 3, 0xA0, 0xBF},
                                                     {0xE1, 0xEC, 3, 0x80, 0xBF},
                                                     {0xED, 0xED, 3, 0x80, 0x9F},
                                                     {0xEE, 0xEF, 3, 0x80, 0xBF},
                                                     {0xF0, 0xF0, 4, 0x90, 0xBF},
                                                     {0xF1, 0xF3, 4, 0x80, 0xBF},
                                                     {0xF4, 0xF4, 4, 0x80, 0x8F}});

bool is_between(unsigned value, unsigned first, unsigned last) {
  return first <= value && value <= last;
}

// Returns the length in bytes of the character that `text` starts with; 0 if that is
// not a printable character. Requires a non-empty `text`.
std::size_t printable_length(std::string_view text) {
  const unsigned first = byte_at(text, 0);
  if (is_between(first, ' ', '~')) {
    return 1;
  }
  const auto* const found =
      std::find_if(kSequences.begin(), kSequences.end(), [&](const Sequence& sequence) {
        return is_between(first, sequence.first_byte, sequence.last_first_byte);
      });
  if (found == kSequences.end() || text.size() < found->length ||
      !is_between(byte_at(text, 1), found->second_byte, found->last_second_byte)) {
    return 0;
  }
  for (std::size_t i = 2; i < found->length; ++i) {
    if (!is_between(byte_at(text, i), 0x80, 0xBF)) {
      return 0;
    }
  }
  return found->length;
}

}  // namespace

std::string in_quotes(std::string_view text, std::size_t max_characters) {
  std::string shown = "'";
  for (std::size_t count = 0; !text.empty() && count < max_characters; ++count) {
    const std::size_t length = printable_length(text);
    shown += length == 0 ? std::string_view("?") : text.substr(0, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return shown + (text.empty() ? "'" : "...'");
}

}  // namespace veldmark
