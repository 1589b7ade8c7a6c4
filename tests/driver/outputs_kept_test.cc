// What a search must not overwrite: the outputs of another run, the data file, and its
// own outputs.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "driver/running_program.h"
#include "support/grid_text.h"
#include "support/session.h"
#include "support/temporary_folder.h"
#include "util/file_descriptor.h"

namespace veldmark::testing {
namespace {

const std::string kData = data_file_name("pre");

struct Output {
  std::string name;
  int unit;
};

const std::array<Output, 3> kOutputs{
    {{kData + ".TSF", 14}, {kData + ".XY", 15}, {kData + ".ftst", 16}}};
const std::string kTsf = kOutputs[0].name;
const std::string kXy = kOutputs[1].name;
const std::string kFtst = kOutputs[2].name;

const std::string kOld = "of an earlier search\n";

// Returns a file of 1901 and 1902 with values in rows 283 and 284; each value is
// different.
std::string grid_text() {
  GridText grid(1902, 283, 284, -999);
  for (int row = 283; row <= 284; ++row) {
    for (int column = 361; column <= 364; ++column) {
      for (int month = 0; month < 24; ++month) {
        grid.set_value(1901 + month / 12, month % 12 + 1, row, column,
                       1000 * (row - 282) + 100 * (column - 360) + month);
      }
    }
  }
  return grid.text();
}

// The answers up to the maximum latitude; by then the outputs are open.
const std::vector<std::string> kToTheRegion{"", "", "1", "", ""};
const std::vector<std::string> kSearch{"52.0", "51.0", "2.0", "0.0", "T", "1901",
                                       "1902", "T",    "1",   "y",   "T", "1902"};

std::vector<std::string> session() {
  std::vector<std::string> answers = kToTheRegion;
  answers.insert(answers.end(), kSearch.begin(), kSearch.end());
  answers.emplace_back("F");
  return answers;
}

std::string typed(const std::vector<std::string>& answers) {
  std::string text;
  for (const std::string& answer : answers) {
    text += answer + "\n";
  }
  return text;
}

std::string cannot_open(const std::string& name, int unit) {
  return "Run-time error:\nCannot open file: " + name +
         "\n? OPEN(UNIT=" + std::to_string(unit) + ",...\n";
}

// The outputs of a search that runs alone.
std::map<std::string, std::string> right_outputs() {
  const TemporaryFolder folder;
  write_file(kData, grid_text());
  EXPECT_EQ(run_session(session()).status, 0);
  std::map<std::string, std::string> outputs = folder_content();
  outputs.erase(kData);
  EXPECT_EQ(outputs.size(), kOutputs.size());
  return outputs;
}

void expect_right_outputs() {
  for (const auto& [name, content] : right_outputs()) {
    EXPECT_EQ(file_content(name), content) << name;
  }
}

TEST(TwoRuns, DoNotLoseTheOutputOfTheFirst) {
  const TemporaryFolder folder;
  write_file(kData, grid_text());
  RunningProgram first;
  first.type(typed(kToTheRegion));
  first.wait_for("[TOP]   ==> ");

  RunningProgram second;
  second.type(typed(session()));
  EXPECT_EQ(second.end(), 255);
  EXPECT_EQ(second.errors(), cannot_open(kTsf + ": another run is writing it", 14));

  first.type(typed(kSearch));
  first.wait_for("Perform another search?\n [t]rue [f]alse ==> ");
  expect_right_outputs();

  // By now the outputs are complete and closed, and another run may use them.
  RunningProgram third;
  third.type(typed(session()));
  EXPECT_EQ(third.end(), 0) << third.errors();
  first.type("F\n");
  EXPECT_EQ(first.end(), 0) << first.errors();
  expect_right_outputs();
}

TEST(TwoRuns, DoNotLoseTheOutputOfAnotherSearch) {
  const TemporaryFolder folder;
  write_file(kData, grid_text());
  std::vector<std::string> answers = session();
  answers.back() = "T";
  answers.emplace_back("F");
  for (const char* answer : {"", "1", "", "1", "y", "T", "1902", "F"}) {
    answers.emplace_back(answer);
  }
  const SessionResult result = run_session(answers);
  EXPECT_EQ(result.status, 0) << result.errors;
  expect_right_outputs();
}

TEST(TwoRuns, OfDifferentVariablesDoNotDisturbEachOther) {
  const TemporaryFolder folder;
  write_file(kData, grid_text());
  write_file(data_file_name("tmp"), grid_text());
  RunningProgram first;
  first.type(typed({"", "", "2", "", ""}));
  first.wait_for("[TOP]   ==> ");
  RunningProgram second;
  second.type(typed(session()));
  EXPECT_EQ(second.end(), 0) << second.errors();
  expect_right_outputs();
}

// Another run may hold the lock of any of the three.
TEST(TwoRuns, DoNotLoseALockedOutput) {
  for (const Output& output : kOutputs) {
    const TemporaryFolder folder;
    write_file(kData, grid_text());
    write_file(output.name, kOld);
    const FileDescriptor other_run(output.name, O_RDWR);
    ASSERT_EQ(::flock(other_run.get(), LOCK_EX), 0);
    const SessionResult result = run_session(session());
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.errors,
              cannot_open(output.name + ": another run is writing it", output.unit));
    EXPECT_EQ(file_content(output.name), kOld);
  }
}

enum class Link { kSymbolic, kHard };

void make_link(Link kind, const std::string& target, const std::string& name) {
  if (kind == Link::kSymbolic) {
    std::filesystem::create_symlink(target, name);
  } else {
    std::filesystem::create_hard_link(target, name);
  }
}

TEST(OutputsThatAreLinks, DoNotLoseTheDataFile) {
  for (const Output& output : kOutputs) {
    for (const Link kind : {Link::kSymbolic, Link::kHard}) {
      const TemporaryFolder folder;
      write_file(kData, grid_text());
      make_link(kind, kData, output.name);
      const SessionResult result = run_session(session());
      EXPECT_EQ(result.status, 255);
      EXPECT_EQ(result.errors, cannot_open(output.name, output.unit));
      EXPECT_TRUE(file_content(kData) == grid_text()) << output.name;
    }
  }
}

TEST(OutputsThatAreLinks, DoNotLoseTheOtherOutput) {
  for (const std::string& name : {kTsf, kXy}) {
    const TemporaryFolder folder;
    write_file(kData, grid_text());
    make_link(Link::kHard, kData, name);
    const std::string& other = name == kTsf ? kXy : kTsf;
    write_file(other, kOld);
    EXPECT_EQ(run_session(session()).status, 255);
    EXPECT_EQ(file_content(other), kOld) << other;
  }
}

TEST(OutputsThatAreLinks, ToEachOtherAreNotTruncated) {
  for (const Link kind : {Link::kSymbolic, Link::kHard}) {
    const TemporaryFolder folder;
    write_file(kData, grid_text());
    write_file(kTsf, kOld);
    make_link(kind, kTsf, kXy);
    const SessionResult result = run_session(session());
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.errors, cannot_open(kXy, 15));
    EXPECT_EQ(file_content(kTsf), kOld);
  }
}

TEST(OutputsThatAreLinks, ToOneNewFileAreRefused) {
  const TemporaryFolder folder;
  write_file(kData, grid_text());
  std::filesystem::create_symlink("both", kTsf);
  std::filesystem::create_symlink("both", kXy);
  const SessionResult result = run_session(session());
  EXPECT_EQ(result.status, 255);
  EXPECT_EQ(result.errors, cannot_open(kXy, 15));
  EXPECT_EQ(file_content("both"), "");
}

TEST(OutputsThatAreLinks, AreRefusedForTheReportToo) {
  for (const std::string& target : {kTsf, kXy}) {
    const TemporaryFolder folder;
    write_file(kData, grid_text());
    std::filesystem::create_symlink(target, kFtst);
    const SessionResult result = run_session(session());
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.errors, cannot_open(kFtst, 16));
    EXPECT_EQ(file_content(target), "");
  }
}

// A link to any other file is followed, and a device accepts anything.
TEST(OutputsThatAreLinks, ToOtherFilesAreFollowed) {
  const TemporaryFolder folder;
  write_file(kData, grid_text());
  write_file("elsewhere", kOld);
  std::filesystem::create_symlink("elsewhere", kTsf);
  std::filesystem::create_symlink("/dev/null", kXy);
  std::filesystem::create_symlink("/dev/null", kFtst);
  EXPECT_EQ(run_session(session()).status, 0);
  const std::string written = file_content("elsewhere");
  EXPECT_EQ(written, right_outputs().at(kTsf));
}

TEST(Pipes, InPlaceOfAnOutputDoNotBlockTheRun) {
  for (const Output& output : kOutputs) {
    const TemporaryFolder folder;
    write_file(kData, grid_text());
    ASSERT_EQ(::mkfifo(output.name.c_str(), 0666), 0);
    RunningProgram program([] { ::alarm(10); });
    program.type(typed(session()));
    EXPECT_EQ(program.end(), 255);
    EXPECT_EQ(program.errors(), cannot_open(output.name, output.unit));
  }
}

TEST(Pipes, InPlaceOfTheDataFileWaitForAWriter) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo(kData.c_str(), 0666), 0);
  RunningProgram program;
  program.type(typed(session()));
  program.wait_for(
      "doi:10.5285/58a8802721c94c66ae45c3baa4d814d0\n\n "
      "Hit RETURN to continue\n");
  program.wait_until_idle();
  EXPECT_FALSE(std::filesystem::exists(kTsf));
  std::thread writer([] { write_file(kData, grid_text()); });
  EXPECT_EQ(program.end(), 0) << program.errors();
  writer.join();
  expect_right_outputs();
}

void set_non_blocking(int descriptor) {
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

// Another program on the same terminal may have set it to non-blocking.
TEST(NonBlockingStreams, LoseNoAnswer) {
  const TemporaryFolder folder;
  write_file(kData, grid_text());
  RunningProgram program([] { set_non_blocking(STDIN_FILENO); });
  program.wait_for("Hit RETURN to CONTINUE\n");
  program.wait_until_idle();
  program.type(typed(session()));
  EXPECT_EQ(program.end(), 0) << program.errors();
  expect_right_outputs();
}

// More output than fits into a pipe: a latitude that is asked for again and again.
const std::string kManyWrongAnswers = [] {
  std::string text;
  for (int i = 0; i < 200; ++i) {
    text += "none\n";
  }
  return text;
}();

TEST(NonBlockingStreams, LoseNoOutput) {
  const TemporaryFolder folder;
  write_file(kData, grid_text());
  RunningProgram waiting;
  waiting.type(typed(kToTheRegion) + kManyWrongAnswers);
  EXPECT_EQ(waiting.end(), 255);

  constexpr int kPipeSize = 4096;
  RunningProgram program([] {
    ::fcntl(STDOUT_FILENO, F_SETPIPE_SZ, kPipeSize);
    set_non_blocking(STDOUT_FILENO);
  });
  program.type(typed(kToTheRegion));
  program.wait_for("[TOP]   ==> ");
  program.type(kManyWrongAnswers);
  program.wait_for_unread(kPipeSize - 1024);
  program.wait_until_idle();  // the pipe is full
  EXPECT_EQ(program.end(), 255);
  EXPECT_TRUE(program.screen() == waiting.screen());
  EXPECT_EQ(program.errors(), waiting.errors());
}

}  // namespace
}  // namespace veldmark::testing
