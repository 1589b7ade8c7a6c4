#include "tersify/netcdf_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "tersify/netcdf_fault.h"
#include "tersify/netcdf_number.h"

namespace veldmark::tersify {
namespace {

constexpr std::size_t kBytesPerLine = kLineLength + 1;
constexpr std::int32_t kLowest = -9999;
constexpr std::int32_t kHighest = 99999;

// Writes a number right-aligned into a field.
void put_number(std::int32_t number, char* field) {
  std::array<char, kFieldWidth> digits{};
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  const std::ptrdiff_t length = end - digits.data();
  char* const begin = std::fill_n(field, std::ptrdiff_t{kFieldWidth} - length, ' ');
  std::copy_n(digits.data(), length, begin);
}

// Return the centre of a row or column in degrees; rows and columns counted from 0.
double latitude(RowOrder order, std::size_t row) {
  const double from_edge = double{kCellSize} * static_cast<double>(row);
  return order == RowOrder::kSouthFirst ? kSouthernmostCentre + from_edge
                                        : -kSouthernmostCentre - from_edge;
}

double longitude(std::size_t column) {
  return kWesternmostCentre + double{kCellSize} * static_cast<double>(column);
}

}  // namespace

std::optional<std::int32_t> stored_value(double value, std::int32_t stored_per_unit) {
  // At 9999.9, the greatest value that fits, single precision is off by less than 0.005
  // in stored units.
  constexpr double kFurthest = 0.01;
  const double scaled = value * stored_per_unit;
  if (!(scaled > kLowest - kFurthest && scaled < kHighest + kFurthest)) {
    return std::nullopt;  // NaN, too
  }
  const auto nearest = static_cast<std::int32_t>(std::lround(scaled));
  if (std::abs(scaled - nearest) > kFurthest) {
    return std::nullopt;
  }
  return nearest;
}

NetcdfLines::NetcdfLines(const VariableEntry& entry, const NetcdfGridForm& form)
    : entry_(entry),
      form_(form),
      has_missing_nan_(std::any_of(form.missing.begin(), form.missing.end(),
                                   [](float code) { return std::isnan(code); })) {
  put_number(entry.MissingCode, missing_field_.data());
}

// Hot: most values are missing, as most cells are sea. NaN equals nothing, not even
// NaN.
bool NetcdfLines::is_missing(float value) const {
  return std::find(form_.missing.begin(), form_.missing.end(), value) !=
             form_.missing.end() ||
         (has_missing_nan_ && std::isnan(value));
}

std::size_t NetcdfLines::first_line(const NetcdfRows& rows) const {
  return is_reversed() ? kGridRows - rows.first - rows.count : rows.first;
}

std::string_view NetcdfLines::make(std::span<const float> values,
                                   const NetcdfRows& rows) {
  text_.assign(rows.count * kBytesPerLine, '\n');
  for (std::size_t i = 0; i < rows.count; ++i) {
    const std::size_t line = is_reversed() ? rows.count - 1 - i : i;
    write_line(values.subspan(i * kGridColumns, kGridColumns), rows.first + i,
               text_.data() + line * kBytesPerLine);
  }
  return text_;
}

void NetcdfLines::write_line(std::span<const float> values, std::size_t row,
                             char* line) const {
  for (std::size_t column = 0; column < kGridColumns; ++column, line += kFieldWidth) {
    const float value = values[(form_.first_column + column) % kGridColumns];
    if (is_missing(value)) {
      std::copy(missing_field_.begin(), missing_field_.end(), line);
      continue;
    }
    try {
      write_value(value, line);
    } catch (const NetcdfFault& fault) {
      throw NetcdfFault("latitude " + number_text(latitude(form_.rows, row)) +
                        ", longitude " + number_text(longitude(column)) + ": " +
                        fault.what());
    }
  }
}

void NetcdfLines::write_value(float value, char* field) const {
  const std::optional<std::int32_t> stored =
      stored_value(value, entry_.stored_per_unit);
  if (!stored || *stored == entry_.MissingCode) {
    throw NetcdfFault(number_text(entry_.stored_per_unit) + " times " +
                      number_text(value) +
                      (stored ? " is the code of a missing value"
                              : " is no integer from -9999 to 99999"));
  }
  put_number(*stored, field);
}

}  // namespace veldmark::tersify
