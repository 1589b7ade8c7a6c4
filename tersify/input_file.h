// A grid file that is read from its beginning to its end.

#ifndef VELDMARK_TERSIFY_INPUT_FILE_H_
#define VELDMARK_TERSIFY_INPUT_FILE_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "util/file_descriptor.h"

namespace veldmark::tersify {

// Errors     Failure "cannot read NAME: reason" from every member.
class InputFile {
 public:
  // Opens a file. Refused are what is no regular file, and compressed files, which are
  // recognised by their first bytes: Failure "NAME is compressed (gzip); decompress it
  // first".
  explicit InputFile(const std::string& name);

  // Size in bytes.
  [[nodiscard]] std::int64_t size() const { return size_; }

  // Up to `longest` bytes from the beginning; the position of read() stays.
  [[nodiscard]] std::string beginning(std::size_t longest) const;

  // Reads up to `size` bytes; 0 at the end of the file.
  std::size_t read(char* buffer, std::size_t size);

  // Fails because the file has become shorter than it was when it was opened.
  [[noreturn]] void fail_shorter() const;

  // Is `other` another name of this file, or a link to it?
  [[nodiscard]] bool is_same_file(const std::string& other) const;

 private:
  [[noreturn]] void fail(int error) const;

  std::string name_;
  FileDescriptor file_;
  std::int64_t size_ = 0;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_INPUT_FILE_H_
