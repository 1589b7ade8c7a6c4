#include "tersify/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "util/failure.h"

namespace veldmark::tersify {
namespace {

using Names = std::vector<std::string>;

void expect_command(const Names& arguments, Task task, const Names& names) {
  const Command command = parse_command_line(arguments);
  EXPECT_EQ(command.task, task);
  EXPECT_EQ(command.names, names);
}

void expect_usage_error(const Names& arguments, const std::string& message) {
  try {
    parse_command_line(arguments);
    ADD_FAILURE() << "no error; expected: " << message;
  } catch (const UsageError& error) {
    EXPECT_EQ(error.what(), message);
  }
}

TEST(TersifyCommandLine, WithoutArgumentsTheListIsAskedFor) {
  expect_command({}, Task::kAskForList, {});
}

TEST(TersifyCommandLine, NamesAreFilesToCondense) {
  expect_command({"a", "b"}, Task::kCondense, {"a", "b"});
}

TEST(TersifyCommandLine, OptionsSayWhatElseToDo) {
  expect_command({"--list", "l"}, Task::kCondenseList, {"l"});
  expect_command({"--check", "a", "b"}, Task::kCheck, {"a", "b"});
  expect_command({"--help"}, Task::kShowHelp, {});
  expect_command({"a", "--version"}, Task::kShowVersion, {});
}

TEST(TersifyCommandLine, AfterTwoHyphensEverythingIsAName) {
  expect_command({"--", "--check"}, Task::kCondense, {"--check"});
  expect_command({"--check", "--", "-a"}, Task::kCheck, {"-a"});
}

TEST(TersifyCommandLine, WrongUsageIsNamed) {
  expect_usage_error({"--"}, "the names of the files are missing");
  expect_usage_error({"--check"}, "--check: the names of the files are missing");
  expect_usage_error({"--list"}, "--list: the list file is missing");
  expect_usage_error({"--list", "a", "b"}, "unexpected argument 'b'");
  expect_usage_error({"-x"}, "unknown option '-x'");
  expect_usage_error({"--check", "--list", "a"},
                     "--list and --check exclude each other");
}

TEST(TersifyCommandLine, AnOutputIsForOneFile) {
  const Command command =
      parse_command_line(std::vector<std::string>{"a", "--output", "--b"});
  EXPECT_EQ(command.task, Task::kCondense);
  EXPECT_EQ(command.names, Names{"a"});
  EXPECT_EQ(command.output, "--b");
  EXPECT_EQ(parse_command_line(Names{"a"}).output, std::nullopt);
  const std::string refusal = "--output is for one file to condense";
  expect_usage_error({"--output", "b", "a", "c"}, refusal);
  expect_usage_error({"--output", "b", "--check", "a"}, refusal);
  expect_usage_error({"--output", "b", "--list", "a"}, refusal);
  expect_usage_error({"--output", "b"}, "the names of the files are missing");
  expect_usage_error({"a", "--output"}, "--output: the name is missing");
  expect_usage_error({"a", "--output", ""}, "--output: the name is empty");
  expect_usage_error({"a", "--output", "b", "--output", "b"},
                     "--output is given twice");
}

TEST(TersifyCommandLine, TheHelpIsThisText) {
  EXPECT_EQ(help_text(),
            R"(Usage: tersify [FILE]...
       tersify --output NAME FILE
       tersify --list LISTFILE
       tersify --check FILE.new...

Makes condensed copies of published CRU TS grid files for veldmark, of any release.
The first bytes of a file show what it is:

  text (.dat)             720 integers a line, with blanks or tabs between them
  compressed (.dat.gz)    the same, read as downloaded; gzip only
  netCDF (.nc, .nc.gz)    floating-point values, converted back to integers

The copy of FILE is FILE.new beside it, without the .nc and .gz of its name. It holds
the numbers right-aligned in five columns each. The values don't change.

Without arguments tersify asks for the name of a list file: the names of the files to
condense, one a line.

  --output NAME    make the copy of the one FILE under another name
  --list LISTFILE  condense the files that LISTFILE names
  --check          check whether condensed files are complete (12 months of 360 lines for
                   each year); print each file's years or its first fault
  --help           show this text
  --version        show the version

A faulty file is reported with line and field; its copy is not made, an earlier copy
stays, and the other files are still condensed. A copy takes 15.6 MB for each
year, 1.8 GB for 1901-2016; a compressed netCDF file is decompressed beside it first.

Exit status: 0 on success, 1 when a file failed, 2 for a wrong command line, 128
plus the signal's number when interrupted.
)");
}

TEST(TersifyCommandLine, TheVersionIsTheProjects) {
  EXPECT_EQ(version_text(), "tersify (veldmark) " TERSIFY_VERSION "\n");
}

}  // namespace
}  // namespace veldmark::tersify
