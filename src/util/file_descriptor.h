// Owns an open file descriptor of the operating system.

#ifndef VELDMARK_UTIL_FILE_DESCRIPTOR_H_
#define VELDMARK_UTIL_FILE_DESCRIPTOR_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace veldmark {

// Can be moved, not copied; an interrupted call is repeated. errno tells why one
// failed.
class FileDescriptor {
 public:
  // Opens `name` with the flags of open(2), created files with mode 0666 less the
  // umask. is_open() tells whether that worked; errno says why not.
  FileDescriptor(const std::string& name, int flags);

  // Takes over an open descriptor, or -1 for none.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}

  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor& operator=(FileDescriptor&& other) = delete;
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  [[nodiscard]] bool is_open() const { return descriptor_ != kClosed; }

  // Reads up to `size` bytes at the file's position. Returns how many bytes were read,
  // 0 at the end of the file, -1 on failure.
  std::ptrdiff_t read(char* buffer, std::size_t size) const;

  // Reads just `size` bytes from `offset` on and leaves the file's position alone.
  // Returns false on failure, and when the file ends before.
  bool read_at(std::int64_t offset, char* buffer, std::size_t size) const;

  // Writes all of `bytes`. Returns false on failure.
  [[nodiscard]] bool write_all(std::string_view bytes) const;

  // Closes the file. Returns false when the system reports that written bytes were
  // lost. A second close does nothing.
  bool close();

  [[nodiscard]] int get() const { return descriptor_; }

 private:
  static constexpr int kClosed = -1;

  int descriptor_;
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FILE_DESCRIPTOR_H_
