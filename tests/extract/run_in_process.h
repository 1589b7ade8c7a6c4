// Runs the whole program in the test's own process.

#ifndef VELDMARK_TESTS_EXTRACT_RUN_IN_PROCESS_H_
#define VELDMARK_TESTS_EXTRACT_RUN_IN_PROCESS_H_

#include <sstream>
#include <string>
#include <vector>

#include "extract/run.h"

namespace veldmark::extract::testing {

struct Outcome {
  int status = -1;
  std::string output;  // not what goes to descriptor 1
  std::string messages;
};

inline Outcome run(const std::vector<std::string>& arguments) {
  std::ostringstream output;
  std::ostringstream messages;
  const int status = run_extract(
      arguments, {.input = -1, .output = output, .messages = {.stream = messages}});
  return {status, output.str(), messages.str()};
}

}  // namespace veldmark::extract::testing

#endif  // VELDMARK_TESTS_EXTRACT_RUN_IN_PROCESS_H_
