// The text inside a gzip file.

#ifndef VELDMARK_TERSIFY_GZIP_READER_H_
#define VELDMARK_TERSIFY_GZIP_READER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "companion/line_buffer.h"

namespace veldmark::tersify {

// Decompresses what gzip -dc decompresses: one member or several, one after the other.
// Zero bytes after the last member, which tapes leave, are skipped; anything else there
// is garbage and is left unread.
class GzipReader {
 public:
  //   name          of the file, for messages
  //   compressed    hands out its bytes; what it throws passes through
  //
  // Throws Failure where tersify was built without zlib.
  GzipReader(std::string name, companion::LineBuffer::ReadMore compressed);
  ~GzipReader();
  GzipReader(const GzipReader&) = delete;
  GzipReader& operator=(const GzipReader&) = delete;
  GzipReader(GzipReader&&) = delete;
  GzipReader& operator=(GzipReader&&) = delete;

  // Puts the next `size` bytes in `buffer`, or what is left. Returns their number; 0 at
  // the end, when all checksums have been found right.
  //
  // Throws Failure when the file is damaged, and when it ends before its last member
  // does.
  std::size_t read(char* buffer, std::size_t size);

  // Reads on to the end only to see that nothing is damaged or missing.
  void read_to_end();

  // Returns how many members have been begun.
  [[nodiscard]] std::int64_t members() const;

  // Is there something after the last member? To be asked at the end.
  [[nodiscard]] bool has_trailing_garbage() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_GZIP_READER_H_
