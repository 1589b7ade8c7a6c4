// Makes the condensed copy of a published text, read from a file or decompressed.

#ifndef VELDMARK_TERSIFY_CONDENSE_TEXT_H_
#define VELDMARK_TERSIFY_CONDENSE_TEXT_H_

#include <cstdint>
#include <optional>
#include <string>

#include "companion/line_buffer.h"
#include "tersify/condense_job.h"
#include "util/failure.h"

namespace veldmark::tersify {

// The text is not a published grid file.
struct TextFault : Failure {
  using Failure::Failure;
};

// A published text.
//
//   beginning    its first kLongestLine bytes, or all of a shorter text
//   size         of the whole text, in bytes; nullopt if unknown
//   read_more    reads the text, from its first byte on
struct PublishedText {
  const std::string& beginning;
  std::optional<std::int64_t> size;
  companion::LineBuffer::ReadMore read_more;
};

// Condenses a text; see condense_file. The caller sets size_before of the result.
//
// Throws TextFault that names the file, the line and the field. Exceptions of
// `read_more` pass through.
Condensed condense_text(const CondenseJob& job, const PublishedText& text);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_TEXT_H_
