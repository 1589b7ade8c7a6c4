#include "companion/run.h"

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>

#include "util/failure.h"
#include "util/interrupt_watch.h"

namespace veldmark::companion {
namespace {

struct Outcome {
  int status = -1;
  std::string messages;
};

Outcome outcome_of(const std::function<int()>& work, bool output_fails = false) {
  std::ostringstream output;
  std::ostringstream messages;
  if (output_fails) {
    output.setstate(std::ios::badbit);
  }
  const Environment environment{
      .input = -1, .output = output, .messages = {.stream = messages}};
  const int status = run_reported(environment, "tool", work);
  return {status, messages.str()};
}

[[noreturn]] int fail_with(const auto& error) { throw error; }

TEST(RunReported, ReturnsTheStatusOfTheWork) {
  EXPECT_EQ(outcome_of([] { return 0; }).status, 0);
  EXPECT_EQ(outcome_of([] { return 143; }).status, 143);
}

TEST(RunReported, EachExceptionHasItsStatusAndMessage) {
  Outcome ended = outcome_of([] { return fail_with(UsageError("no name")); });
  EXPECT_EQ(ended.status, 2);
  EXPECT_EQ(ended.messages, "tool: no name\nTry 'tool --help' for more information.\n");
  ended = outcome_of([] { return fail_with(Failure("no file")); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.messages, "tool: no file\n");
  ended = outcome_of([] { return fail_with(std::bad_alloc()); });
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.messages, "tool: not enough memory\n");
  ended = outcome_of([] { return fail_with(Interrupted(SIGHUP)); });
  EXPECT_EQ(ended.status, 129);
  EXPECT_EQ(ended.messages, "tool: interrupted; nothing was written\n");
}

TEST(RunReported, AnOutputThatCannotBeWrittenIsAFailure) {
  Outcome ended = outcome_of([] { return 0; }, true);
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.messages, "tool: cannot write to standard output\n");
  ended = outcome_of([] { return 130; }, true);
  EXPECT_EQ(ended.status, 130);
}

}  // namespace
}  // namespace veldmark::companion
