// Converts the physical values of a netCDF grid to the integers of a condensed file.
// Does no file I/O.

#ifndef VELDMARK_TERSIFY_NETCDF_VALUES_H_
#define VELDMARK_TERSIFY_NETCDF_VALUES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/variable_catalogue.h"
#include "grid/grid_layout.h"

namespace veldmark::tersify {

// Returns `stored_per_unit` times the value, rounded to an integer; nullopt if it is
// more than 0.01 away from an integer, or the integer is outside -9999..99999 (five
// characters).
//
//   value    in physical units
std::optional<std::int32_t> stored_value(double value, std::int32_t stored_per_unit);

// The orientation of a netCDF grid, and its missing-value codes.
//
//   rows            the order of its rows
//   first_column    index of the westernmost column, counted from 0
//   missing         the codes of a missing value; NaN counts as missing only if listed
struct NetcdfGridForm {
  RowOrder rows = RowOrder::kSouthFirst;
  std::size_t first_column = 0;
  std::vector<float> missing{};
};

// A range of rows of a month in the order of the netCDF file, counted from 0.
struct NetcdfRows {
  std::size_t first = 0;
  std::size_t count = kGridRows;
};

// Formats the values of a variable as condensed lines.
class NetcdfLines {
 public:
  NetcdfLines(const VariableEntry& entry, const NetcdfGridForm& form);

  // Returns the index of the first line of these rows in the condensed file, counted
  // from 0 at the beginning of the month.
  [[nodiscard]] std::size_t first_line(const NetcdfRows& rows) const;

  // Returns the lines of these rows, with newlines, in the row order of the condensed
  // file. Valid until the next call.
  //
  //   values    720 for each row, in the order of the netCDF file
  //
  // Throws NetcdfFault that names latitude, longitude and value if stored_value rejects
  // a value, or the stored integer is the missing code.
  std::string_view make(std::span<const float> values, const NetcdfRows& rows);

 private:
  [[nodiscard]] bool is_reversed() const { return entry_.row_order != form_.rows; }
  [[nodiscard]] bool is_missing(float value) const;
  void write_line(std::span<const float> values, std::size_t row, char* line) const;
  void write_value(float value, char* field) const;

  const VariableEntry& entry_;
  NetcdfGridForm form_;
  bool has_missing_nan_;
  std::array<char, kFieldWidth> missing_field_{};
  std::string text_;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_VALUES_H_
