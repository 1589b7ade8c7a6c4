// Describes a file that is not a condensed grid file.

#ifndef VELDMARK_EXTRACT_FILE_KIND_H_
#define VELDMARK_EXTRACT_FILE_KIND_H_

#include <string>
#include <string_view>

namespace veldmark::extract {

// Returns a message that says what the file `name` looks like, judged by its first
// bytes, and what to do: compressed, netCDF, published text, or text with other lines.
//
//   head    the first 16 KiB of the file, or all of a shorter file
std::string describe_other_file(const std::string& name, std::string_view head);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_FILE_KIND_H_
