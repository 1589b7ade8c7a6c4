// An output file that appears under its name only when it is complete.

#ifndef VELDMARK_UTIL_PART_FILE_H_
#define VELDMARK_UTIL_PART_FILE_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "util/file_descriptor.h"

namespace veldmark {

// Writes to NAME.part and renames it to NAME at the end; unless that has happened, the
// destructor removes NAME.part. An earlier file NAME stays as it is until then. The
// part is a new file of this run's own: what stood there before, left by a run that was
// killed or put there by somebody, is removed, not written to.
//
// From the beginning to the renaming the part is locked, so that a second run on the
// same output ends at once and harms nothing.
//
// Every member throws Failure "cannot write 'NAME...': reason", and Interrupted when an
// InterruptWatch has caught a signal by then.
class PartFile {
 public:
  // Refused are a NAME that is something other than a regular file, because the
  // renaming would put a file in the place of a device; a NAME.part that another run is
  // writing, or may be writing where another user's can't be opened; and a folder in
  // its place.
  explicit PartFile(std::string name);
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;
  PartFile(PartFile&&) = delete;
  PartFile& operator=(PartFile&&) = delete;

  // Returns what the part of an output is called.
  [[nodiscard]] static std::string part_name(const std::string& name);

  // Lets go of the lock, and leaves it to somebody who opens the part by its name to
  // lock it, write it and close it before `complete`.
  void hand_over();

  // Appends the whole text.
  void write(std::string_view text);

  // Writes the whole text from byte `offset` on, before or behind what is there. What
  // is left between is zero until it is written, too.
  void write_at(std::int64_t offset, std::string_view text);

  // Waits until the file is on the disk, so that its name means a complete file even
  // after a power failure, and gives it its name. Nothing can be written afterwards.
  void complete();

  // The same, but doesn't wait for the disk: for what is quickly made again. After a
  // power failure the file may have its name and lack content.
  void complete_unsynced();

  // Returns the bytes from the beginning to the end of what is written so far.
  [[nodiscard]] std::int64_t size() const { return size_; }

 private:
  void rename();

  std::string name_;
  std::string part_name_;
  FileDescriptor file_;
  std::int64_t size_ = 0;
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_PART_FILE_H_
