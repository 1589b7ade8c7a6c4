// The report of the end of a run, for tests of functions that end it.

#ifndef VELDMARK_TESTS_SUPPORT_REPORT_OF_H_
#define VELDMARK_TESTS_SUPPORT_REPORT_OF_H_

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "console/run_end.h"

namespace veldmark::testing {

// Returns the report of the run-time error with which `action` ends the run; "no end"
// if it does not.
inline std::string report_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const RunEnd& end) {
    EXPECT_EQ(end.status(), 255);
    return end.report();
  }
  return "no end";
}

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_REPORT_OF_H_
