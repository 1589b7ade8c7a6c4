// The years of a grid file, by its name and by its lines.

#ifndef VELDMARK_TERSIFY_RELEASE_YEARS_H_
#define VELDMARK_TERSIFY_RELEASE_YEARS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tersify/grid_shape.h"

namespace veldmark::tersify {

// Both included; first <= last.
struct Years {
  std::int32_t first = 0;
  std::int32_t last = 0;

  [[nodiscard]] std::int32_t count() const { return last - first + 1; }
};

// Returns the years that stand in a file's name, ".1901.2024." in
// "cru_ts4.09.1901.2024.tmp.dat.new"; nullopt for none. Folders in front don't count.
std::optional<Years> years_in_name(std::string_view name);

// Returns `shape` with the years that a file's name tells, if it tells any.
GridShape shape_by_name(std::string_view name, GridShape shape);

// Returns how many years `lines` lines are; nullopt unless they are whole years, one at
// least.
std::optional<std::int32_t> whole_years(std::int64_t lines, const GridShape& shape);

// "124 years, 1901 to 2024".
//
//   count    one at least
std::string years_text(std::int32_t first, std::int32_t count);

// Says so when a file whose name tells its years holds others: "its name says 1901 to
// 2024, and it holds 116 years".
std::optional<std::string> other_years_warning(std::string_view name,
                                               std::int32_t count);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_RELEASE_YEARS_H_
