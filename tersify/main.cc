// tersify: makes condensed copies of published CRU TS grid files for veldmark.

#include "companion/run.h"
#include "tersify/tersify.h"

int main(int argc, char** argv) {
  using namespace veldmark;  // NOLINT
  return companion::run_main(
      argc, argv, "tersify",
      [](companion::Arguments arguments, const companion::Environment& environment) {
        return tersify::run_tersify(arguments, environment);
      });
}
