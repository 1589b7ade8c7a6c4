#include "stats/single_precision.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace veldmark {
namespace {

constexpr std::int32_t kMostNegative = std::numeric_limits<std::int32_t>::min();

TEST(TruncatedToInt32, TruncatesTowardZero) {
  EXPECT_EQ(truncated_to_int32(10.9999F), 10);
  EXPECT_EQ(truncated_to_int32(2.94F), 2);
  EXPECT_EQ(truncated_to_int32(-1.5F), -1);
  EXPECT_EQ(truncated_to_int32(-0.0F), 0);
}

TEST(TruncatedToInt32, IsTheSmallestIntegerOutsideTheRange) {
  EXPECT_EQ(truncated_to_int32(std::numeric_limits<float>::quiet_NaN()), kMostNegative);
  EXPECT_EQ(truncated_to_int32(std::numeric_limits<float>::infinity()), kMostNegative);
  EXPECT_EQ(truncated_to_int32(-std::numeric_limits<float>::infinity()), kMostNegative);
  EXPECT_EQ(truncated_to_int32(2147483648.0F), kMostNegative);
  EXPECT_EQ(truncated_to_int32(-2147483904.0F), kMostNegative);
  EXPECT_EQ(truncated_to_int32(3.0e38F), kMostNegative);
}

TEST(TruncatedToInt32, ReachesBothEndsOfTheRange) {
  EXPECT_EQ(truncated_to_int32(2147483520.0F), 2147483520);
  EXPECT_EQ(truncated_to_int32(-2147483520.0F), -2147483520);
  EXPECT_EQ(truncated_to_int32(-2147483648.0F), kMostNegative);
}

// Every 977th bit pattern, compared with the same rule in 64 bits.
TEST(TruncatedToInt32, AgreesWithSixtyFourBitsOverAllMagnitudes) {
  for (std::uint64_t pattern = 0; pattern <= 0xFFFFFFFF; pattern += 977) {
    const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(pattern));
    const double whole = std::trunc(static_cast<double>(value));
    const bool fits = whole >= -2147483648.0 && whole <= 2147483647.0;
    ASSERT_EQ(truncated_to_int32(value),
              fits ? static_cast<std::int32_t>(whole) : kMostNegative)
        << value;
  }
}

}  // namespace
}  // namespace veldmark
