#include "extract/file_kind.h"

#include <array>
#include <cstddef>

#include "grid/grid_layout.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

struct Signature {
  std::string_view bytes;
  std::string_view what;
};

using namespace std::string_view_literals;

constexpr std::array kSignatures{
    Signature{
        "\x1f\x8b"sv,
        "is compressed: decompress it with gzip -d (tersify condenses a published "
        "file as it is)"},
    Signature{"BZh"sv, "is compressed: decompress it with bzip2 -d"},
    Signature{"\xfd"
              "7zXZ"sv,
              "is compressed: decompress it with xz -d"},
    Signature{"\x28\xb5\x2f\xfd"sv, "is compressed: decompress it with zstd -d"},
    Signature{"PK\x03\x04"sv, "is an archive: unpack it with unzip"},
    Signature{
        "CDF"sv,
        "is a netCDF file, no condensed grid file; tersify condenses published ones"},
    Signature{"\x89HDF"sv,
              "is a netCDF-4 or HDF5 file, no condensed grid file; tersify condenses "
              "published ones"},
};

std::size_t count_words(std::string_view line) {
  constexpr std::string_view kBlanks = " \t\r";
  std::size_t words = 0;
  std::size_t place = line.find_first_not_of(kBlanks);
  while (place != std::string_view::npos) {
    ++words;
    place = line.find_first_of(kBlanks, place);
    place = line.find_first_not_of(kBlanks, place);
  }
  return words;
}

}  // namespace

std::string describe_other_file(const std::string& name, std::string_view head) {
  if (head.empty()) {
    return in_quotes(name) + " is empty";
  }
  for (const Signature& signature : kSignatures) {
    if (head.starts_with(signature.bytes)) {
      return in_quotes(name) + " " + std::string(signature.what);
    }
  }
  if (head.find('\0') != std::string_view::npos) {
    return in_quotes(name) + " is a binary file, no condensed grid file";
  }
  std::string_view line = head.substr(0, head.find('\n'));
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  if (line.size() != kLineLength && count_words(line) == kGridColumns) {
    return in_quotes(name) + " is in the published form: condense it with tersify " +
           name;
  }
  if (line.size() == head.size() && line.size() <= kLineLength) {
    return in_quotes(name) + " is no condensed grid file: it ends in its first line, " +
           "after " + std::to_string(line.size()) + " of 3600 characters";
  }
  return in_quotes(name) + " is no condensed grid file: its first line has " +
         (line.size() == head.size() ? "at least " : "") + std::to_string(line.size()) +
         " characters, not 3600";
}

}  // namespace veldmark::extract
