// Tests a series for a change of variance.

#ifndef VELDMARK_EXTRACT_VARIANCE_TEST_H_
#define VELDMARK_EXTRACT_VARIANCE_TEST_H_

#include <cstddef>
#include <cstdint>
#include <span>

#include "catalogue/variable_catalogue.h"

namespace veldmark::extract {

// f and probability are NaN if the test has no result: neither period varies, or one
// has fewer than two values.
struct VarianceResult {
  float f{};
  float probability{};
  std::int32_t n1{};  // values of the first period
  std::int32_t n2{};
  std::int32_t adjusted_n1{};  // adjusted for kurtosis
  std::int32_t adjusted_n2{};
};

// Compares the variance of the months before `second_period` with that of the months
// from it on, in physical units and single precision (docs/variance-test.md).
//
//   series          stored units; months with the missing code are left out
//   second_period   the first month of the second period, counted from 0
VarianceResult test_variance(std::span<const std::int16_t> series,
                             std::size_t second_period, const VariableEntry& entry);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_VARIANCE_TEST_H_
