// veldmark-extract: extracts series from a condensed grid file, without questions.

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "extract/run.h"
#include "util/failure.h"

int main(int argc, char** argv) try {
  // A reader that goes away becomes a failed write, which leaves no part of a file.
  std::signal(SIGPIPE, SIG_IGN);
  std::ios::sync_with_stdio(false);
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  return veldmark::extract::run_extract(arguments,
                                        {.output = std::cout, .messages = std::cerr});
} catch (const std::exception& error) {  // before or after the run itself
  // std::cerr may not be constructed yet.
  std::fprintf(stderr, "veldmark-extract: %s\n", veldmark::reason_of(error));
  return 1;
}
