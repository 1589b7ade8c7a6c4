// An output file that appears under its name only when it is complete.

#ifndef VELDMARK_UTIL_PART_FILE_H_
#define VELDMARK_UTIL_PART_FILE_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "util/file_descriptor.h"

namespace veldmark {

// Writes to NAME.part and renames it to NAME at the end; unless that has happened, the
// destructor removes NAME.part. An earlier file NAME stays as it is until then, or for
// good. The
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
  //
  //   earlier    what becomes of a file that has the name when the part is complete
  enum class Earlier { kReplaced, kKept };
  explicit PartFile(std::string name, Earlier earlier = Earlier::kReplaced);
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

  // Whether a complete file waits for the disk, so that its name means a complete file
  // even after a power failure. Unsynced is for what is quickly made again.
  enum class Durability { kSynced, kUnsynced };

  // Flushes the file and gives it its name. Nothing can be written afterwards. Fails
  // when an earlier file is to be kept and has appeared meanwhile.
  void complete(Durability durability = Durability::kSynced);

  // The same for two files that belong together: both get their names, or neither, and
  // then the earlier ones stay. Where the file system can't take a replacement back,
  // the failure says that the first file is a new one.
  static void complete_both(PartFile& first, PartFile& second,
                            Durability durability = Durability::kSynced);

  // Returns the bytes from the beginning to the end of what is written so far.
  [[nodiscard]] std::int64_t size() const { return size_; }

 private:
  // What undoes the naming of a part.
  enum class Undo { kNothing, kRemove, kExchange };

  void settle(Durability durability);
  void take_name();
  void take_free_name();
  Undo take_name_for_now();
  [[nodiscard]] bool give_name_back(Undo undo);
  void close(Durability durability);

  std::string name_;
  std::string part_name_;
  Earlier earlier_;
  FileDescriptor file_;
  std::int64_t size_ = 0;
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_PART_FILE_H_
