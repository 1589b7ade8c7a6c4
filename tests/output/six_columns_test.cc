#include "output/six_columns.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

TEST(SixColumns, AgreesWithFixedIntegerOnAllValues) {
  const SixColumns six_columns;
  for (std::int32_t value = -32768; value <= 32767; ++value) {
    char out[SixColumns::kCopied];
    const char* end = six_columns.write(static_cast<std::int16_t>(value), out);
    ASSERT_EQ(std::string(static_cast<const char*>(out), end), fixed_integer(value, 6));
  }
}

}  // namespace
}  // namespace veldmark
