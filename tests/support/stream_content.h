// Reads a whole file, for tests of what programs write.

#ifndef VELDMARK_TESTS_SUPPORT_STREAM_CONTENT_H_
#define VELDMARK_TESTS_SUPPORT_STREAM_CONTENT_H_

#include <istream>
#include <sstream>
#include <string>
#include <utility>

namespace veldmark::testing {

// Returns the rest of a stream; "" if it cannot be read. It is read in large blocks,
// because reading character by character is slow with sanitizers.
inline std::string stream_content(std::istream& stream) {
  std::ostringstream content;
  content << stream.rdbuf();
  return std::move(content).str();
}

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_STREAM_CONTENT_H_
