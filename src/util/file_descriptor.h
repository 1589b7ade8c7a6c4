// A POSIX file descriptor that is closed by its destructor.

#ifndef VELDMARK_UTIL_FILE_DESCRIPTOR_H_
#define VELDMARK_UTIL_FILE_DESCRIPTOR_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace veldmark {

// Movable, not copyable. Interrupted calls are retried. After a failure errno holds the
// reason.
class FileDescriptor {
 public:
  // Opens `name` with the flags of open(2); a file that is created gets mode 0666 less
  // the umask. is_open() returns whether that worked; if not, errno holds the reason.
  FileDescriptor(const std::string& name, int flags);

  // Takes ownership of an open descriptor; -1 means none.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}

  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor& operator=(FileDescriptor&& other) = delete;
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  [[nodiscard]] bool is_open() const { return descriptor_ != kClosed; }

  // Reads up to `size` bytes from the current position. Returns the number of bytes
  // read, 0 at the end of the file, -1 on failure.
  std::ptrdiff_t read(char* buffer, std::size_t size) const;

  // Reads exactly `size` bytes starting at `offset`, without moving the current
  // position. Returns false on failure, or if the file ends before `offset + size`.
  bool read_at(std::int64_t offset, char* buffer, std::size_t size) const;

  // Writes all of `bytes`. Returns false on failure.
  [[nodiscard]] bool write_all(std::string_view bytes) const;

  // Closes the file. Returns false if the system reports that written data was lost. A
  // second close does nothing.
  bool close();

  [[nodiscard]] int get() const { return descriptor_; }

 private:
  static constexpr int kClosed = -1;

  int descriptor_;
};

// Returns a second descriptor of the same open file. If that fails it is not open, and
// errno holds the reason.
FileDescriptor duplicate_of(int descriptor);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FILE_DESCRIPTOR_H_
