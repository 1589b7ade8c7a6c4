// A text file that is written: created or emptied, buffered, every write checked.

#ifndef VELDMARK_OUTPUT_OUTPUT_FILE_H_
#define VELDMARK_OUTPUT_OUTPUT_FILE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/file_descriptor.h"
#include "util/file_identity.h"

namespace veldmark {

// Throws FileFault where a write fails. Until `close` has returned, nothing may claim
// that the file is complete.
class OutputFile {
 public:
  // Creates `name`, or empties the file there, which keeps its owner and permissions.
  // Until `close` no other run can write it.
  //
  //   in_use    files that `name` must not lead to
  //
  // Throws FileFault, before anything is lost, where `name` leads to a file in use,
  // another run is writing it, it is a pipe (which would have no end), or it can't be
  // opened.
  explicit OutputFile(std::string name, const FilesInUse& in_use = {});

  // Flushes what is buffered if the file is left unclosed.
  ~OutputFile();

  OutputFile(OutputFile&& other) noexcept = default;
  OutputFile& operator=(OutputFile&& other) = delete;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Returns which file it is; nullopt for a device.
  [[nodiscard]] std::optional<FileIdentity> identity() const { return identity_; }

  // Appends `text` as it is.
  void write(std::string_view text);

  // The same without a copy, for the hot loop: `reserve` returns memory for `size`
  // characters, and `commit` says how many of them were filled in.
  // Requires size <= kMostReserved.
  static constexpr std::size_t kMostReserved = std::size_t{64} * 1024;
  char* reserve(std::size_t size);
  void commit(std::size_t size) { used_ += size; }

  // Writes what is buffered and closes the file. A second close does nothing.
  void close();

 private:
  void lock_and_truncate(const FilesInUse& in_use);
  void flush();

  std::string name_;
  FileDescriptor file_;
  std::optional<FileIdentity> identity_;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_OUTPUT_FILE_H_
