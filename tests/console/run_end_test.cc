#include "console/run_end.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace veldmark {
namespace {

TEST(RunEnd, HasNoReportIfQuiet) {
  const RunEnd end = RunEnd::quiet();
  EXPECT_EQ(end.status(), 0);
  EXPECT_EQ(end.report(), "");
}

TEST(RunEnd, ByAnErrorReportsThreeLines) {
  const RunEnd end =
      RunEnd::error("What is wrong", Operation::kRead, Channel::kGridFile);
  EXPECT_EQ(end.status(), 255);
  EXPECT_EQ(end.report(), "Run-time error:\nWhat is wrong\n? READ(UNIT=13,...\n");
}

TEST(RunEnd, NamesOperationsAndChannels) {
  const auto last_line = [](Operation operation, Channel channel) {
    const std::string report = RunEnd::error("", operation, channel).report();
    return report.substr(report.find('?'));
  };
  EXPECT_EQ(last_line(Operation::kOpen, Channel::kConsole), "? OPEN(UNIT=5,...\n");
  EXPECT_EQ(last_line(Operation::kRead, Channel::kTimeSeries), "? READ(UNIT=14,...\n");
  EXPECT_EQ(last_line(Operation::kWrite, Channel::kCellList), "? WRITE(UNIT=15,...\n");
  EXPECT_EQ(last_line(Operation::kWrite, Channel::kVarianceReport),
            "? WRITE(UNIT=16,...\n");
}

TEST(RunEnd, NamesTheFileAndTheReason) {
  EXPECT_EQ(cannot_open("a name", Channel::kGridFile).report(),
            "Run-time error:\nCannot open file: a name\n? OPEN(UNIT=13,...\n");
  EXPECT_EQ(cannot_read("a name", EIO, Channel::kGridFile).report(),
            "Run-time error:\nCannot read file: a name: Input/output error\n"
            "? READ(UNIT=13,...\n");
  EXPECT_EQ(
      cannot_write("a name", ENOSPC, Operation::kWrite, Channel::kCellList).report(),
      "Run-time error:\nCannot write file: a name: No space left on device\n"
      "? WRITE(UNIT=15,...\n");
  EXPECT_EQ(cannot_write("a name", EIO, Operation::kOpen, Channel::kCellList).report(),
            "Run-time error:\nCannot write file: a name: Input/output error\n"
            "? OPEN(UNIT=15,...\n");
}

TEST(RunEnd, ReportsLackOfMemory) {
  EXPECT_EQ(not_enough_memory().status(), 255);
  EXPECT_EQ(not_enough_memory().report(),
            "Run-time error:\nNot enough memory\n? READ(UNIT=13,...\n");
}

TEST(RunEnd, HasMessagesForBadNumbersAndTheEndOfTheInput) {
  EXPECT_STREQ(kIllegalCharacter, "Illegal character in numeric input");
  EXPECT_STREQ(kPastEndOfFile, "Attempt to read past end of file");
}

}  // namespace
}  // namespace veldmark
