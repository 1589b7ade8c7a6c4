// The condensed grid file that is read: what it holds, by its name and its size.

#ifndef VELDMARK_EXTRACT_INPUT_FILE_H_
#define VELDMARK_EXTRACT_INPUT_FILE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "catalogue/variable_name.h"
#include "extract/options.h"
#include "util/file_descriptor.h"

namespace veldmark::extract {

// An open grid file whose size is that of whole years. Line 1 is row 1 of January of
// years.first.
struct InputFile {
  std::string name;
  const VariableEntry& entry;
  FileDescriptor file;
  std::int64_t size;          // bytes
  std::size_t line_end_size;  // 1 for LF, 2 for CR LF
  Years years;                // of the file
};

// Returns the first and last year that a file's name tells, as in ".1901.2016.";
// nothing when it tells none.
std::optional<Years> years_of_name(const std::string& name);

// Opens the input of `options`: a variable's file in the current folder, or a file.
// Throws UsageError when the variable or the first year is not known, and Failure when
// the file can't be read, is none of condensed form (it says what it looks like), ends
// inside a year, or holds other years than its name says.
InputFile open_input(const Options& options);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_INPUT_FILE_H_
