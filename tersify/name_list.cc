#include "tersify/name_list.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <optional>
#include <utility>

#include "companion/input_file.h"
#include "companion/line_buffer.h"
#include "tersify/text_file.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {
namespace {

using companion::InputFile;
using companion::LineBuffer;

bool can_be_a_path(std::string_view name) {
  if (name.size() >= PATH_MAX || name.find('\0') != std::string_view::npos) {
    return false;
  }
  while (!name.empty()) {
    const std::size_t length = std::min(name.find('/'), name.size());
    if (length > NAME_MAX) {
      return false;
    }
    name.remove_prefix(std::min(length + 1, name.size()));
  }
  return true;
}

}  // namespace

std::string trimmed_name(std::string_view line) {
  return std::string(line.substr(0, line.find_last_not_of(" \t\r") + 1));
}

std::vector<std::string> read_name_list(const std::string& list_name) {
  const InputFile list = open_text_file(list_name, InputFile::Kind::kAny);
  LineBuffer lines(
      [&](char* buffer, std::size_t size) { return list.read(buffer, size); });
  std::vector<std::string> names;
  for (std::size_t number = 1; const auto line = lines.next(); ++number) {
    std::string name = trimmed_name(
        number == 1 ? companion::without_byte_order_mark(line->text) : line->text);
    if (line->end == LineBuffer::End::kTooLong || !can_be_a_path(name)) {
      throw Failure(in_quotes(list_name) + " is no list of file names: line " +
                    std::to_string(number) + " can't be one");
    }
    if (!name.empty()) {
      names.push_back(std::move(name));
    }
  }
  if (names.empty()) {
    throw Failure("the list " + in_quotes(list_name) + " names no file");
  }
  return names;
}

}  // namespace veldmark::tersify
