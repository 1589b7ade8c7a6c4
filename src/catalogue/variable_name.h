// Finds a variable by its short name or by the name of its file.

#ifndef VELDMARK_CATALOGUE_VARIABLE_NAME_H_
#define VELDMARK_CATALOGUE_VARIABLE_NAME_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "catalogue/variable_catalogue.h"

namespace veldmark {

// Returns `text` in lower case.
std::string lower_case(std::string_view text);

// Returns the short names of all variables, separated by blanks.
std::string short_names();

// Returns the variable with `short_name`, ignoring case; nullptr if there is none.
const VariableEntry* find_by_short_name(std::string_view short_name);

// Returns the variable of the file `file_name`, which may include folders: its short
// name is between two full stops or at the start of the name, as for the drought index.
// Returns nullptr if the name contains no short name.
const VariableEntry* find_by_file_name(std::string_view file_name);

// Returns the number of decimals of a physical value: 1 for tenths, 2 for hundredths.
std::int32_t decimals_of(const VariableEntry& entry);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_VARIABLE_NAME_H_
