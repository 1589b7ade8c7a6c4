#include "tersify/text_file.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "companion/line_buffer.h"
#include "tersify/gzip_format.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

struct Compression {
  std::string_view first_bytes;
  std::string_view name;
};

constexpr std::array<Compression, 5> kCompressions{{{kGzipMark, "gzip"},
                                                    {"PK\x03\x04", "zip"},
                                                    {"PK\x05\x06", "zip"},
                                                    {"BZh", "bzip2"},
                                                    {"\xfd"
                                                     "7zXZ",
                                                     "xz"}}};

}  // namespace

void refuse_compressed(const std::string& name, std::string_view first_bytes) {
  for (const Compression& compression : kCompressions) {
    if (first_bytes.starts_with(compression.first_bytes)) {
      throw Failure(in_quotes(name) + " is compressed (" +
                    std::string(compression.name) + "); decompress it first" +
                    how_to_decompress(name));
    }
  }
}

companion::InputFile open_text_file(const std::string& name,
                                    companion::InputFile::Kind kind) {
  companion::InputFile file(name, kind);
  if (file.identity()) {
    // More than the first bytes of any compression; the readers look at as many.
    refuse_compressed(name, file.beginning(companion::kLongestLine));
  }
  return file;
}

}  // namespace veldmark::tersify
