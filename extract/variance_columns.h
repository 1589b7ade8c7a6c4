// The test of a series for a change of variance, as columns of a CSV line.

#ifndef VELDMARK_EXTRACT_VARIANCE_COLUMNS_H_
#define VELDMARK_EXTRACT_VARIANCE_COLUMNS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/variable_catalogue.h"

namespace veldmark::extract {

constexpr std::string_view kVarianceHeading =
    "f,probability,n1,n2,adjusted_n1,adjusted_n2";

// Tests whether the months from `second_period` on vary as those before it do, in
// physical units and single precision (docs/variance-test.md).
//
//   series          stored units; months with the missing code are left out
//   second_period   the first month of the second period, counted from 0
//
// Returns f, its probability, how many values either period has, and the adjusted
// counts, with commas between them. f and probability are NaN where the test has no
// result: neither period varies, or one has fewer than two values.
std::string variance_columns(std::span<const std::int16_t> series,
                             std::size_t second_period, const VariableEntry& entry);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_VARIANCE_COLUMNS_H_
