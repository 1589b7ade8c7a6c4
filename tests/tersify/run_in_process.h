// Runs the whole program in the test's own process.

#ifndef VELDMARK_TESTS_TERSIFY_RUN_IN_PROCESS_H_
#define VELDMARK_TESTS_TERSIFY_RUN_IN_PROCESS_H_

#include <sstream>
#include <string>
#include <vector>

#include "support/memory_input.h"
#include "tersify/tersify.h"

namespace veldmark::tersify::testing {

struct Outcome {
  int status = -1;
  std::string output;
  std::string messages;
};

inline Outcome run(const std::vector<std::string>& arguments,
                   const std::string& input = "", const Settings& settings = {}) {
  const veldmark::testing::MemoryInput in(input);
  std::ostringstream out;
  std::ostringstream messages;
  const companion::Environment environment{
      .input = in.descriptor(), .output = out, .messages = {.stream = messages}};
  const int status = run_tersify(arguments, environment, settings);
  return {status, out.str(), messages.str()};
}

}  // namespace veldmark::tersify::testing

#endif  // VELDMARK_TESTS_TERSIFY_RUN_IN_PROCESS_H_
