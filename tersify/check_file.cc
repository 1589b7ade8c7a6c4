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
#include "tersify/release_years.h"
#include "tersify/text_file.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {

namespace {

using companion::InputFile;

// Sets the years of a complete file, and warns if its name says others.
void add_years(Verdict& verdict, const std::string& name, const GridShape& shape,
               std::int64_t lines) {
  const std::int32_t count = whole_years(lines, shape).value();
  verdict.years = years_text(shape.first_year, count);
  if (const std::optional<std::string> warning = other_years_warning(name, count)) {
    verdict.warnings.insert(verdict.warnings.begin(), *warning);
  }
}

}  // namespace

Verdict check_file(const std::string& name, const GridShape& usual_shape,
                   const companion::ProgressLine::Screen& screen) {
  const InputFile input = open_text_file(name, InputFile::Kind::kRegular);
  const std::string beginning = input.beginning(companion::kLongestLine);
  if (!beginning.empty() && is_published(FirstLine(beginning).line())) {
    return {
        "it is a published file; condense it with: tersify " + in_quotes(name), {}, {}};
  }
  companion::ProgressLine progress(screen, in_quotes(name), input.size());
  companion::LineBuffer lines([&](char* buffer, std::size_t size) {
    const std::size_t count = input.read(buffer, size);
    progress.add(static_cast<std::int64_t>(count));
    return count;
  });
  const GridShape shape = shape_by_name(name, usual_shape);
  GridContent content(shape);
  std::int64_t last_line{};
  std::optional<std::string> fault =
      find_fault(lines, shape, [&](std::int64_t line, std::string_view text) {
        content.add_line(line, text);
        last_line = line;
      });
  Verdict verdict{std::move(fault), {}, content.warnings()};
  if (!verdict.fault) {
    add_years(verdict, name, shape, last_line);
  }
  return verdict;
}

}  // namespace veldmark::tersify
