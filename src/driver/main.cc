// veldmark: cuts monthly climate series out of condensed CRU TS grid files.

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "console/console_dialogue.h"
#include "console/run_end.h"
#include "driver/command_line.h"
#include "driver/program_driver.h"

namespace {

void run_in_shell(const std::string& command) {
  // The result is of no interest: the run goes on without a cleared screen or a list.
  [[maybe_unused]] const int status = std::system(command.c_str());
}

}  // namespace

int main(int argc, char** argv) try {
  // A reader that goes away, and the limit of a file's size, become failed writes,
  // which close the files in order.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  // The C++ streams take up an interrupted read or write again, the C ones don't.
  std::ios::sync_with_stdio(false);
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  const std::optional<int> status =
      veldmark::answer_command_line(arguments, std::cout, std::cerr);
  if (status) {
    return *status;
  }
  veldmark::ConsoleDialogue console(std::cin, std::cout, run_in_shell);
  return veldmark::run_program(console, std::cerr);
} catch (const std::bad_alloc&) {  // before the run itself
  // The stream of errors may not have come to be.
  const veldmark::RunEnd end = veldmark::not_enough_memory();
  std::fputs(end.report().c_str(), stderr);
  return end.status();
}
