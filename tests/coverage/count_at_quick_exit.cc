// Linked into what ends by std::quick_exit in a build with coverage: without this, it
// would not write its counts.

#include <cstdlib>

extern "C" void __gcov_dump();  // NOLINT(bugprone-reserved-identifier): GCC's name

namespace {

[[maybe_unused]] const int registered = std::at_quick_exit(__gcov_dump);

}  // namespace
