// A test that needs permissions to be checked.

#ifndef VELDMARK_TESTS_SUPPORT_AS_NOBODY_H_
#define VELDMARK_TESTS_SUPPORT_AS_NOBODY_H_

#include <gtest/gtest.h>
#include <sys/types.h>
#include <unistd.h>

namespace veldmark::testing {

// Makes root an ordinary user for a while; others are one already.
class AsNobody {
 public:
  AsNobody() { EXPECT_TRUE(user_ != 0 || ::seteuid(65534) == 0); }
  ~AsNobody() { EXPECT_EQ(::seteuid(user_), 0); }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  AsNobody(AsNobody&&) = delete;
  AsNobody& operator=(AsNobody&&) = delete;

 private:
  uid_t user_ = ::geteuid();
};

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_AS_NOBODY_H_
