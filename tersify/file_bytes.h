// Reads the bytes of a published file, and shows progress.

#ifndef VELDMARK_TERSIFY_FILE_BYTES_H_
#define VELDMARK_TERSIFY_FILE_BYTES_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "companion/input_file.h"
#include "companion/progress_line.h"

namespace veldmark::tersify {

class FileBytes {
 public:
  //   file    at its beginning; must outlive this
  FileBytes(const companion::InputFile& file,
            const companion::ProgressLine::Screen& screen)
      : file_(file), progress_(screen, file.shown_name(), file.size()) {}

  // Reads up to `size` bytes. Returns their number; 0 at the end of the file. Throws
  // Failure if the file can't be read, or has become shorter since it was opened;
  // Interrupted if an InterruptWatch has caught a signal.
  std::size_t read(char* buffer, std::size_t size);

  // Returns the number of bytes read so far.
  [[nodiscard]] std::int64_t count() const { return count_; }

 private:
  const companion::InputFile& file_;
  companion::ProgressLine progress_;
  std::int64_t count_ = 0;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_FILE_BYTES_H_
