// Whether a disk has room for the condensed copy of a file.

#ifndef VELDMARK_TERSIFY_DISK_SPACE_H_
#define VELDMARK_TERSIFY_DISK_SPACE_H_

#include <sys/statvfs.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace veldmark::tersify {

// Returns the bytes that can still be written to the file system of a folder; nullopt
// when the system can't tell.
using FreeSpace = std::function<std::optional<std::int64_t>(const std::string& folder)>;

// Asks the system; a FreeSpace.
std::optional<std::int64_t> system_free_space(const std::string& folder);

// The same for what the system tells of a file system. One that tells no size at all
// doesn't know how much of it is free either.
std::optional<std::int64_t> free_bytes(const struct statvfs& system);

// Guesses the size of the condensed copy of a file from its first lines; nullopt where
// none is whole.
//
//   beginning    the first bytes of the file
//   size         of the whole file, in bytes
std::optional<std::int64_t> expected_size(std::string_view beginning,
                                          std::int64_t size);

// Throws Failure when the disk has too little room for `output`, as far as that is
// known. What an abandoned part of it occupies is free as soon as it is written anew.
void expect_disk_space(const std::string& output,
                       const std::optional<std::int64_t>& needed,
                       const FreeSpace& free_space);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_DISK_SPACE_H_
