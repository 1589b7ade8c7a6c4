// Compares ftest with its plain definition.

#ifndef VELDMARK_TESTS_STATS_EXPECT_PLAIN_FTEST_H_
#define VELDMARK_TESTS_STATS_EXPECT_PLAIN_FTEST_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "plain_statistics.h"
#include "statistics_support.h"

namespace veldmark {

// Fails the test unless ftest and the plain definition give the same bits for two
// samples.
inline void expect_plain_ftest(const std::vector<float>& data1,
                               const std::vector<float>& data2) {
  const FtestOutcome got = run_ftest(data1, data2);
  const plain::Test expected = plain::ftest(data1, data2);
  ASSERT_EQ(got.d1, expected.d1);
  ASSERT_EQ(got.d2, expected.d2);
  ASSERT_TRUE(same_bits(got.f, plain::as_float(expected.f)));
  ASSERT_TRUE(same_bits(got.prob, plain::as_float(expected.prob)));
  ASSERT_EQ(got.bad_arguments.size(), static_cast<std::size_t>(expected.bad_arguments));
}

}  // namespace veldmark

#endif  // VELDMARK_TESTS_STATS_EXPECT_PLAIN_FTEST_H_
