// A buffered output file in which every write is checked.

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

// Members throw FileFault if a write fails. The file is not complete until `close` has
// returned.
class OutputFile {
 public:
  // Creates `name`, or truncates an existing file, which keeps its owner and
  // permissions. Locks it against other runs until `close`.
  //
  //   in_use    files that `name` must not refer to
  //
  // Throws FileFault if `name` refers to a file in use or to a pipe, if another run is
  // writing the file, or if it cannot be opened. Its content is not changed then.
  explicit OutputFile(std::string name, const FilesInUse& in_use = {});

  // Flushes what is buffered if the file is left unclosed.
  ~OutputFile();

  OutputFile(OutputFile&& other) noexcept = default;
  OutputFile& operator=(OutputFile&& other) = delete;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Returns the identity of the file; nullopt for a device.
  [[nodiscard]] std::optional<FileIdentity> identity() const { return identity_; }

  // Appends `text`.
  void write(std::string_view text);

  // Appends without a copy, for the hot loop: `reserve` returns a buffer of `size`
  // characters, and `commit` appends the first `size` of them. Requires size <=
  // kMaxReserved.
  static constexpr std::size_t kMaxReserved = std::size_t{64} * 1024;
  char* reserve(std::size_t size);
  void commit(std::size_t size) { used_ += size; }

  // Flushes the buffer and closes the file. A second close does nothing.
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
