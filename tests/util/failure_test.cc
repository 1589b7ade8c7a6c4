#include "util/failure.h"

#include <gtest/gtest.h>

#include <new>

namespace veldmark {
namespace {

TEST(ReasonOf, IsReadableAfterBadAllocToo) {
  EXPECT_STREQ(reason_of(Failure("no such series")), "no such series");
  EXPECT_STREQ(reason_of(std::bad_alloc()), "not enough memory");
}

}  // namespace
}  // namespace veldmark
