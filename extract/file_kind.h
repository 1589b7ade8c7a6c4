// Tells what a file is that is no condensed grid file.

#ifndef VELDMARK_EXTRACT_FILE_KIND_H_
#define VELDMARK_EXTRACT_FILE_KIND_H_

#include <string>
#include <string_view>

namespace veldmark::extract {

// Returns what the file called `name` looks like and what to do about it, judged by its
// first bytes: compressed, netCDF, published text, or text with other lines.
//
//   head    the first bytes of the file, some ten thousand, or all of a shorter one
std::string describe_other_file(const std::string& name, std::string_view head);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_FILE_KIND_H_
