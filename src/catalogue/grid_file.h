// An open condensed grid file; grid/grid_layout.h describes its layout.

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
  // Opens `name` for reading. Throws FileFault if it cannot be opened or is a folder.
  explicit GridFile(std::string name);

  [[nodiscard]] const std::string& name() const { return name_; }

  // Returns the identity of the file; nullopt for a pipe or a device.
  [[nodiscard]] std::optional<FileIdentity> identity() const { return identity_; }

  // Reads up to `size` bytes from the current position. Returns the number of bytes
  // read, 0 at the end of the file. Throws FileFault if the read fails.
  [[nodiscard]] std::size_t read(char* buffer, std::size_t size) const;

  // Reads `size` bytes starting at `offset`, without moving the position for `read`.
  // Returns false if the file ends before them or the read fails.
  [[nodiscard]] bool read_at(std::int64_t offset, char* buffer, std::size_t size) const;

  // Returns the size of the file in bytes; 0 for a pipe or a device.
  [[nodiscard]] std::int64_t size() const;

 private:
  std::string name_;
  FileDescriptor file_;
  std::optional<FileIdentity> identity_;
};

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_GRID_FILE_H_
