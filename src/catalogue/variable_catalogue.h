// The eleven data sets: what they are called, where they are, what their values mean.

#ifndef VELDMARK_CATALOGUE_VARIABLE_CATALOGUE_H_
#define VELDMARK_CATALOGUE_VARIABLE_CATALOGUE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "grid/grid_layout.h"
#include "selection/search_region.h"
#include "util/text_field.h"

namespace veldmark {

// How the data are to be cited: the lines of the screen, margins included.
struct CitationBlock {
  std::span<const std::string_view> lines{};
};

// Output names take this much of a data file's name, so no name may be longer.
constexpr std::size_t kMaxDataFileNameLength = 40;

// A data set. The texts that files show are fields of fixed width, written with their
// full width. A fresh entry is blank: no data set has been chosen yet.
struct VariableEntry {
  std::int32_t menu_number = 0;
  std::string_view menu_line{};
  std::string_view short_name{};  // as in file names
  std::string_view units{};       // as the menu shows them: of stored values

  TextField<13> OutputPrefix{};
  TextField<27> TitleText{};
  TextField<65> RFMT{};  // layout of the year lines
  TextField<65> DataFileName{};

  std::int32_t MissingCode = 0;  // marks a cell without data
  CitationBlock citation{};
  RowOrder row_order = RowOrder::kSouthFirst;
  YearSpan years{.FYOD = kFirstDataYear, .LYOD = kLastDataYear};
  MinLonTest min_lon_test = MinLonTest::kInRange;
  bool is_in_cru_ts_distribution = true;  // a user without the file is told otherwise

  // What the variance test multiplies stored values by; where there is none, it goes on
  // with the factor of the variable before.
  std::optional<float> SampleScale = std::nullopt;

  // Physical values are stored values divided by this; what they are called.
  std::int32_t stored_per_unit = 1;
  std::string_view physical_unit{};
  std::string_view long_name{};
};

// Menu numbers go from 1 to this.
constexpr std::size_t kVariableCount = 11;

// All data sets, in the order of their menu numbers.
extern const std::array<VariableEntry, kVariableCount> VariableCatalogue;

// How the ten CRU TS data sets are to be cited, and the code of their missing values.
extern const CitationBlock kCruTsCitation;
constexpr std::int32_t kCruTsMissingCode = -999;

// Returns the data set of a menu number, nullptr where there is none.
const VariableEntry* find_variable(std::int32_t MenuChoice);

// Is there something in the current folder of the name of the entry's data file? A file
// that can't be looked up counts as there: opening it tells what is wrong.
bool data_file_exists(const VariableEntry& entry);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_VARIABLE_CATALOGUE_H_
