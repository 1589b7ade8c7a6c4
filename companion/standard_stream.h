// A stream to the standard output or the standard error.

#ifndef VELDMARK_COMPANION_STANDARD_STREAM_H_
#define VELDMARK_COMPANION_STANDARD_STREAM_H_

#include <array>
#include <cstddef>
#include <streambuf>

namespace veldmark::companion {

// Writes to an open descriptor. Another program may have left a terminal or a pipe in a
// state where writing doesn't wait for the reader (O_NONBLOCK): this waits.
class StandardStream : public std::streambuf {
 public:
  explicit StandardStream(int descriptor);
  ~StandardStream() override;
  StandardStream(const StandardStream&) = delete;
  StandardStream& operator=(const StandardStream&) = delete;
  StandardStream(StandardStream&&) = delete;
  StandardStream& operator=(StandardStream&&) = delete;

 protected:
  int_type overflow(int_type character) override;
  int sync() override;

 private:
  bool write_out();

  int descriptor_;
  std::array<char, 4096> buffer_{};
};

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_STANDARD_STREAM_H_
