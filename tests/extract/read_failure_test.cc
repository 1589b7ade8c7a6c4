#include "extract/read_failure.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "util/failure.h"

namespace veldmark::extract {
namespace {

std::string message_of(int error_number) {
  try {
    fail_to_read("a\nb", error_number);
  } catch (const Failure& failure) {
    return failure.what();
  }
}

TEST(FailToRead, GivesTheReason) {
  EXPECT_EQ(message_of(EIO), "cannot read 'a?b': Input/output error");
  EXPECT_EQ(message_of(0), "cannot read 'a?b': it became shorter");
}

}  // namespace
}  // namespace veldmark::extract
