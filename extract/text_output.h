// Writes text to standard output, or to a file that appears only when it is complete.

#ifndef VELDMARK_EXTRACT_TEXT_OUTPUT_H_
#define VELDMARK_EXTRACT_TEXT_OUTPUT_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/part_file.h"

namespace veldmark::extract {

// Throws Failure if a write fails, and Interrupted if an InterruptWatch catches a
// signal while it waits for the reader of standard output.
class TextOutput {
 public:
  // Opens the file `name`; nullopt means standard output.
  explicit TextOutput(const std::optional<std::string>& name,
                      PartFile::IfExists if_exists = PartFile::IfExists::kKeep);

  void write(std::string_view text);

  // Writes without a copy: reserve returns a buffer for `size` characters; commit takes
  // how many of them were written.
  char* reserve(std::size_t size);
  void commit(std::size_t size) { used_ += size; }

  // Writes what is buffered, and renames the file to its name.
  void complete();

 private:
  void write_out();

  std::optional<PartFile> file_;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_TEXT_OUTPUT_H_
