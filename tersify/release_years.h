// The years of a grid file, according to its name and its number of lines.

#ifndef VELDMARK_TERSIFY_RELEASE_YEARS_H_
#define VELDMARK_TERSIFY_RELEASE_YEARS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "companion/years_in_name.h"
#include "tersify/grid_shape.h"

namespace veldmark::tersify {

using companion::Years;
using companion::years_in_name;

// Returns `shape` with the years in the file's name, if there are any.
GridShape shape_by_name(std::string_view name, GridShape shape);

// Returns the number of years of a file of `lines` lines; nullopt unless they are whole
// years, at least one.
std::optional<std::int32_t> whole_years(std::int64_t lines, const GridShape& shape);

// Returns "124 years, 1901 to 2024". Requires count >= 1.
std::string years_text(std::int32_t first, std::int32_t count);

// Returns a warning if a file doesn't hold as many years as its name says: "its name
// says 1901 to 2024, and it holds 116 years". Otherwise returns nullopt.
std::optional<std::string> other_years_warning(std::string_view name,
                                               std::int32_t count);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_RELEASE_YEARS_H_
