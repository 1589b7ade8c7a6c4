// The command line of veldmark-extract.

#ifndef VELDMARK_EXTRACT_COMMAND_LINE_H_
#define VELDMARK_EXTRACT_COMMAND_LINE_H_

#include <span>
#include <string>
#include <string_view>

#include "extract/options.h"

namespace veldmark::extract {

// Returns the text that --help shows.
std::string_view help_text();

// Returns the text that --version shows.
std::string_view version_text();

// Reads the arguments, the program's name not among them.
// Throws UsageError with a sentence that names the argument at fault.
Options parse_command_line(std::span<const std::string> arguments);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_COMMAND_LINE_H_
