#include "tersify/first_line.h"

#include <cstddef>
#include <vector>

#include "tersify/condense_line.h"
#include "tersify/grid_check.h"
#include "tersify/grid_shape.h"

namespace veldmark::tersify {
namespace {

using companion::LineBuffer;

// Returns a reader of a text in memory.
LineBuffer::ReadMore reader_of(std::string_view text) {
  return [rest = text](char* buffer, std::size_t size) mutable {
    const std::size_t count = rest.copy(buffer, size);
    rest.remove_prefix(count);
    return count;
  };
}

}  // namespace

FirstLine::FirstLine(std::string_view beginning)
    : lines_(reader_of(beginning)), line_(lines_.next().value_or(LineBuffer::Line{})) {}

bool is_condensed(const LineBuffer::Line& line) {
  return line.text.size() == kCondensedLine &&
         count_good_fields(line.text) == kGridColumns;
}

bool is_published(const LineBuffer::Line& line) {
  if (line.end == LineBuffer::End::kTooLong || line.text.size() == kCondensedLine) {
    return false;
  }
  std::vector<char> output(kCondensedCapacity);
  return !condense_line(line.text, output.data()).has_value();
}

}  // namespace veldmark::tersify
