// The conversation with the user: prompts, answers, pauses and shell commands on a
// line-oriented console.
//
// Every answer is read from a fresh line, after everything written so far has been
// flushed. A carriage return before a line end belongs to the line end, and a last
// line without line end is a line. Where the input ends although an answer or a pause
// awaits a line, the run ends (RunEnd, "Attempt to read past end of file"), and also
// where it cannot be read (RunEnd, "Cannot read file: standard input: ...").

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

  // The streams must outlive the dialogue. `run_command` hands a command to the shell;
  // what it writes goes straight to the console, its result is not looked at.
  ConsoleDialogue(std::istream& input, std::ostream& output, CommandRunner run_command);

  // Write a line as it is, margin included, a screen of such lines, and an empty line.
  void write_line(std::string_view text);
  void write_lines(std::span<const std::string_view> lines);
  void write_lines(std::initializer_list<std::string_view> lines);
  void blank_line();

  // Writes `text` and leaves the cursor on its line.
  void prompt(std::string_view text);

  // Writes everything that is still buffered. Throws RunEnd where the output cannot be
  // written.
  void flush();

  // Writes `text` as a line and waits for RETURN; what is typed before it is discarded.
  void pause(std::string_view text);

  // Flushes, then runs a shell command.
  void run_shell_command(const std::string& command);

  // Reads an integer from the first `width` characters of a line. An empty field is 0.
  // Anything but an integer ends the run (RunEnd).
  std::int32_t read_fixed_integer(std::size_t width);

  // The same for a question that is asked again: nullopt for anything but an integer.
  // `end_message` is the message of the report when the input ends here.
  std::optional<std::int32_t> try_read_fixed_integer(std::size_t width,
                                                     const char* end_message);

  // Reads the first `width` characters of a line, padded with blanks.
  std::string read_text(std::size_t width);

  // Reads true or false; see parse_logical. No answer is refused.
  bool read_logical();

  // Reads the first value as an integer; lines without a value are skipped, so
  // that a stray RETURN doesn't end the run. Anything else ends it (RunEnd).
  std::int32_t read_free_integer();

  // Reads the first character of the first value; a blank where there is no value.
  char read_free_character();

 private:
  std::string read_line(const char* end_message = kPastEndOfFile);

  std::istream& input_;
  std::ostream& output_;
  CommandRunner run_command_;
};

}  // namespace veldmark

#endif  // VELDMARK_CONSOLE_CONSOLE_DIALOGUE_H_
