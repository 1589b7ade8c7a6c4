#include "tersify/name_list.h"

#include <cstddef>
#include <optional>
#include <utility>

#include "tersify/input_file.h"
#include "tersify/line_buffer.h"
#include "util/failure.h"

namespace veldmark::tersify {

std::string trimmed_name(std::string_view line) {
  return std::string(line.substr(0, line.find_last_not_of(" \t\r") + 1));
}

std::vector<std::string> read_name_list(const std::string& list_name) {
  InputFile list(list_name);
  LineBuffer lines(
      [&](char* buffer, std::size_t size) { return list.read(buffer, size); });
  std::vector<std::string> names;
  while (const std::optional<LineBuffer::Line> line = lines.next()) {
    if (line->end == LineBuffer::End::kTooLong) {
      throw Failure(list_name + " is no list of file names");
    }
    std::string name = trimmed_name(line->text);
    if (!name.empty()) names.push_back(std::move(name));
  }
  if (names.empty()) throw Failure("the list " + list_name + " names no file");
  return names;
}

}  // namespace veldmark::tersify
