// The first line of a grid file, which distinguishes published and condensed files.

#ifndef VELDMARK_TERSIFY_FIRST_LINE_H_
#define VELDMARK_TERSIFY_FIRST_LINE_H_

#include <string_view>

#include "companion/line_buffer.h"

namespace veldmark::tersify {

class FirstLine {
 public:
  //   beginning    the file's first kLongestLine bytes, or all of a shorter file; not
  //                empty. Must outlive this.
  explicit FirstLine(std::string_view beginning);

  // Returns the line as LineBuffer::next() does.
  [[nodiscard]] const companion::LineBuffer::Line& line() const { return line_; }

 private:
  companion::LineBuffer lines_;
  companion::LineBuffer::Line line_;
};

// Returns whether it is a whole line of a condensed file.
bool is_condensed(const companion::LineBuffer::Line& line);

// Returns whether it is a line of a published file: 720 integers, but not of the length
// of a condensed line.
bool is_published(const companion::LineBuffer::Line& line);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_FIRST_LINE_H_
