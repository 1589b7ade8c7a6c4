#include "tersify/text_file.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

struct Compression {
  std::string_view first_bytes;
  std::string_view name;
};

constexpr std::array<Compression, 5> kCompressions{{{"\x1f\x8b", "gzip"},
                                                    {"PK\x03\x04", "zip"},
                                                    {"PK\x05\x06", "zip"},
                                                    {"BZh", "bzip2"},
                                                    {"\xfd"
                                                     "7zXZ",
                                                     "xz"}}};
constexpr std::size_t kLongestMark = 5;

// gunzip takes no other endings.
std::string command_for(const std::string& name) {
  return name.ends_with(".gz") ? ": gunzip -k " + in_quotes(name) : "";
}

}  // namespace

companion::InputFile open_text_file(const std::string& name,
                                    companion::InputFile::Kind kind) {
  companion::InputFile file(name, kind);
  const std::string first_bytes =
      file.identity() ? file.beginning(kLongestMark) : std::string();
  for (const Compression& compression : kCompressions) {
    if (first_bytes.starts_with(compression.first_bytes)) {
      throw Failure(in_quotes(name) + " is compressed (" +
                    std::string(compression.name) + "); decompress it first" +
                    command_for(name));
    }
  }
  return file;
}

}  // namespace veldmark::tersify
