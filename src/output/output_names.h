// The names of a search's output files, which are made from the name of its data file.

#ifndef VELDMARK_OUTPUT_OUTPUT_NAMES_H_
#define VELDMARK_OUTPUT_OUTPUT_NAMES_H_

#include <string_view>

#include "catalogue/variable_catalogue.h"
#include "util/text_field.h"

namespace veldmark {

// A file name, padded with blanks as the summary shows it.
using OutputName = TextField<65>;

// Returns the first 40 characters of the data file's name followed by `extension`
// (".TSF" or ".XY"), without blanks; only the extension for a blank entry.
OutputName extract_name(const VariableEntry& entry, std::string_view extension);

// Returns the data file's name up to its first blank followed by ".ftst", without
// blanks.
OutputName report_name(const VariableEntry& entry);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_OUTPUT_NAMES_H_
