// The list file: one file name a line.

#ifndef VELDMARK_TERSIFY_NAME_LIST_H_
#define VELDMARK_TERSIFY_NAME_LIST_H_

#include <string>
#include <string_view>
#include <vector>

namespace veldmark::tersify {

// A name as it is meant: without blanks, tabs and a carriage return at its end. Lists
// come from all kinds of editors.
std::string trimmed_name(std::string_view line);

// Reads the names of a list file; blank lines are passed over.
// Errors     Failure when the file cannot be read, and when it holds no name.
std::vector<std::string> read_name_list(const std::string& list_name);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NAME_LIST_H_
