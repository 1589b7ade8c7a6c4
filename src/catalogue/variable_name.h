// Finds a variable by what users call it: its short name or the name of its file.

#ifndef VELDMARK_CATALOGUE_VARIABLE_NAME_H_
#define VELDMARK_CATALOGUE_VARIABLE_NAME_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "catalogue/variable_catalogue.h"

namespace veldmark {

// Returns `text` with small letters in the place of capital ones.
std::string lower_case(std::string_view text);

// Returns the short names of all variables with blanks between them.
std::string short_names();

// Returns the variable called `short_name`, whatever the case of its letters; nullptr
// for none.
const VariableEntry* find_by_short_name(std::string_view short_name);

// Returns the variable whose file is called `file_name`, folders in front allowed: the
// short name stands between full stops, or the name begins with it, as that of the
// drought index does. nullptr when the name does not tell.
const VariableEntry* find_by_file_name(std::string_view file_name);

// Returns how many decimals a physical value has: 1 for tenths, 2 for hundredths.
std::int32_t decimals_of(const VariableEntry& entry);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_VARIABLE_NAME_H_
