#include "output/value_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

TEST(ValueText, AgreesWithFixedIntegerOnAllValues) {
  const ValueText value_text;
  for (std::int32_t value = -32768; value <= 32767; ++value) {
    char out[ValueText::kCopySize];
    const char* end = value_text.write(static_cast<std::int16_t>(value), out);
    ASSERT_EQ(std::string(static_cast<const char*>(out), end), fixed_integer(value, 6));
  }
}

}  // namespace
}  // namespace veldmark
