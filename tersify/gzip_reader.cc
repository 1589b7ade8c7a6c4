#include "tersify/gzip_reader.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "tersify/gzip_format.h"
#include "util/failure.h"
#include "util/in_quotes.h"
#include "util/piece_size.h"

namespace veldmark::tersify {
namespace {

constexpr int kGzipWindow = MAX_WBITS + 16;  // 16: with a gzip header and trailer

Bytef* bytes_of(char* text) { return reinterpret_cast<Bytef*>(text); }

}  // namespace

struct GzipReader::State {
  State(std::string file_name, companion::LineBuffer::ReadMore read_compressed)
      : name(std::move(file_name)), compressed(std::move(read_compressed)) {
    stream.next_in = bytes_of(input.data());
    if (inflateInit2(&stream, kGzipWindow) != Z_OK) {
      throw std::bad_alloc();
    }
  }
  ~State() { inflateEnd(&stream); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  State(State&&) = delete;
  State& operator=(State&&) = delete;

  // Fills the input buffer until it holds `count` bytes. Returns false if the file ends
  // before that.
  bool has(std::size_t count) {
    while (stream.avail_in < count) {
      std::memmove(input.data(), stream.next_in, stream.avail_in);
      stream.next_in = bytes_of(input.data());
      const std::size_t more =
          compressed(input.data() + stream.avail_in, input.size() - stream.avail_in);
      if (more == 0) {
        return false;
      }
      stream.avail_in += static_cast<uInt>(more);
    }
    return true;
  }

  void skip_byte() {
    ++stream.next_in;
    --stream.avail_in;
  }

  // Returns whether another member follows. As in gzip, a single byte after a member
  // counts as the beginning of one that is cut off.
  bool is_member_next() {
    if (!has(1)) {
      return false;
    }
    if (*stream.next_in == 0) {
      while (has(1) && *stream.next_in == 0) {
        skip_byte();
      }
      garbage = has(1);
      return false;
    }
    if (!has(kGzipMark.size())) {
      fail_cut();
    }
    garbage = std::memcmp(stream.next_in, kGzipMark.data(), kGzipMark.size()) != 0;
    return !garbage;
  }

  // Decompresses until the output buffer is full or the input ends.
  void fill() {
    while (!ended && stream.avail_out > 0) {
      if (!has(1)) {
        fail_cut();
      }
      const int result = inflate(&stream, Z_NO_FLUSH);
      if (result == Z_STREAM_END) {
        ended = !is_member_next();
        if (!ended) {
          inflateReset(&stream);
          ++members;
        }
      } else if (result == Z_MEM_ERROR) {
        throw std::bad_alloc();
      } else if (result != Z_OK) {
        fail(std::string("is damaged: ") +
             (stream.msg != nullptr ? stream.msg : "its data make no sense"));
      }
    }
  }

  [[noreturn]] void fail_cut() const { fail("is cut: it ends before its data do"); }

  [[noreturn]] void fail(const std::string& what) const {
    throw Failure("the compressed file " + in_quotes(name) + " " + what);
  }

  std::string name;
  companion::LineBuffer::ReadMore compressed;
  std::vector<char> input = std::vector<char>(kPieceSize);
  z_stream stream{};
  bool ended = false;
  bool garbage = false;
  std::int64_t members = 1;
};

GzipReader::GzipReader(std::string name, companion::LineBuffer::ReadMore compressed)
    : state_(std::make_unique<State>(std::move(name), std::move(compressed))) {}

GzipReader::~GzipReader() = default;

std::size_t GzipReader::read(char* buffer, std::size_t size) {
  const std::size_t most =
      std::min<std::size_t>(size, std::numeric_limits<uInt>::max());
  z_stream& stream = state_->stream;
  stream.next_out = bytes_of(buffer);
  stream.avail_out = static_cast<uInt>(most);
  state_->fill();
  return most - stream.avail_out;
}

void GzipReader::read_to_end() {
  std::vector<char> discarded(kPieceSize);
  while (read(discarded.data(), discarded.size()) != 0) {
  }
}

std::int64_t GzipReader::members() const { return state_->members; }

bool GzipReader::has_trailing_garbage() const { return state_->garbage; }

}  // namespace veldmark::tersify
