#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/grid_text.h"
#include "support/session.h"
#include "support/temporary_folder.h"

namespace veldmark {
namespace {

using testing::data_file_name;
using testing::GridText;
using testing::run_session;
using testing::TemporaryFolder;
using testing::write_file;

// The first search is of the drought index, which accepts any minimum longitude.
TEST(AnswerOutOfRange, HasItsMinimumLongitudeTested) {
  const TemporaryFolder folder;
  write_file(data_file_name("scPDSI"), GridText(1901, 150, 170, -9999).text());
  const std::vector<std::string> first_search{
      "RETURN", "RETURN", "11",   "RETURN", "RETURN", "10.0", "9.0", "1.0",
      "0.0",    "t",      "1901", "1901",   "t",      "1",    "y",   "f"};
  std::vector<std::string> answers = first_search;
  for (const char* answer :
       {"t", "t", "RETURN", "RETURN", "99", "RETURN", "10.0", "9.0", "1.0", "500.0"}) {
    answers.emplace_back(answer);
  }
  const std::vector<std::string> screen = run_session(answers).screen;
  EXPECT_EQ(std::count(screen.begin(), screen.end(), "| Invalid longitude:  500.00|"),
            1);
}

}  // namespace
}  // namespace veldmark
