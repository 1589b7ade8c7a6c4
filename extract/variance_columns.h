// Formats the test for a change of variance as columns of a CSV line.

#ifndef VELDMARK_EXTRACT_VARIANCE_COLUMNS_H_
#define VELDMARK_EXTRACT_VARIANCE_COLUMNS_H_

#include <string>
#include <string_view>

#include "extract/variance_test.h"

namespace veldmark::extract {

constexpr std::string_view kVarianceHeading =
    "f,probability,n1,n2,adjusted_n1,adjusted_n2";

// Returns the values of these columns, separated by commas.
std::string variance_columns(const VarianceResult& result);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_VARIANCE_COLUMNS_H_
