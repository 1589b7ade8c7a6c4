// The layout of a data line and the conversion of its fields: vector code, tables,
// plans and the plain definition must agree.
//
// The input is a search and bytes that overwrite a part of a regular line.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/field_conversion.h"
#include "catalogue/field_conversion_avx2.h"
#include "catalogue/row_format.h"
#include "catalogue/row_plan.h"
#include "fuzz_input.h"
#include "reached.h"
#include "require.h"
#include "search_of_input.h"
#include "support/plain/fields.h"
#include "support/plain/rows.h"
#include "util/fixed_field.h"

namespace veldmark::fuzz {
namespace {

constexpr int kTallest = 8;
constexpr std::int16_t kMissing = -999;

using Values = std::optional<std::vector<std::int16_t>>;

// A text in a buffer of exactly its size plus the one character that may be read.
class TightText {
 public:
  TightText(std::string_view text, char behind)
      : bytes_(text.begin(), text.end()), size_(text.size()) {
    bytes_.push_back(behind);
  }

  [[nodiscard]] std::string_view view() const { return {bytes_.data(), size_}; }

 private:
  std::vector<char> bytes_;
  std::size_t size_;
};

Values plain_fields(std::string_view fields) {
  std::vector<std::int16_t> values;
  for (; !fields.empty(); fields.remove_prefix(kFieldWidth)) {
    const auto value = plain::integer(fields.substr(0, kFieldWidth));
    if (!value) return std::nullopt;
    values.push_back(static_cast<std::int16_t>(*value));
  }
  return values;
}

template <typename Convert>
Values converted(std::string_view fields, Convert convert) {
  std::vector<std::int16_t> values(fields.size() / kFieldWidth);
  if (!convert(fields, values.data())) return std::nullopt;
  return values;
}

// Checks that the vector code converts correctly what it accepts, six fields at a time.
void check_vectors(std::string_view fields) {
  if (!has_avx2()) return;
  const std::size_t count = fields.size() / kFieldWidth;
  std::vector<std::int16_t> values(count);
  const std::size_t done = convert_fields_avx2(fields, values.data());
  require(done <= count, "no more fields than there are", fields);
  values.resize(done);
  reached("fields converted by vectors", done);
  require(plain_fields(fields.substr(0, done * kFieldWidth)) == values,
          "vectors convert as the definition", fields);
}

void check_fields(std::string_view text, char behind) {
  const TightText tight(text.substr(0, text.size() / kFieldWidth * kFieldWidth),
                        behind);
  const std::string_view fields = tight.view();
  const Values expected = plain_fields(fields);
  require(converted(fields, convert_fields) == expected,
          "fields are converted as the definition", fields);
  require(converted(fields, convert_fields_by_tables) == expected,
          "tables convert as the definition", fields);
  check_vectors(fields);
  std::string missing;
  while (missing.size() < fields.size()) missing += " -999";
  require(are_integers(fields, missing) == expected.has_value(),
          "integers are what can be converted", fields);
}

// Returns a line of ordinary fields, some of them the missing code.
std::string usual_line(std::uint8_t seed) {
  std::string line;
  for (int field = 0; field < kGridColumns; ++field) {
    const int number = (field * 37 + seed * 11) % 16000 - 6000;
    line += (field / 9 + seed) % 3 == 0 ? " -999" : fixed_integer(number, 5);
  }
  return line;
}

// Reads the line again with a plan made from an earlier line or from the line itself.
void check_plan(std::string_view line, const GridRanges& ranges,
                const std::vector<std::int32_t>& data_columns,
                const plain::Row& expected) {
  if (line.size() != kLineLength) return;
  const TightText tight(line, '\n');
  const RowPlan plan = plan_row(field_groups(ranges), data_columns);
  std::vector<std::int16_t> cells(data_columns.size());
  const bool read = read_by_plan(tight.view(), plan, missing_line(-999), cells.data());
  require(read == (!expected.bad_field && !contains_newline(line)),
          "a line is read by its plan when it can be read", line);
  if (!read) return;
  reached("lines read by a plan");
  for (std::size_t i = 0; i < cells.size(); ++i) {
    require(cells[i] == expected.value(data_columns[i]),
            "a plan gives the values of the definition", line);
  }
}

void check_line(std::string_view line, const GridRanges& ranges, std::uint8_t seed) {
  const plain::Row expected = plain::read(line, ranges);
  const bool readable = !expected.bad_field;
  reached(readable ? "lines read" : "lines refused");
  RowValues values{};
  require(read_row(line, field_groups(ranges), values) == readable,
          "a row is read when its fields are integers", line);
  for (std::int32_t column = 0; readable && column <= kGridColumns; ++column) {
    require(values.at(static_cast<std::size_t>(column)) ==
                expected.value(column).value_or(0),
            "a row has the values of the definition", line);
  }

  std::vector<std::int32_t> with_data;
  std::vector<std::int32_t> of_another;
  for (const std::int32_t column : plain::columns(ranges)) {
    if (readable && expected.value(column) != kMissing) with_data.push_back(column);
    if ((column + seed) % 5 != 0) of_another.push_back(column);
  }
  check_plan(line, ranges, with_data, expected);
  check_plan(line, ranges, of_another, expected);
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veldmark::fuzz;  // NOLINT
  FuzzInput input(data, size);
  const veldmark::GridRanges ranges = ranges_of(input, kTallest);
  const std::uint8_t seed = input.byte();
  const auto behind = static_cast<char>(input.byte());
  const auto place = static_cast<std::size_t>(
      input.between(0, static_cast<int>(veldmark::kLineLength)));
  const auto length =
      veldmark::kLineLength - static_cast<std::size_t>(input.flag() ? input.byte() : 0);
  const std::string text = input.rest();

  check_fields(text, behind);
  std::string line = usual_line(seed).replace(place, text.size(), text);
  line.resize(std::min(line.size(), length));
  check_line(line, ranges, seed);
  return 0;
}
