// A stream buffer for the standard streams.

#ifndef VELDMARK_CONSOLE_STANDARD_STREAM_H_
#define VELDMARK_CONSOLE_STANDARD_STREAM_H_

#include <array>
#include <cstddef>
#include <streambuf>

namespace veldmark {

// Reads or writes an open descriptor and leaves it open. Unlike the library's own
// buffers it also waits on a non-blocking descriptor: another program that shares the
// terminal may have set it so. After a failure the stream is bad, and errno holds the
// reason. The destructor does not flush.
class StandardStream : public std::streambuf {
 public:
  explicit StandardStream(int descriptor) : descriptor_(descriptor) {}

 protected:
  int_type underflow() override;
  int_type overflow(int_type character) override;
  int sync() override;

 private:
  static constexpr std::size_t kBufferSize = 8192;

  int descriptor_;
  std::array<char, kBufferSize> buffer_{};
};

}  // namespace veldmark

#endif  // VELDMARK_CONSOLE_STANDARD_STREAM_H_
