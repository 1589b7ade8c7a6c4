// veldmark-extract: extracts series from a condensed grid file, without questions.

#include <csignal>

#include "companion/run.h"
#include "extract/job.h"
#include "extract/run.h"

int main(int argc, char** argv) {
  using namespace veldmark;  // NOLINT
  // The netCDF library writes once more at the exit, even after a failed write.
  std::signal(SIGXFSZ, SIG_IGN);
  return companion::run_main(argc, argv, extract::kProgram, extract::run_extract);
}
