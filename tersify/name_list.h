// The list file: one file name a line.

#ifndef VELDMARK_TERSIFY_NAME_LIST_H_
#define VELDMARK_TERSIFY_NAME_LIST_H_

#include <string>
#include <string_view>
#include <vector>

namespace veldmark::tersify {

// Returns the line without blanks, tabs and carriage returns at its end, which some
// editors leave there.
std::string trimmed_name(std::string_view line);

// Returns the names in a list file, which may be a pipe. Skips blank lines and a byte
// order mark.
//
// Throws Failure if the file can't be read, if it contains no name, and at the first
// line that can't be a file name: one with a null character, or longer than the system
// allows for a path or for one component of it. Such a file isn't a list; often it is
// the data file itself.
std::vector<std::string> read_name_list(const std::string& list_name);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NAME_LIST_H_
