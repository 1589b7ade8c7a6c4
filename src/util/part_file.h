// An output file that appears under its name only when it is complete.

#ifndef VELDMARK_UTIL_PART_FILE_H_
#define VELDMARK_UTIL_PART_FILE_H_

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace veldmark {

// The system calls that can fail while a file is written; tests hand in their own.
struct FileCalls {
  ssize_t (*write)(int, const void*, std::size_t);
  int (*close)(int);
  int (*rename)(const char*, const char*);
};

// The calls of this system.
FileCalls system_file_calls();

// Writes to NAME.part and renames it to NAME at the end; unless that has happened, the
// destructor removes NAME.part. An earlier file NAME stays as it is until then.
//
// Errors     Failure "cannot write NAME...: reason" from every member; refused at once
//            when NAME is something other than a regular file, because the renaming
//            would put a file in the place of a device.
class PartFile {
 public:
  explicit PartFile(std::string name, const FileCalls& calls = system_file_calls());
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;
  PartFile(PartFile&&) = delete;
  PartFile& operator=(PartFile&&) = delete;

  // Appends the whole text.
  void write(std::string_view text);

  // Closes the file and gives it its name; nothing can be written afterwards.
  void complete();

  // Bytes written so far.
  [[nodiscard]] std::int64_t size() const { return size_; }

 private:
  static constexpr int kClosed = -1;

  std::string name_;
  std::string part_name_;
  FileCalls calls_;
  int descriptor_ = kClosed;
  std::int64_t size_ = 0;
  bool complete_ = false;
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_PART_FILE_H_
