// A stream buffer for the standard output or the standard error.

#ifndef VELDMARK_COMPANION_STANDARD_STREAM_H_
#define VELDMARK_COMPANION_STANDARD_STREAM_H_

#include <array>
#include <cstddef>
#include <streambuf>

namespace veldmark::companion {

// Writes to an open descriptor, and waits for the reader even if another program has
// left the terminal or pipe in non-blocking mode (O_NONBLOCK).
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
