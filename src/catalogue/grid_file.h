// An open condensed grid file; grid/grid_layout.h has its layout.

#ifndef VELDMARK_CATALOGUE_GRID_FILE_H_
#define VELDMARK_CATALOGUE_GRID_FILE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "util/file_descriptor.h"
#include "util/file_identity.h"

namespace veldmark {

class GridFile {
 public:
  // Opens `name` for reading. Throws FileFault where it can't be opened or is a folder.
  explicit GridFile(std::string name);

  [[nodiscard]] const std::string& name() const { return name_; }

  // Returns which file it is; nullopt for a pipe or a device.
  [[nodiscard]] std::optional<FileIdentity> identity() const { return identity_; }

  // Reads up to `size` further bytes. Returns their number, 0 at the end. Throws
  // FileFault where the system fails.
  [[nodiscard]] std::size_t read(char* buffer, std::size_t size) const;

  // Reads `size` bytes from `offset` on, which doesn't move the position of read.
  // Returns false when the file has no such bytes or the system fails.
  [[nodiscard]] bool read_at(std::int64_t offset, char* buffer, std::size_t size) const;

  // Returns how many bytes the file has; nullopt for a pipe or a device.
  [[nodiscard]] std::optional<std::int64_t> size() const;

 private:
  std::string name_;
  FileDescriptor file_;
  std::optional<FileIdentity> identity_;
};

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_GRID_FILE_H_
