// Tersify's reading of compressed files: members of all kinds, trailing bytes, damage
// and truncation. What is read must be what a plain definition decompresses, and a
// refused file must leave no output.

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "companion/progress_line.h"
#include "fuzz_input.h"
#include "plain_tersify.h"
#include "reached.h"
#include "require.h"
#include "support/scratch_folder.h"
#include "tersify/condense_file.h"
#include "tersify/gzip_format.h"
#include "tersify/gzip_reader.h"
#include "util/failure.h"

namespace veldmark::fuzz {
namespace {

using tersify::kGzipMark;
using testing::file_content;
using testing::InFolder;
using testing::ScratchFolder;
using testing::write_file;

constexpr int kGzipFormat = MAX_WBITS + 16;

Bytef* bytes_of(std::string& text) { return reinterpret_cast<Bytef*>(text.data()); }

std::string gzip_of(std::string text, int level) {
  z_stream stream{};
  constexpr int kUsualMemory = 8;
  require(deflateInit2(&stream, level, Z_DEFLATED, kGzipFormat, kUsualMemory,
                       Z_DEFAULT_STRATEGY) == Z_OK,
          "a text can be compressed");
  std::string bytes(deflateBound(&stream, text.size()), '\0');
  stream.next_in = bytes_of(text);
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = bytes_of(bytes);
  stream.avail_out = static_cast<uInt>(bytes.size());
  require(deflate(&stream, Z_FINISH) == Z_STREAM_END, "a text is compressed at once");
  bytes.resize(stream.total_out);
  deflateEnd(&stream);
  return bytes;
}

// The output of gzip -dc; nullopt if it fails.
struct PlainText {
  std::optional<std::string> text;
  bool garbage = false;
  std::int64_t members = 0;
};

// Removes the first member of `bytes` and returns its text; nullopt for a bad one.
std::optional<std::string> take_member(std::string& bytes) {
  // Larger than any decompressed input; allocated once, because clearing it takes time.
  static std::string room(std::size_t{4} << 20U, '\0');
  z_stream stream{};
  require(inflateInit2(&stream, kGzipFormat) == Z_OK, "a member can be looked at");
  stream.next_in = bytes_of(bytes);
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = bytes_of(room);
  stream.avail_out = static_cast<uInt>(room.size());
  const bool whole = inflate(&stream, Z_FINISH) == Z_STREAM_END;
  bytes.erase(0, stream.total_in);
  inflateEnd(&stream);
  if (!whole) return std::nullopt;
  return room.substr(0, stream.total_out);
}

PlainText plain_gunzip(std::string bytes) {
  PlainText result{.text = ""};
  do {
    ++result.members;
    const std::optional<std::string> text = take_member(bytes);
    if (!text) return {};
    *result.text += *text;
  } while (bytes.starts_with(kGzipMark));
  if (bytes.size() == 1 && bytes.front() != '\0') return {};
  result.garbage = bytes.find_first_not_of('\0') != std::string::npos;
  return result;
}

// --- What the input describes

std::string published_lines(int count) {
  std::string line;
  for (int i = 0; i < kGridColumns; ++i) line += " " + std::to_string(i % 500 - 100);
  std::string text;
  for (int i = 0; i < count; ++i) text += line + "\n";
  return text;
}

std::string member(FuzzInput& input) {
  const std::uint8_t kind = input.byte();
  const int level = input.byte() % 10;  // 0 doesn't compress
  switch (kind % 4) {
    case 0:
      return gzip_of(published_lines(12), level);
    case 1:
      return gzip_of(published_lines(kind / 4), level);
    case 2:
      return gzip_of(std::string(std::size_t{kind} * 3000, 'x'), level);
    default:
      return gzip_of(input.text(input.byte()), level);
  }
}

std::string tail(FuzzInput& input) {
  const std::uint8_t kind = input.byte();
  std::string zeros(kind % 4 == 1 || kind % 4 == 3 ? input.byte() : 0, '\0');
  return zeros + (kind % 4 >= 2 ? input.text(input.byte()) : "");
}

std::string gzip_file(FuzzInput& input) {
  const int members = 1 + input.byte() % 3;
  std::string bytes;
  for (int i = 0; i < members; ++i) bytes += member(input);
  bytes += tail(input);
  const int edit = input.byte() % 4;
  const auto place = static_cast<std::size_t>(
      input.between(2, std::min(static_cast<int>(bytes.size()) - 1, 65000)));
  switch (edit) {
    case 1:
      bytes.resize(place);
      break;
    case 2:
      bytes.at(place) = static_cast<char>(bytes.at(place) + 1 + input.byte() % 255);
      break;
    case 3:
      bytes = std::string(kGzipMark) + input.rest();
      break;
    default:
      break;
  }
  return bytes;
}

// --- What must hold

void check_reader(const std::string& bytes, const PlainText& expected,
                  FuzzInput& input) {
  const std::size_t in_piece = 1U + input.byte();
  const std::size_t out_piece = 1U + std::size_t{16} * input.byte();
  std::string_view left = bytes;
  tersify::GzipReader reader("grid", [&](char* buffer, std::size_t size) {
    const std::size_t count = left.copy(buffer, std::min(size, in_piece));
    left.remove_prefix(count);
    return count;
  });
  std::string text;
  std::string piece(out_piece, '\0');
  try {
    while (const std::size_t count = reader.read(piece.data(), piece.size())) {
      text.append(piece, 0, count);
    }
  } catch (const Failure& failure) {
    reached("compressed files refused");
    require(!expected.text, "what gzip reads is read", failure.what());
    return;
  }
  reached("compressed files read");
  require(expected.text == text, "the text is what gzip makes of it");
  require(expected.garbage == reader.has_trailing_garbage(), "garbage is told");
  require(expected.members == reader.members(), "the members are counted");
  if (expected.members > 1) reached("files of several members");
  if (expected.garbage) reached("files with garbage");
}

std::optional<std::string> plain_copy(const PlainText& expected) {
  if (!expected.text || expected.text->empty()) return std::nullopt;
  std::string copy;
  for (const std::string& line : plain_lines(*expected.text)) {
    const PlainLine plain = plain_condensed(line);
    if (plain.fault != 0) return std::nullopt;
    copy += plain.text + "\n";
  }
  return copy;
}

void check_copy(const std::string& bytes, const PlainText& expected) {
  static const ScratchFolder folder;
  const InFolder in_folder(folder.path());
  std::ostringstream nobody;
  const companion::ProgressLine::Screen screen{.stream = nobody};
  write_file("grid.gz", bytes);
  const std::optional<std::string> copy = plain_copy(expected);
  try {
    const tersify::Condensed done = tersify::condense_file(
        {"grid.gz", std::nullopt, tersify::system_free_space, screen});
    reached("compressed files condensed");
    require(copy == file_content("grid.new"), "the copy is that of the text");
    require(done.size_after == static_cast<std::int64_t>(copy->size()),
            "the size is that of the copy");
    std::filesystem::remove("grid.new");
  } catch (const Failure& failure) {
    const std::string_view what = failure.what();
    const bool is_blamed = what.starts_with("the compressed file 'grid.gz' is ");
    require(!copy, "a good file is condensed", what);
    require(is_blamed == !expected.text, "damage is told as damage", what);
  }
  require(!std::filesystem::exists("grid.new") &&
              !std::filesystem::exists("grid.new.part") &&
              !std::filesystem::exists("grid.new.nc.part"),
          "nothing unfinished is left");
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veldmark::fuzz;  // NOLINT
  FuzzInput input(data, size);
  const std::string bytes = gzip_file(input);
  const PlainText expected = plain_gunzip(bytes);
  check_reader(bytes, expected, input);
  if (bytes.starts_with(kGzipMark)) {
    check_copy(bytes, expected);
  }
  return 0;
}
