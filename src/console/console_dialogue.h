// The dialogue with the user: prompts, answers, pauses and shell commands on a
// line-oriented console.
//
// Each answer is a line of its own. The output is flushed before it is read. A carriage
// return before the newline is removed with it, and the last line may lack its newline.
//
// Every member that reads a line throws RunEnd if the input has ended ("Attempt to read
// past end of file") or cannot be read ("Cannot read file: standard input: ...").

#ifndef VELDMARK_CONSOLE_CONSOLE_DIALOGUE_H_
#define VELDMARK_CONSOLE_CONSOLE_DIALOGUE_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <istream>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

#include "console/run_end.h"

namespace veldmark {

class ConsoleDialogue {
 public:
  using CommandRunner = std::function<void(const std::string& command)>;

  // Requires that the streams outlive the dialogue. `run_command` runs a command in the
  // shell; its output goes straight to the console, and its result is ignored.
  ConsoleDialogue(std::istream& input, std::ostream& output, CommandRunner run_command);

  // Write a line (its margin is part of `text`), several lines, and an empty line.
  void write_line(std::string_view text);
  void write_lines(std::span<const std::string_view> lines);
  void write_lines(std::initializer_list<std::string_view> lines);
  void blank_line();

  // Writes `text` without a newline.
  void prompt(std::string_view text);

  // Flushes the output. Throws RunEnd if that fails.
  void flush();

  // Writes `text` as a line, then reads a line and ignores it.
  void pause(std::string_view text);

  // Flushes, then runs a shell command.
  void run_shell_command(const std::string& command);

  // Reads a line and returns the integer in its first `width` characters; 0 if they are
  // blank. Throws RunEnd if they are not an integer.
  std::int32_t read_fixed_integer(std::size_t width);

  // Does the same for a question that is asked again: returns nullopt if they are not
  // an integer. `end_message` is the message of the RunEnd if the input has ended.
  std::optional<std::int32_t> try_read_fixed_integer(std::size_t width,
                                                     const char* end_message);

  // Reads a line and returns its first `width` characters, padded with blanks.
  std::string read_text(std::size_t width);

  // Reads a line and returns its first value as parse_logical does. Accepts any answer.
  bool read_logical();

  // Reads a line and returns its first value, an integer. Lines without a value are
  // skipped, so that a stray RETURN does not end the run. Throws RunEnd for any other
  // value.
  std::int32_t read_free_integer();

  // Reads a line and returns the first character of its first value; a blank if it has
  // none.
  char read_free_character();

 private:
  std::string read_line(const char* end_message = kPastEndOfFile);

  std::istream& input_;
  std::ostream& output_;
  CommandRunner run_command_;
};

}  // namespace veldmark

#endif  // VELDMARK_CONSOLE_CONSOLE_DIALOGUE_H_
