// A text file that is written: created or replaced, buffered, every write checked.

#ifndef VELDMARK_OUTPUT_OUTPUT_FILE_H_
#define VELDMARK_OUTPUT_OUTPUT_FILE_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "console/run_end.h"
#include "util/file_descriptor.h"

namespace veldmark {

// A write that fails ends the run (RunEnd). Until `close` has returned, nothing may
// claim that the file is complete.
class OutputFile {
 public:
  // Creates `name`, or empties an existing file of that name. Where that fails the run
  // ends (RunEnd).
  OutputFile(std::string name, Channel channel);

  // An end of the run on the way here leaves in the file what was written so far.
  ~OutputFile();

  OutputFile(OutputFile&& other) noexcept = default;
  OutputFile& operator=(OutputFile&& other) = delete;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Appends `text` as it is.
  void write(std::string_view text);

  // The same without a copy, for the hot loop: gives room for `size` characters, of
  // which `keep` then says how many were filled in. size <= kMostRoom.
  static constexpr std::size_t kMostRoom = std::size_t{64} * 1024;
  char* room(std::size_t size);
  void keep(std::size_t size) { used_ += size; }

  // Writes what is held back and closes the file. A second close does nothing.
  void close();

 private:
  void write_out();

  std::string name_;
  Channel channel_;
  FileDescriptor file_;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_OUTPUT_FILE_H_
