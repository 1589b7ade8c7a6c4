// An output file that gets its name only when it is complete.

#ifndef VELDMARK_UTIL_PART_FILE_H_
#define VELDMARK_UTIL_PART_FILE_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "util/file_descriptor.h"

namespace veldmark {

// Writes to NAME.part and renames it to NAME at the end. Without that rename the
// destructor removes NAME.part. An existing file NAME stays unchanged until the rename.
// The part is always a new file: anything found at NAME.part, such as the part of a
// killed run, is removed and not written to.
//
// The part is locked until the rename, so that a second run for the same output fails
// at once and does no harm.
//
// The constructor, and the members that write or complete, throw Failure "cannot write
// 'NAME': reason" (or 'NAME.part'). The constructor and those that complete also throw
// Interrupted if an InterruptWatch has caught a signal.
class PartFile {
 public:
  // Throws Failure if NAME exists and is not a regular file (the rename would replace a
  // device by a file), if another run is writing NAME.part (or may be: a part of
  // another user that cannot be opened), and if NAME.part is a folder.
  //
  //   if_exists    what happens to a file NAME that exists at the rename: it is
  //                replaced, or it is kept and the member that completes fails
  enum class IfExists { kReplace, kKeep };
  explicit PartFile(std::string name, IfExists if_exists = IfExists::kReplace);
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;
  PartFile(PartFile&&) = delete;
  PartFile& operator=(PartFile&&) = delete;

  // Returns the name of the part of output `name`.
  [[nodiscard]] static std::string part_name(const std::string& name);

  // Releases the lock, for a library that opens the part by its name. It must have
  // closed the part before `complete` is called.
  void release_lock();

  // Appends the whole text.
  void write(std::string_view text);

  // Writes the whole text at byte `offset`. Bytes that are never written are zero.
  void write_at(std::int64_t offset, std::string_view text);

  // kSynced: syncs the file before the rename, so that NAME is complete even after a
  // power failure. kUnsynced: does not wait for the disk; for output that is quickly
  // made again.
  enum class Durability { kSynced, kUnsynced };

  // Flushes the part and renames it to NAME, in this order. Nothing can be written
  // afterwards. Throws Failure if an existing file is to be kept and has appeared.
  void complete(Durability durability = Durability::kSynced);

  // Completes two files that belong together: both are renamed, or neither, and then
  // existing files are unchanged. If the file system cannot undo the first rename, the
  // Failure says that the first file is the new one.
  static void complete_both(PartFile& first, PartFile& second,
                            Durability durability = Durability::kSynced);

  // Returns the number of bytes from the start to the end of what is written so far.
  [[nodiscard]] std::int64_t size() const { return size_; }

 private:
  // How to undo the rename of a part.
  enum class Undo { kNothing, kRemove, kExchange };

  void settle(Durability durability);
  void take_name();
  void take_free_name();
  Undo take_name_reversibly();
  [[nodiscard]] bool undo_rename(Undo undo);
  void close(Durability durability);

  std::string name_;
  std::string part_name_;
  IfExists if_exists_;
  FileDescriptor file_;
  std::int64_t size_ = 0;
};

}  // namespace veldmark

#endif  // VELDMARK_UTIL_PART_FILE_H_
