// The option --output.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "compressed.h"
#include "raw_text.h"
#include "run_in_process.h"
#include "support/temporary_folder.h"

namespace veldmark::tersify {
namespace {

using testing::compressed;
using testing::condensed_line;
using testing::numbers;
using testing::Outcome;
using testing::raw_line;
using testing::repeated;
using testing::run;
using veldmark::testing::file_content;
using veldmark::testing::folder_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;
using Files = std::map<std::string, std::string>;

const std::string kTwelve = repeated(12, raw_line(numbers()) + "\n");
const std::string kTwelveCondensed = repeated(12, condensed_line(numbers()) + "\n");

Outcome condense_to(const std::string& output, const std::string& name) {
  return run({"--output", output, name}, "", {.shape = {.years = 1, .rows = 1}});
}

TEST(OutputOption, NamesTheCopy) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("sub");
  write_file("a", kTwelve);
  write_file("a.gz", compressed(kTwelve));
  for (const std::string name : {"a", "a.gz"}) {
    const Outcome result = condense_to("sub/copy", name);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.output.starts_with("wrote 'sub/copy': 12 lines, "));
    EXPECT_TRUE(file_content("sub/copy") == kTwelveCondensed);
    EXPECT_FALSE(std::filesystem::exists("a.new"));
    std::filesystem::remove("sub/copy");
  }
}

TEST(OutputOption, ReplacesAnEarlierCopyWhenTheNewOneIsComplete) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("copy", "earlier");
  write_file("b", kTwelve + "x\n");
  EXPECT_EQ(condense_to("copy", "b").status, 1);
  EXPECT_EQ(file_content("copy"), "earlier");
  EXPECT_EQ(condense_to("copy", "a").status, 0);
  EXPECT_TRUE(file_content("copy") == kTwelveCondensed);
}

TEST(OutputOption, NeverReplacesTheInput) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("b.part", kTwelve);
  EXPECT_EQ(condense_to("./a", "a").messages,
            "tersify: './a' is the same file as 'a'; nothing was written\n"
            "tersify: not condensed: 'a'\n");
  EXPECT_EQ(condense_to("b", "b.part").messages,
            "tersify: 'b.part' is the same file as 'b.part'; nothing was written\n"
            "tersify: not condensed: 'b.part'\n");
  EXPECT_TRUE(folder_content() == (Files{{"a", kTwelve}, {"b.part", kTwelve}}));
}

TEST(OutputOption, AnUnwritableOutputIsReported) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  std::filesystem::create_directory("sub");
  EXPECT_EQ(condense_to("sub", "a").messages,
            "tersify: cannot write 'sub': it exists and is not a regular file\n"
            "tersify: not condensed: 'a'\n");
  EXPECT_EQ(condense_to("none/copy", "a").messages,
            "tersify: cannot write 'none/copy.part': No such file or directory\n"
            "tersify: not condensed: 'a'\n");
}

}  // namespace
}  // namespace veldmark::tersify
