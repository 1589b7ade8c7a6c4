// veldmark: cuts monthly climate series out of condensed CRU TS grid files.

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <istream>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "console/console_dialogue.h"
#include "console/run_end.h"
#include "console/standard_stream.h"
#include "driver/command_line.h"
#include "driver/program_driver.h"
#include "util/closed_streams.h"

namespace {

void run_in_shell(const std::string& command) {
  // The status is ignored: the session works without a cleared screen or a file list.
  [[maybe_unused]] const int status = std::system(command.c_str());
}

}  // namespace

int main(int argc, char** argv) try {
  // Ignored, so that a closed pipe or a size limit shows up as a failed write, after
  // which the files are closed properly.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  veldmark::reserve_closed_streams();
  veldmark::StandardStream standard_input(STDIN_FILENO);
  veldmark::StandardStream standard_output(STDOUT_FILENO);
  veldmark::StandardStream standard_error(STDERR_FILENO);
  std::istream input(&standard_input);
  std::ostream output(&standard_output);
  std::ostream errors(&standard_error);
  errors << std::unitbuf;
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  const std::optional<int> status =
      veldmark::answer_command_line(arguments, output, errors);
  if (status) {
    return *status;
  }
  veldmark::ConsoleDialogue console(input, output, run_in_shell);
  return veldmark::run_program(console, errors);
} catch (const std::bad_alloc&) {  // from the lines before run_program
  // std::ostream errors may not have been constructed yet.
  const veldmark::RunEnd end = veldmark::not_enough_memory();
  std::fputs(end.report().c_str(), stderr);
  return end.status();
}
