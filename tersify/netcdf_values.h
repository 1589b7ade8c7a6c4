// From the real numbers of a netCDF grid to the stored integers of a condensed file.
//
// Nothing here touches a file.

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

// Returns the stored integer of a value in physical units; nullopt when
// `stored_per_unit` times the value is further than 0.01 from each integer of at most
// five characters, -9999 to 99999.
std::optional<std::int32_t> stored_value(double value, std::int32_t stored_per_unit);

// How a netCDF grid lies in its file, and what marks its missing values.
//
//   rows            the order of its rows
//   first_column    index, from 0, of the westernmost column
//   missing         the values that mean "no value"; NaN is one where it is named here
struct NetcdfGridForm {
  RowOrder rows = RowOrder::kSouthFirst;
  std::size_t first_column = 0;
  std::vector<float> missing{};
};

// Rows of a month as they lie in the netCDF file, counted from 0.
struct NetcdfRows {
  std::size_t first = 0;
  std::size_t count = kGridRows;
};

// Makes condensed lines of a variable.
class NetcdfLines {
 public:
  NetcdfLines(const VariableEntry& entry, const NetcdfGridForm& form);

  // Returns the index, from 0, of the first line of these rows among the lines of their
  // month.
  [[nodiscard]] std::size_t first_line(const NetcdfRows& rows) const;

  // Returns the lines of these rows, with their line ends, in the row order of the
  // condensed file. The next call overwrites them.
  //
  //   values    720 for each row, as they lie in the netCDF file
  //
  // Throws NetcdfFault that names latitude, longitude and value when a value is none of
  // the variable's, or would be taken for a missing one.
  std::string_view make(std::span<const float> values, const NetcdfRows& rows);

 private:
  [[nodiscard]] bool is_reversed() const { return entry_.row_order != form_.rows; }
  [[nodiscard]] bool is_missing(float value) const;
  void write_line(std::span<const float> values, std::size_t row, char* line) const;
  void write_value(float value, char* field) const;

  const VariableEntry& entry_;
  NetcdfGridForm form_;
  std::vector<float> missing_;  // each once, without NaN
  bool has_missing_nan_;
  std::array<char, kFieldWidth> missing_field_{};
  std::string text_;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NETCDF_VALUES_H_
