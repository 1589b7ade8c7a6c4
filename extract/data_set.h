// What the program must know of a variable: its units, its missing code, the order of
// its rows.

#ifndef VELDMARK_EXTRACT_DATA_SET_H_
#define VELDMARK_EXTRACT_DATA_SET_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "selection/grid_geometry.h"

namespace veldmark::extract {

struct DataSet {
  std::string_view short_name;  // as in "tmp"
  std::string_view file_name;   // of the release that the dialogue reads
  std::string_view long_name;
  std::string_view units;  // of physical values
  std::int32_t decimals;   // a stored integer is a physical value times 10^decimals
  std::int32_t MissingCode;
  RowOrder order;
  std::int32_t menu_number;
};

// The eleven variables.
std::span<const DataSet> data_sets();

// The short names of all variables with blanks between them.
std::string short_names();

// Returns the variable called `short_name`, whatever the case of its letters; null for
// none.
const DataSet* find_data_set(std::string_view short_name);

// Returns the variable whose file is called `file_name`, folders in front allowed: the
// short name stands between full stops, or the name begins with "scPDSI". Null when the
// name does not tell.
const DataSet* data_set_of_file(std::string_view file_name);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_DATA_SET_H_
