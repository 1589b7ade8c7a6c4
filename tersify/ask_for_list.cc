#include "tersify/ask_for_list.h"

#include <cstddef>
#include <optional>
#include <ostream>

#include "companion/input_file.h"
#include "companion/line_buffer.h"
#include "tersify/name_list.h"
#include "util/failure.h"

namespace veldmark::tersify {

using companion::LineBuffer;

std::string ask_for_list(const companion::Environment& environment,
                         companion::Inputs& inputs) {
  environment.output
      << "\n Program Tersify\n\n"
         " This program makes condensed copies of CRU TS data files.\n"
         " Enter the name of the list file, a text file with one raw file \n"
         " name/line.\n\n LIST FILE ==> "
      << std::flush;
  const companion::InputFile input(environment.input, "the standard input");
  inputs.add(input.shown_name(), input.identity());
  LineBuffer lines(
      [&](char* buffer, std::size_t size) { return input.read(buffer, size); });
  const std::optional<LineBuffer::Line> answer = lines.next();
  if (!answer) {
    environment.output << "\n";
    throw UsageError("the input ended before a list file was named");
  }
  std::string name = trimmed_name(answer->text);
  if (name.empty()) {
    throw UsageError("no list file was named");
  }
  return name;
}

}  // namespace veldmark::tersify
