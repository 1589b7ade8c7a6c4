// What gzip files have at their beginning and their end; no library is needed to see
// it.

#ifndef VELDMARK_TERSIFY_GZIP_FORMAT_H_
#define VELDMARK_TERSIFY_GZIP_FORMAT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "companion/input_file.h"

namespace veldmark::tersify {

// The first two bytes.
constexpr std::string_view kGzipMark = "\x1f\x8b";

// Returns how to decompress a file by hand, ": gunzip -k 'NAME'"; "" where gunzip would
// not take its name.
std::string how_to_decompress(const std::string& name);

// Returns how many bytes a gzip file has decompressed, at the least: its end tells the
// size of its last member, modulo 4 GiB. nullopt where that can't be its size.
std::optional<std::int64_t> least_decompressed_size(const companion::InputFile& file);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GZIP_FORMAT_H_
