// A text that is written to a file, which appears only when it is complete, or to
// standard output.

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

// Throws Failure when something can't be written, and Interrupted where it has to wait
// for the reader of standard output when an InterruptWatch has caught a signal.
class TextOutput {
 public:
  // Begins the file `name`; standard output without a name.
  explicit TextOutput(const std::optional<std::string>& name,
                      PartFile::Earlier earlier = PartFile::Earlier::kKept);

  void write(std::string_view text);

  // The same without a copy: reserve returns memory for `size` characters; commit says
  // how many of them were filled in.
  char* reserve(std::size_t size);
  void commit(std::size_t size) { used_ += size; }

  // Writes what is left; the file gets its name.
  void complete();

 private:
  void write_out();

  std::optional<PartFile> file_;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_TEXT_OUTPUT_H_
