// An input file, read sequentially.

#ifndef VELDMARK_COMPANION_INPUT_FILE_H_
#define VELDMARK_COMPANION_INPUT_FILE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "util/file_descriptor.h"
#include "util/file_identity.h"

namespace veldmark::companion {

// Every member throws Failure "cannot read 'NAME': reason".
class InputFile {
 public:
  // kRegular accepts regular files only, whose size is known and which can be read
  // twice. kAny accepts pipes and devices as well; opening a pipe waits for a writer.
  enum class Kind { kRegular, kAny };

  InputFile(const std::string& name, Kind kind);

  // Reads from an open descriptor, which stays open afterwards.
  //
  //   name    shown in messages: "the standard input"
  InputFile(int descriptor, std::string name);

  // Returns the size in bytes when the file was opened; 0 unless it is a regular file.
  [[nodiscard]] std::int64_t size() const { return size_; }

  // Returns the file's identity; nullopt unless it is a regular file.
  [[nodiscard]] std::optional<FileIdentity> identity() const { return identity_; }

  // Returns the name for messages.
  [[nodiscard]] const std::string& shown_name() const { return shown_name_; }

  // Returns the first bytes, at most `longest`; doesn't move the position of read().
  // Requires a regular file.
  [[nodiscard]] std::string beginning(std::size_t longest) const;

  // Returns the last bytes, at most `longest`; otherwise as beginning().
  [[nodiscard]] std::string ending(std::size_t longest) const;

  // Reads up to `size` bytes. Returns their number; 0 at the end of the file.
  std::size_t read(char* buffer, std::size_t size) const;

  // Throws the Failure for a file that has become shorter since it was opened.
  [[noreturn]] void fail_shorter() const;

 private:
  void inspect(Kind kind);
  [[nodiscard]] std::string bytes_at(std::int64_t offset, std::size_t count) const;
  [[noreturn]] void fail(const std::string& reason) const;
  [[noreturn]] void fail_with_errno() const;

  std::string shown_name_;
  FileDescriptor file_;
  std::int64_t size_ = 0;
  std::optional<FileIdentity> identity_;
};

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_INPUT_FILE_H_
