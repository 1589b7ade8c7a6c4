// Published text to its condensed copy, wherever the text comes from.

#ifndef VELDMARK_TERSIFY_CONDENSE_TEXT_H_
#define VELDMARK_TERSIFY_CONDENSE_TEXT_H_

#include <cstdint>
#include <optional>
#include <string>

#include "companion/line_buffer.h"
#include "tersify/condense_job.h"
#include "util/failure.h"

namespace veldmark::tersify {

// The text is no published grid file.
struct TextFault : Failure {
  using Failure::Failure;
};

// A text from its beginning to its end.
//
//   beginning    its first kLongestLine bytes, or the whole of a shorter one
//   size         of the whole text, in bytes; nullopt where that isn't known
//   read_more    hands out the text, from its beginning on
struct PublishedText {
  const std::string& beginning;
  std::optional<std::int64_t> size;
  companion::LineBuffer::ReadMore read_more;
};

// Condenses a text; see condense_file. A last line without line end counts when it is
// whole. The result's size_before is left to the caller.
//
// Throws TextFault that names the file, and in it the line and the field, besides what
// `read_more` throws.
Condensed condense_text(const CondenseJob& job, const PublishedText& text);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_TEXT_H_
