// The years in the name of a grid file.

#ifndef VELDMARK_COMPANION_YEARS_IN_NAME_H_
#define VELDMARK_COMPANION_YEARS_IN_NAME_H_

#include <cstdint>
#include <optional>
#include <string_view>

namespace veldmark::companion {

// A range of years, both included; first <= last.
struct Years {
  std::int32_t first{};
  std::int32_t last{};

  [[nodiscard]] std::int32_t count() const { return last - first + 1; }
};

// Returns the years in a file's name, ".1901.2024." in
// "cru_ts4.09.1901.2024.tmp.dat.new"; nullopt if there are none. Folder names are
// ignored.
std::optional<Years> years_in_name(std::string_view name);

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_YEARS_IN_NAME_H_
