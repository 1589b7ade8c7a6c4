// Compressed files for tests, made by gzip itself.

#ifndef VELDMARK_TESTS_TERSIFY_COMPRESSED_H_
#define VELDMARK_TESTS_TERSIFY_COMPRESSED_H_

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temporary_folder.h"

namespace veldmark::tersify::testing {

// Returns what gzip makes of a text; no time and no name in it.
inline std::string compressed(const std::string& text) {
  const std::string name = "to be compressed";
  veldmark::testing::write_file(name, text);
  EXPECT_EQ(std::system("gzip -nf 'to be compressed'"), 0);
  const std::string bytes = veldmark::testing::file_content(name + ".gz");
  std::filesystem::remove(name + ".gz");
  return bytes;
}

}  // namespace veldmark::tersify::testing

#endif  // VELDMARK_TESTS_TERSIFY_COMPRESSED_H_
