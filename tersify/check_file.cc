#include "tersify/check_file.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "companion/input_file.h"
#include "companion/line_buffer.h"
#include "tersify/first_line.h"
#include "tersify/grid_check.h"
#include "tersify/grid_content.h"
#include "tersify/text_file.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {

using companion::InputFile;

Verdict check_file(const std::string& name, const GridShape& shape,
                   const companion::ProgressLine::Screen& screen) {
  const InputFile input = open_text_file(name, InputFile::Kind::kRegular);
  if (input.size() > 0 && is_published(FirstLine(input).line())) {
    return {"it is a published file; condense it with: tersify " + in_quotes(name), {}};
  }
  companion::ProgressLine progress(screen, in_quotes(name), input.size());
  companion::LineBuffer lines([&](char* buffer, std::size_t size) {
    const std::size_t count = input.read(buffer, size);
    progress.add(static_cast<std::int64_t>(count));
    return count;
  });
  GridContent content(shape);
  std::optional<std::string> fault = find_fault(
      lines, shape,
      [&](std::int64_t line, std::string_view text) { content.see(line, text); });
  return {std::move(fault), content.warnings()};
}

}  // namespace veldmark::tersify
