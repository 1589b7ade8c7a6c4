// Shared by the sweeps: all texts over an alphabet, and a count of the inputs.

#ifndef VELDMARK_TESTS_SUPPORT_SWEEP_H_
#define VELDMARK_TESTS_SUPPORT_SWEEP_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

namespace veldmark::testing {

// The longest sweeps take every n-th input in builds with the address sanitizer or
// without optimisation, which are several times as slow.
#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
constexpr int kSweepStep = 16;
#else
constexpr int kSweepStep = 1;
#endif

// Records how many inputs a test has compared, for the table of docs/testing.md (see
// figures.py), and fails unless that is `expected`: a sweep without its inputs finds
// nothing.
inline void record_cases(std::size_t count, std::size_t expected) {
  if (const char* folder = std::getenv("VELDMARK_FIGURES")) {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + "." + test->name();
    std::replace(name.begin(), name.end(), '/', '.');
    std::ofstream(std::string(folder) + "/sweep." + name + ".json")
        << "{\"cases\": " << count << "}\n";
  }
  EXPECT_EQ(count, expected) << "cases compared";
}

// Calls `visit` with every text of `length` characters over `alphabet`. Returns the
// number of texts. Stops after a failure.
template <typename Visit>
std::size_t for_each_text(std::string_view alphabet, std::size_t length, Visit visit) {
  std::string text(length, alphabet.front());
  std::string places(length, '\0');  // of the text's characters in the alphabet
  std::size_t count = 0;
  for (;;) {
    visit(static_cast<const std::string&>(text));
    ++count;
    if (::testing::Test::HasFatalFailure()) {
      return count;
    }
    std::size_t at = length;
    for (; at > 0; --at) {
      const auto next = static_cast<std::size_t>(places[at - 1]) + 1;
      places[at - 1] = static_cast<char>(next % alphabet.size());
      text[at - 1] = alphabet[next % alphabet.size()];
      if (next < alphabet.size()) {
        break;
      }
    }
    if (at == 0) {
      return count;
    }
  }
}

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_SWEEP_H_
