// Decompresses gzip files.

#ifndef VELDMARK_TERSIFY_GZIP_READER_H_
#define VELDMARK_TERSIFY_GZIP_READER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "companion/line_buffer.h"

namespace veldmark::tersify {

// Accepts what gzip -dc accepts: one or several concatenated members. Zero bytes after
// the last member (padding of tapes) are skipped; anything else there is trailing
// garbage and is ignored.
class GzipReader {
 public:
  //   name          the file's name for messages
  //   compressed    reads the file's bytes; its exceptions pass through
  //
  // Throws Failure if tersify was built without zlib.
  GzipReader(std::string name, companion::LineBuffer::ReadMore compressed);
  ~GzipReader();
  GzipReader(const GzipReader&) = delete;
  GzipReader& operator=(const GzipReader&) = delete;
  GzipReader(GzipReader&&) = delete;
  GzipReader& operator=(GzipReader&&) = delete;

  // Reads the next `size` decompressed bytes into `buffer`, or the rest if there are
  // fewer. Returns their number; 0 at the end, after all checksums have been verified.
  //
  // Throws Failure if the file is damaged or ends within a member.
  std::size_t read(char* buffer, std::size_t size);

  // Reads and discards the rest, to verify it. Throws as read() does.
  void read_to_end();

  // Returns the number of members begun so far.
  [[nodiscard]] std::int64_t members() const;

  // Returns whether garbage follows the last member. Requires that the end was reached.
  [[nodiscard]] bool has_trailing_garbage() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GZIP_READER_H_
