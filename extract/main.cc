// veldmark-extract: extracts series from a condensed grid file, without questions.

#include <csignal>
#include <cstdlib>

#include "companion/run.h"
#include "extract/job.h"
#include "extract/run.h"

int main(int argc, char** argv) {
  using namespace veldmark;  // NOLINT
  // The netCDF library writes again at exit, even after a failed write: without this,
  // the size limit of files would end the program by a signal.
  std::signal(SIGXFSZ, SIG_IGN);
  const int status =
      companion::run_main(argc, argv, extract::kProgram, extract::run_extract);
  if (status != companion::kSuccess) {
    // After a failed write the library crashes when its exit handler closes its files.
    std::quick_exit(status);
  }
  return status;
}
