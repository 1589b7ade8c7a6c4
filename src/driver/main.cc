// veldmark: cuts monthly climate series out of condensed CRU TS grid files.

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>

#include "console/console_dialogue.h"
#include "driver/program_driver.h"

namespace {

void run_in_shell(const std::string& command) {
  // The result is of no interest: the run goes on without a cleared screen or a list.
  [[maybe_unused]] const int status = std::system(command.c_str());
}

}  // namespace

int main() {
  // A reader that goes away becomes a failed write, which closes the files in order.
  std::signal(SIGPIPE, SIG_IGN);
  veldmark::ConsoleDialogue console(std::cin, std::cout, run_in_shell);
  return veldmark::run_program(console, std::cerr);
}
