// The first line of a grid file, which tells a published file from a condensed one.

#ifndef VELDMARK_TERSIFY_FIRST_LINE_H_
#define VELDMARK_TERSIFY_FIRST_LINE_H_

#include <string_view>

#include "companion/line_buffer.h"

namespace veldmark::tersify {

class FirstLine {
 public:
  //   beginning    of the file, kLongestLine bytes or the whole of a shorter one; not
  //                empty. Must outlive this.
  explicit FirstLine(std::string_view beginning);

  // Returns the line as a LineBuffer reads it.
  [[nodiscard]] const companion::LineBuffer::Line& line() const { return line_; }

 private:
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
