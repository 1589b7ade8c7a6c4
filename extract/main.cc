// veldmark-extract: extracts series from a condensed grid file, without questions.

#include "companion/run.h"
#include "extract/job.h"
#include "extract/run.h"

int main(int argc, char** argv) {
  using namespace veldmark;  // NOLINT
  return companion::run_main(argc, argv, extract::kProgram, extract::run_extract);
}
