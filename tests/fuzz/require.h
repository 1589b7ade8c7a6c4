// Checks what must hold for every input. A failure aborts the process, which tells the
// fuzzer of a find.

#ifndef VELDMARK_TESTS_FUZZ_REQUIRE_H_
#define VELDMARK_TESTS_FUZZ_REQUIRE_H_

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace veldmark::fuzz {

// Aborts the process unless `holds`. `what` is the requirement, `shown` the value that
// it was checked on.
inline void require(bool holds, const char* what, std::string_view shown = "") {
  if (holds) return;
  std::fprintf(stderr, "NOT SO: %s\n%s\n", what, std::string(shown).c_str());
  std::abort();
}

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_REQUIRE_H_
