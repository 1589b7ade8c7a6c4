#include "support/same_text.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace veldmark::testing {
namespace {

std::string visible(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string shown;
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (character == ' ') {
      shown += "·";
    } else if (character == '\n') {
      shown += "\\n";
    } else if (code < 32 || code > 126) {
      shown += {'\\', 'x', kDigits[code / 16], kDigits[code % 16]};
    } else {
      shown += character;
    }
  }
  return shown;
}

// Returns the part around `at` of the line that starts at `begin`, with its newline.
std::string line_about(std::string_view text, std::size_t begin, std::size_t at) {
  constexpr std::size_t kAround = 200;
  if (begin >= text.size()) {
    return "(nothing)";
  }
  const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
  const std::size_t first = std::max(begin, at - std::min(at, kAround));
  return visible(text.substr(first, std::min(end, at + kAround) - first));
}

}  // namespace

::testing::AssertionResult same_text(std::string_view actual,
                                     std::string_view expected) {
  if (actual == expected) {
    return ::testing::AssertionSuccess();
  }
  const auto pair =
      std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
  const auto at = static_cast<std::size_t>(pair.first - actual.begin());
  const std::string_view same = actual.substr(0, at);
  const std::size_t begin = same.rfind('\n') + 1;  // npos + 1 is 0
  return ::testing::AssertionFailure()
         << "differs in line " << std::count(same.begin(), same.end(), '\n') + 1
         << ", column " << at - begin + 1 << "\nexpected "
         << line_about(expected, begin, at) << "\n     got "
         << line_about(actual, begin, at);
}

}  // namespace veldmark::testing
