// A text file that is written: created or emptied, buffered, every write checked.

#ifndef VELDMARK_OUTPUT_OUTPUT_FILE_H_
#define VELDMARK_OUTPUT_OUTPUT_FILE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/run_end.h"
#include "util/file_descriptor.h"
#include "util/file_identity.h"

namespace veldmark {

// A write that fails ends the run (RunEnd). Until `close` has returned, nothing may
// claim that the file is complete.
class OutputFile {
 public:
  // Creates `name`, or empties the file there, which keeps its owner and permissions.
  // Until `close` no other run can write it.
  //
  //   in_use    files that `name` must not lead to
  //
  // Throws RunEnd, before anything is lost, where `name` leads to a file in use,
  // another run is writing it, it is a pipe (which would have no end), or it can't be
  // opened.
  OutputFile(std::string name, Channel channel, const FilesInUse& in_use = {});

  // An end of the run on the way here leaves in the file what was written so far.
  ~OutputFile();

  OutputFile(OutputFile&& other) noexcept = default;
  OutputFile& operator=(OutputFile&& other) = delete;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Returns which file it is; nullopt for a device.
  [[nodiscard]] std::optional<FileIdentity> identity() const { return identity_; }

  // Appends `text` as it is.
  void write(std::string_view text);

  // The same without a copy, for the hot loop: gives room for `size` characters, of
  // which `keep` then says how many were filled in. size <= kMostRoom.
  static constexpr std::size_t kMostRoom = std::size_t{64} * 1024;
  char* room(std::size_t size);
  void keep(std::size_t size) { used_ += size; }

  // Writes what is held back and closes the file. A second close does nothing.
  void close();

 private:
  void take(const FilesInUse& in_use);
  void write_out();

  std::string name_;
  Channel channel_;
  FileDescriptor file_;
  std::optional<FileIdentity> identity_;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
};

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_OUTPUT_FILE_H_
