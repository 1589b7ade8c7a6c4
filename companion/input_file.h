// A file that is read from its beginning to its end.

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
  // What may be read: regular files alone, whose size is known and which can be looked
  // at twice, or pipes and devices too, which open when somebody writes to them.
  enum class Kind { kRegular, kAny };

  InputFile(const std::string& name, Kind kind);

  // Reads what is open as `descriptor` already, which stays open afterwards.
  //
  //   name    what it is called in messages: "the standard input"
  InputFile(int descriptor, std::string name);

  // Returns the size in bytes at the opening; 0 for anything but a regular file.
  [[nodiscard]] std::int64_t size() const { return size_; }

  // Returns which file it is; nullopt for anything but a regular file.
  [[nodiscard]] std::optional<FileIdentity> identity() const { return identity_; }

  // Returns what it is called in messages.
  [[nodiscard]] const std::string& shown_name() const { return shown_name_; }

  // Returns up to `longest` bytes from the beginning; the position of read() stays.
  // Requires a regular file.
  [[nodiscard]] std::string beginning(std::size_t longest) const;

  // The same from the end of the file.
  [[nodiscard]] std::string ending(std::size_t longest) const;

  // Reads up to `size` bytes; 0 at the end of the file.
  std::size_t read(char* buffer, std::size_t size) const;

  // Fails because the file has become shorter than it was when it was opened.
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
