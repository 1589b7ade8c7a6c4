// The condensed grid file that is read; its name and size tell its variable and years.

#ifndef VELDMARK_EXTRACT_INPUT_FILE_H_
#define VELDMARK_EXTRACT_INPUT_FILE_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "catalogue/variable_name.h"
#include "extract/options.h"
#include "util/file_descriptor.h"

namespace veldmark::extract {

// An open grid file that consists of whole years. Line 1 is row 1 of January of
// years.first.
struct InputFile {
  std::string name;
  const VariableEntry& entry;
  FileDescriptor file;
  std::int64_t size;          // bytes
  std::size_t line_end_size;  // 1 for LF, 2 for CR LF
  Years years;                // of the file
};

// Opens the input of `options`: a file, or a variable's file in the current folder.
// Throws UsageError if the variable or the first year is not known, and Failure if the
// file can't be read, is not a condensed grid file, ends inside a year, or its size
// does not agree with the years in its name.
InputFile open_input(const Options& options);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_INPUT_FILE_H_
