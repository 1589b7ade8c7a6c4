#include "console/console_dialogue.h"

#include <cerrno>
#include <utility>

#include "util/fixed_field.h"
#include "util/free_form.h"
#include "util/text_field.h"

namespace veldmark {
namespace {

// Longer lines are truncated. That is far more than any answer, and it limits the
// memory for endless input without a newline.
constexpr std::size_t kMaxLineLength = 1U << 16U;

}  // namespace

ConsoleDialogue::ConsoleDialogue(std::istream& input, std::ostream& output,
                                 CommandRunner run_command)
    : input_(input), output_(output), run_command_(std::move(run_command)) {}

void ConsoleDialogue::blank_line() { output_ << '\n'; }

void ConsoleDialogue::write_line(std::string_view text) { output_ << text << '\n'; }

void ConsoleDialogue::write_lines(std::span<const std::string_view> lines) {
  for (const std::string_view line : lines) {
    write_line(line);
  }
}

void ConsoleDialogue::write_lines(std::initializer_list<std::string_view> lines) {
  write_lines(std::span(lines.begin(), lines.size()));
}

void ConsoleDialogue::prompt(std::string_view text) { output_ << text; }

void ConsoleDialogue::flush() {
  output_.flush();
  if (!output_) {
    throw cannot_write("standard output", errno, Operation::kWrite, Channel::kConsole);
  }
}

void ConsoleDialogue::pause(std::string_view text) {
  write_line(text);
  read_line();
}

void ConsoleDialogue::run_shell_command(const std::string& command) {
  flush();
  run_command_(command);
}

std::int32_t ConsoleDialogue::read_fixed_integer(std::size_t width) {
  const auto answer = try_read_fixed_integer(width, kPastEndOfFile);
  if (!answer) {
    throw RunEnd::error(kIllegalCharacter, Operation::kRead, Channel::kConsole);
  }
  return *answer;
}

std::optional<std::int32_t> ConsoleDialogue::try_read_fixed_integer(
    std::size_t width, const char* end_message) {
  return parse_integer(text_field(read_line(end_message), width));
}

std::string ConsoleDialogue::read_text(std::size_t width) {
  return text_field(read_line(), width);
}

bool ConsoleDialogue::read_logical() { return parse_logical(first_value(read_line())); }

std::int32_t ConsoleDialogue::read_free_integer() {
  for (;;) {
    const std::string line = read_line();
    const std::string_view value = first_value(line);
    if (value.empty()) {
      continue;
    }
    const auto answer = parse_integer(value);
    if (!answer) {
      throw RunEnd::error(kIllegalCharacter, Operation::kRead, Channel::kConsole);
    }
    return *answer;
  }
}

char ConsoleDialogue::read_free_character() {
  const std::string line = read_line();
  const std::string_view value = first_value(line);
  return value.empty() ? ' ' : value.front();
}

std::string ConsoleDialogue::read_line(const char* end_message) {
  flush();
  std::string line;
  char character{};
  bool any = false;
  while (input_.get(character)) {
    any = true;
    if (character == '\n') {
      break;
    }
    if (line.size() < kMaxLineLength) {
      line += character;
    }
  }
  // EBADF means that standard input was closed before the run, which counts as its end.
  if (input_.bad() && errno != EBADF) {
    throw cannot_read("standard input", errno, Channel::kConsole);
  }
  if (!any) {
    throw RunEnd::error(end_message, Operation::kRead, Channel::kConsole);
  }
  if (!line.empty() && line.back() == '\r') {
    line.pop_back();
  }
  return line;
}

}  // namespace veldmark
