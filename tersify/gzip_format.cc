#include "tersify/gzip_format.h"

#include <cstddef>

#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

constexpr std::size_t kSizeBytes = 4;
constexpr unsigned kBitsPerByte = 8;
constexpr std::int64_t kMaxExpansion = 1032;  // the highest possible ratio of deflate

// Decodes a little-endian number.
std::int64_t number_of(std::string_view bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = bytes.size(); i > 0; --i) {
    number = number << kBitsPerByte | static_cast<unsigned char>(bytes[i - 1]);
  }
  return static_cast<std::int64_t>(number);
}

}  // namespace

std::string how_to_decompress(const std::string& name) {
  return name.ends_with(".gz") ? ": gunzip -k " + in_quotes(name) : "";
}

std::optional<std::int64_t> least_decompressed_size(const companion::InputFile& file) {
  const std::int64_t size = number_of(file.ending(kSizeBytes));
  if (size > kMaxExpansion * file.size()) {
    return std::nullopt;  // the file ends with garbage
  }
  return size;
}

}  // namespace veldmark::tersify
