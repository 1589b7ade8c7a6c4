// Checks whether a disk has enough free space for the condensed copy of a file.

#ifndef VELDMARK_TERSIFY_DISK_SPACE_H_
#define VELDMARK_TERSIFY_DISK_SPACE_H_

#include <sys/statvfs.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark::tersify {

// Returns the free bytes of the file system of a folder; nullopt if the system doesn't
// say.
using FreeSpace = std::function<std::optional<std::int64_t>(const std::string& folder)>;

// The FreeSpace that queries the operating system.
std::optional<std::int64_t> system_free_space(const std::string& folder);

// Returns the free bytes that `system` reports; nullopt if it reports a size of 0,
// because then the free space is unknown as well.
std::optional<std::int64_t> free_bytes(const struct statvfs& system);

// Estimates the size of a file's condensed copy from the length of its first lines.
// Returns nullopt if `beginning` contains no whole line.
//
//   beginning    the first bytes of the file
//   size         of the whole file, in bytes
std::optional<std::int64_t> expected_size(std::string_view beginning,
                                          std::int64_t size);

// Throws Failure if the disk has too little free space for `output`; does nothing if
// either size is unknown. The space of an abandoned part file of `output` counts as
// free, as this run overwrites it.
void expect_disk_space(const std::string& output,
                       const std::optional<std::int64_t>& needed,
                       const FreeSpace& free_space);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_DISK_SPACE_H_
