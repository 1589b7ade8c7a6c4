// tersify: makes condensed copies of published CRU TS grid files for veldmark.

#include <unistd.h>

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

#include "tersify/tersify.h"

int main(int argc, char** argv) {
  // A reader that goes away becomes a failed write, which leaves no part of a file.
  std::signal(SIGPIPE, SIG_IGN);
  std::ios::sync_with_stdio(false);
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  veldmark::tersify::Surroundings around{
      .input = std::cin,
      .output = std::cout,
      .messages = {.stream = std::cerr, .shown = isatty(STDERR_FILENO) == 1}};
  return veldmark::tersify::run_tersify(arguments, around);
}
