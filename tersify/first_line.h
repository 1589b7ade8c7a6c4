// The first line of a grid file, which tells a published file from a condensed one.

#ifndef VELDMARK_TERSIFY_FIRST_LINE_H_
#define VELDMARK_TERSIFY_FIRST_LINE_H_

#include <string>
#include <string_view>

#include "companion/input_file.h"
#include "companion/line_buffer.h"

namespace veldmark::tersify {

class FirstLine {
 public:
  // Reads it; the position of the file stays. Requires a regular file that isn't empty.
  explicit FirstLine(const companion::InputFile& file);

  // Returns the line as a LineBuffer reads it.
  [[nodiscard]] const companion::LineBuffer::Line& line() const { return line_; }

  // Returns the beginning of the file that was read for it: 256 KiB, or the whole file.
  [[nodiscard]] std::string_view beginning() const { return beginning_; }

 private:
  std::string beginning_;
  companion::LineBuffer lines_;
  companion::LineBuffer::Line line_;
};

// Is it a whole line of a condensed file?
bool is_condensed(const companion::LineBuffer::Line& line);

// Is it a line of a published file: 720 integers, but not in the length of a condensed
// line?
bool is_published(const companion::LineBuffer::Line& line);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_FIRST_LINE_H_
