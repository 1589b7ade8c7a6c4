// The first and last bytes of gzip files, read without zlib.

#ifndef VELDMARK_TERSIFY_GZIP_FORMAT_H_
#define VELDMARK_TERSIFY_GZIP_FORMAT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "companion/input_file.h"

namespace veldmark::tersify {

// The magic bytes of a gzip file.
constexpr std::string_view kGzipMark = "\x1f\x8b";

// Returns the shell command that decompresses a file, ": gunzip -k 'NAME'"; "" if
// gunzip would refuse the name.
std::string how_to_decompress(const std::string& name);

// Returns a lower bound of the decompressed size of a gzip file, in bytes: the size of
// its last member modulo 4 GiB, which the file ends with. Returns nullopt if the last
// bytes can't be a size.
std::optional<std::int64_t> least_decompressed_size(const companion::InputFile& file);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GZIP_FORMAT_H_
