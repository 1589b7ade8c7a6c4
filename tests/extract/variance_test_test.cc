#include "extract/variance_test.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "catalogue/variable_name.h"

namespace veldmark::extract {
namespace {

// Rounding makes one variance of a constant series negative, and the argument of the
// incomplete beta function is then not in 0..1.
TEST(TestVariance, AConstantSeriesHasANegativeFAndNoProbability) {
  const VariableEntry& frost_days = *find_by_short_name("frs");
  const std::vector<std::int16_t> series(1032, 1313);
  const VarianceResult result = test_variance(series, 300, frost_days);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(result.f), 0xBE9C77DDU);  // -0.3056
  EXPECT_TRUE(std::isnan(result.probability));
  EXPECT_EQ(result.n1, 300);
  EXPECT_EQ(result.n2, 732);
  EXPECT_EQ(result.adjusted_n1, 2);
  EXPECT_EQ(result.adjusted_n2, 2);
}

}  // namespace
}  // namespace veldmark::extract
