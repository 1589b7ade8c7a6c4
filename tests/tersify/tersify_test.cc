// The whole program, run in memory.

#include "tersify/tersify.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <sstream>
#include <string>
#include <vector>

#include "raw_text.h"
#include "run_in_process.h"
#include "support/temporary_folder.h"

namespace veldmark::tersify {
namespace {

using testing::condensed_line;
using testing::numbers;
using testing::Outcome;
using testing::raw_line;
using testing::repeated;
using testing::run;
using veldmark::testing::folder_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

const std::string kRaw = raw_line(numbers()) + "\n";
const std::string kCondensed = condensed_line(numbers()) + "\n";
constexpr GridShape kTwelveLines{.years = 1, .rows = 1};
const std::string kTwelve = repeated(12, kRaw);
const std::string kPrompt =
    "\n Program Tersify\n\n"
    " This program makes condensed copies of CRU TS data files.\n"
    " Enter the name of the list file, a text file with one raw file \n"
    " name/line.\n\n LIST FILE ==> ";

std::string wrote(const std::string& name) {
  return "wrote '" + name + ".new': 12 lines, " + std::to_string(kTwelve.size()) +
         " bytes before, 43212 after\n";
}

Outcome run_small(const std::vector<std::string>& arguments,
                  const std::string& input = "") {
  return run(arguments, input, {.shape = kTwelveLines});
}

TEST(Tersify, AWholeFileGetsOneLine) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  const Outcome result = run_small({"a"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, wrote("a"));
  EXPECT_EQ(result.messages, "");
  EXPECT_EQ(folder_content()["a.new"], repeated(12, kCondensed));
}

TEST(Tersify, AFileThatIsNotWholeIsNoted) {
  const TemporaryFolder folder;
  write_file("a", kRaw);
  const Outcome result = run({"a"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "wrote 'a.new': 1 lines, " + std::to_string(kRaw.size()) +
                               " bytes before, 3601 after\nnote: 'a' holds 1 lines; a "
                               "whole file holds 501120\n");
}

TEST(Tersify, AMissingLastLineEndIsNoted) {
  const TemporaryFolder folder;
  write_file("a", kTwelve.substr(0, kTwelve.size() - 1));
  EXPECT_TRUE(run_small({"a"}).output.ends_with(
      "note: the last line of 'a' has no line end; its last value may be cut\n"));
}

TEST(Tersify, OtherFilesAreCondensedAndFailuresAreListedAtTheEnd) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("b", "x\n");
  write_file("d", kTwelve);
  const Outcome result = run_small({"a", "b", "c", "d"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, wrote("a") + wrote("d") + "condensed 2 of 4 files\n");
  EXPECT_EQ(result.messages,
            "tersify: 'b': line 1, field 1: 'x' is not an integer\n"
            "tersify: cannot read 'c': No such file or directory\n"
            "tersify: not condensed: 'b', 'c'\n");
  EXPECT_EQ(folder_content().size(), 5U);
  EXPECT_EQ(folder_content()["d.new"], repeated(12, kCondensed));
}

TEST(Tersify, WithoutArgumentsItAsksForTheListFile) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("b", kTwelve);
  write_file("my list", "a \r\n\nb");
  const Outcome result = run_small({}, "my list \r\nanother line\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output,
            kPrompt + wrote("a") + wrote("b") + "condensed 2 of 2 files\n");
  EXPECT_EQ(result.messages, "");
}

TEST(Tersify, TheOptionTakesTheSameList) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("list", "a\n");
  const Outcome result = run_small({"--list", "list"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, wrote("a"));
}

TEST(Tersify, AnAnswerWithoutLineEndIsAnAnswer) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("list", "a\n");
  EXPECT_EQ(run_small({}, "list").status, 0);
}

TEST(Tersify, NoAnswerIsWrongUsage) {
  Outcome result = run({}, "");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.output, kPrompt + "\n");
  EXPECT_EQ(result.messages,
            "tersify: the input ended before a list file was named\n"
            "Try 'tersify --help' for more information.\n");
  result = run({}, " \n");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.messages,
            "tersify: no list file was named\n"
            "Try 'tersify --help' for more information.\n");
}

TEST(Tersify, AListThatIsNotThereIsAFailure) {
  const TemporaryFolder folder;
  const Outcome result = run({}, "nowhere\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "tersify: cannot read 'nowhere': No such file or directory\n");
}

TEST(Tersify, TheListItselfIsNotReplaced) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("a.new", "a\n");
  const Outcome result = run_small({"--list", "a.new"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "tersify: 'a.new' is the same file as 'a.new'; nothing was written\n"
            "tersify: not condensed: 'a'\n");
  EXPECT_EQ(folder_content()["a.new"], "a\n");
  EXPECT_EQ(run_small({}, "a.new\n").status, 1);
  EXPECT_EQ(folder_content()["a.new"], "a\n");
}

TEST(Tersify, AnotherFileOfTheRunIsNotReplaced) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("a.new.part", kTwelve);
  const Outcome result = run_small({"a", "a.new.part"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages,
            "tersify: 'a.new.part' is the same file as 'a.new.part'; nothing was "
            "written\ntersify: not condensed: 'a'\n");
  EXPECT_EQ(folder_content()["a.new.part"], kTwelve);
}

TEST(Tersify, TheAnswersAreNotReplaced) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  write_file("list", "a\n");
  write_file("a.new", "list\n");
  const int answers = ::open("a.new", O_RDONLY | O_CLOEXEC);
  std::ostringstream output;
  std::ostringstream messages;
  EXPECT_EQ(
      run_tersify(
          {}, {.input = answers, .output = output, .messages = {.stream = messages}}),
      1);
  ::close(answers);
  EXPECT_EQ(messages.str(),
            "tersify: 'a.new' is the same file as the standard input; nothing was "
            "written\ntersify: not condensed: 'a'\n");
  EXPECT_EQ(folder_content()["a.new"], "list\n");
}

TEST(Tersify, ACondensedFileIsNotCondensedAgain) {
  const TemporaryFolder folder;
  write_file("a.new", repeated(12, kCondensed));
  const Outcome result = run_small({"a.new"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.messages,
            "tersify: 'a.new' is condensed already\n"
            "tersify: not condensed: 'a.new'\n");
  EXPECT_EQ(folder_content().size(), 1U);
}

TEST(Tersify, ControlCharactersInNamesAreReplaced) {
  const TemporaryFolder folder;
  const std::string name = "a\x1b[31m\n";
  write_file(name, kTwelve);
  Outcome result = run_small({name, "no\x1b[2J"});
  EXPECT_EQ(result.output.find('\x1b'), std::string::npos);
  EXPECT_TRUE(result.output.starts_with("wrote 'a?[31m?.new': 12 lines, "));
  EXPECT_EQ(result.messages,
            "tersify: cannot read 'no?[2J': No such file or directory\n"
            "tersify: not condensed: 'no?[2J'\n");
  result = run_small({"--\x1b[2J"});
  EXPECT_TRUE(result.messages.starts_with("tersify: unknown option '--?[2J'\n"));
  write_file(name, "\x1b[31m\n");
  result = run_small({name});
  EXPECT_TRUE(result.messages.starts_with(
      "tersify: 'a?[31m?': line 1, field 1: '?[31m' is not an integer\n"));
}

TEST(Tersify, CheckReportsOnEachFile) {
  const TemporaryFolder folder;
  write_file("a", repeated(12, kCondensed));
  write_file("b", repeated(11, kCondensed));
  write_file("c", repeated(3, kCondensed) + "\n");
  Outcome result = run_small({"--check", "a", "b", "c", "d"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output,
            "'a': complete: 1 year, 1901\n"
            "'b': the file ends after 11 of 12 lines; the next is line 12 (year 1901, "
            "December, row 1)\n"
            "'c': line 4 (year 1901, April, row 1), column 1: the line ends after 0 of "
            "3600 characters\n");
  EXPECT_EQ(result.messages, "tersify: cannot read 'd': No such file or directory\n");
  EXPECT_EQ(run_small({"--check", "a"}).status, 0);
}

TEST(Tersify, OneFaultyFileIsAFailureWhereverItStands) {
  const TemporaryFolder folder;
  write_file("faulty", kCondensed);
  write_file("good", repeated(12, kCondensed));
  EXPECT_EQ(run_small({"--check", "faulty", "good"}).status, 1);
  EXPECT_EQ(run_small({"--check", "good", "faulty"}).status, 1);
  EXPECT_EQ(run_small({"--check", "missing", "good"}).status, 1);
}

TEST(Tersify, AWarningIsNoFailure) {
  const TemporaryFolder folder;
  const std::string empty = repeated(720, " -999") + "\n";
  write_file("a", repeated(11, empty) + repeated(719, " -999") + "    7\n");
  const Outcome result = run_small({"--check", "a"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output,
            "'a': complete: 1 year, 1901\n"
            "warning: 'a': line 12 (year 1901, December, row 1), column 720: a value, "
            "and the first month has none there\n");
}

TEST(Tersify, WhatItMakesPassesItsOwnCheck) {
  const TemporaryFolder folder;
  write_file("a", kTwelve);
  run_small({"a"});
  EXPECT_EQ(run_small({"--check", "a.new"}).output,
            "'a.new': complete: 1 year, 1901\n");
}

}  // namespace
}  // namespace veldmark::tersify
