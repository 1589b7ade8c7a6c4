#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "series_to_grid/series_to_grid.h"

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  veldmark::Surroundings around{.input = std::cin,
                                .output = std::cout,
                                .messages = std::cerr,
                                .show_progress = isatty(STDERR_FILENO) == 1};
  return veldmark::run_series_to_grid(arguments, around);
}
