// The eleven data sets: their names, their files and what their values mean.

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

// How to cite the data: the lines of the screen, margins included.
struct CitationBlock {
  std::span<const std::string_view> lines{};
};

// Output names are made from this many characters of the data file's name.
constexpr std::size_t kMaxDataFileNameLength = 40;

// A data set. Texts for the output files are fields of fixed width, which are written
// with their trailing blanks. A default entry is blank: no data set has been chosen.
struct VariableEntry {
  std::int32_t menu_number{};
  std::string_view menu_line{};
  std::string_view short_name{};  // as in file names
  std::string_view units{};       // of the stored values, as in the menu

  TextField<13> OutputPrefix{};
  TextField<27> TitleText{};
  TextField<65> RFMT{};  // layout of the year lines
  TextField<65> DataFileName{};

  std::int32_t MissingCode{};  // marks a cell without data
  CitationBlock citation{};
  RowOrder row_order = RowOrder::kSouthFirst;
  YearSpan years{.FYOD = kFirstDataYear, .LYOD = kLastDataYear};
  MinLonTest min_lon_test = MinLonTest::kInRange;
  bool is_in_cru_ts_distribution = true;  // affects the message about a missing file

  // The variance test multiplies stored values by this. Without it, the test uses the
  // factor of the variable that was chosen before.
  std::optional<float> SampleScale = std::nullopt;

  // A physical value is the stored value divided by stored_per_unit.
  std::int32_t stored_per_unit{};
  std::string_view physical_unit{};
  std::string_view long_name{};
};

// Menu numbers are 1..kVariableCount.
constexpr std::size_t kVariableCount = 11;

// All data sets, in the order of their menu numbers.
extern const std::array<VariableEntry, kVariableCount> VariableCatalogue;

// The citation and the missing code of the ten CRU TS data sets.
extern const CitationBlock kCruTsCitation;
constexpr std::int32_t kCruTsMissingCode = -999;

// Returns the data set with menu number `MenuChoice`; nullptr if there is none.
const VariableEntry* find_variable(std::int32_t MenuChoice);

// Returns whether the current folder contains the data file of `entry`. Also returns
// true if that cannot be found out: opening the file then reports what is wrong.
bool data_file_exists(const VariableEntry& entry);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_VARIABLE_CATALOGUE_H_
