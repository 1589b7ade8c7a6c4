// The list file: one file name a line.

#ifndef VELDMARK_TERSIFY_NAME_LIST_H_
#define VELDMARK_TERSIFY_NAME_LIST_H_

#include <string>
#include <string_view>
#include <vector>

namespace veldmark::tersify {

// Returns a name as it is meant: without blanks, tabs and carriage returns at its end.
// Lists come from all kinds of editors.
std::string trimmed_name(std::string_view line);

// Reads the names of a list file, which may be a pipe. Blank lines are skipped, and so
// is a byte order mark.
//
// Throws Failure when the file can't be read, when it holds no name, and at the first
// line that can be none: with a null character, or longer than a path or a part of one
// can be. Such a file is something else, often the data file itself.
std::vector<std::string> read_name_list(const std::string& list_name);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_NAME_LIST_H_
