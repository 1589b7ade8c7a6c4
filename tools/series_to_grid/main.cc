#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "series_to_grid/series_to_grid.h"
#include "util/failure.h"

int main(int argc, char** argv) try {
  // A reader that goes away becomes a failed write, which leaves no part of a file.
  std::signal(SIGPIPE, SIG_IGN);
  std::ios::sync_with_stdio(false);
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  veldmark::Surroundings around{.input = std::cin,
                                .output = std::cout,
                                .messages = std::cerr,
                                .show_progress = isatty(STDERR_FILENO) == 1};
  return veldmark::run_series_to_grid(arguments, around);
} catch (const std::exception& error) {  // before or after the run itself
  // The stream of errors may not have come to be.
  std::fprintf(stderr, "series_to_grid: %s\n", veldmark::reason_of(error));
  return 1;
}
