#include "tersify/grid_content.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace veldmark::tersify {
namespace {

constexpr std::size_t kBits = 64;
constexpr std::string_view kMissing = " -999";
constexpr std::string_view kScpdsiMissing = "-9999";

// Rows of a whole grid that lie south of 60 degrees south.
constexpr std::int32_t kPolarRows = 60;

bool is_field(const char* field, const char* text) {
  return std::memcmp(field, text, kFieldWidth) == 0;
}

// Returns whether a row of a whole grid lies south of 60 degrees south.
bool is_polar(std::int32_t GridY, std::string_view missing) {
  return missing == kMissing ? GridY <= kPolarRows : GridY > kGridRows - kPolarRows;
}

}  // namespace

GridContent::GridContent(const GridShape& shape)
    : shape_(shape), row_(static_cast<std::size_t>(shape.columns) / kBits + 1) {}

void GridContent::add_line(std::int64_t line, std::string_view text) {
  if (line == 1) {
    const std::string_view first = text.substr(0, kFieldWidth);
    missing_ = first == kMissing || first == kScpdsiMissing ? first : "";
  }
  if (missing_.empty() || !other_cells_.empty()) {
    return;
  }
  find_values(text);
  if (line <= shape_.rows) {
    take_as_first(line);
  } else {
    compare_with_first(line);
  }
}

// Sets the bits of `row_`.
void GridContent::find_values(std::string_view text) {
  for (Word& word : row_) {
    const std::size_t fields = std::min(text.size() / kFieldWidth, kBits);
    word = 0;
    for (std::size_t i = 0; i < fields; ++i) {
      const bool has_value = !is_field(text.data() + i * kFieldWidth, missing_.data());
      word |= (has_value ? Word{1} : Word{0}) << i;
    }
    text.remove_prefix(fields * kFieldWidth);
  }
}

void GridContent::take_as_first(std::int64_t line) {
  first_month_.push_back(row_);
  const bool has_values =
      std::any_of(row_.begin(), row_.end(), [](Word word) { return word != 0; });
  if (has_values && wrong_order_.empty() && shape_.rows == kGridRows &&
      is_polar(static_cast<std::int32_t>(line), missing_)) {
    wrong_order_ = name_of_line(line, shape_) +
                   " has values, and south of 60 degrees south there are none: are the "
                   "rows in the wrong order?";
  }
}

void GridContent::compare_with_first(std::int64_t line) {
  const std::vector<Word>& expected =
      first_month_.at(static_cast<std::size_t>((line - 1) % shape_.rows));
  const auto [found, other] = std::mismatch(row_.begin(), row_.end(), expected.begin());
  if (found == row_.end()) {
    return;
  }
  const auto word = static_cast<std::size_t>(found - row_.begin());
  const auto bit = static_cast<std::size_t>(std::countr_zero(*found ^ *other));
  const bool has_value = (*found >> bit & 1U) != 0;
  other_cells_ = name_of_line(line, shape_) + ", column " +
                 std::to_string(word * kBits + bit + 1) + ": " +
                 (has_value ? "a value, and the first month has none there"
                            : "no value, and the first month has one there");
}

std::vector<std::string> GridContent::warnings() const {
  std::vector<std::string> found;
  for (const std::string& warning : {wrong_order_, other_cells_}) {
    if (!warning.empty()) {
      found.push_back(warning);
    }
  }
  return found;
}

}  // namespace veldmark::tersify
