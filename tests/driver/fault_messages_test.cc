#include "driver/fault_messages.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>
#include <string>

namespace veldmark {
namespace {

using Kind = FileFault::Kind;

std::string report_of(Kind kind, const std::string& name, int error_number) {
  const RunEnd end = run_end_for(FileFault(kind, name, error_number));
  EXPECT_EQ(end.status(), 255);
  return end.report();
}

TEST(FaultMessages, NameTheFileAndItsChannel) {
  EXPECT_EQ(report_of(Kind::kNotOpened, "pre.dat.new", ENOENT),
            "Run-time error:\nCannot open file: pre.dat.new\n? OPEN(UNIT=13,...\n");
  EXPECT_EQ(report_of(Kind::kNotOpened, "pre.dat.new.TSF", 0),
            "Run-time error:\nCannot open file: pre.dat.new.TSF\n? OPEN(UNIT=14,...\n");
  EXPECT_EQ(report_of(Kind::kWrittenByAnotherRun, "pre.dat.new.XY", 0),
            "Run-time error:\nCannot open file: pre.dat.new.XY: another run is writing "
            "it\n? OPEN(UNIT=15,...\n");
  EXPECT_EQ(report_of(Kind::kNotRead, "pre.dat.new", EIO),
            "Run-time error:\nCannot read file: pre.dat.new: Input/output error\n"
            "? READ(UNIT=13,...\n");
  EXPECT_EQ(report_of(Kind::kNotWritten, "frs.dat.new.ftst", ENOSPC),
            "Run-time error:\nCannot write file: frs.dat.new.ftst: No space left on "
            "device\n? WRITE(UNIT=16,...\n");
}

struct Said {
  std::string screen;
  RunEnd end;
};

Said said_of(const ReadFault::Fact& fact, bool CrossesDateLine) {
  std::istringstream input;
  std::ostringstream output;
  ConsoleDialogue console(input, output, [](const std::string&) {});
  const RunEnd end =
      run_end_for(console, ReadFault("pre.dat.new", fact), CrossesDateLine);
  return {output.str(), end};
}

TEST(FaultMessages, NameABadFieldByTheNumberOfColumnRanges) {
  const std::string rest =
      " Program Terminating Without Completion\n"
      " Try re-entering your search criteria again being sure to\n"
      " enter values as real numbers\n";
  const Said one_range = said_of(BadField{.line = 1, .field = 2}, false);
  EXPECT_EQ(one_range.screen, "\n Error Reading Grid Values: R1\n" + rest);
  EXPECT_EQ(one_range.end.status(), 0);
  const Said two_ranges = said_of(BadField{.line = 1, .field = 2}, true);
  EXPECT_EQ(two_ranges.screen, "\n Error Reading Grid Values: R2\n" + rest);
  EXPECT_EQ(two_ranges.end.status(), 0);
}

TEST(FaultMessages, ShowThePaddedNameAtTheEndOfTheFile) {
  const Said said = said_of(EndAtRequestedLine{.line = 1}, false);
  EXPECT_EQ(said.screen, "\n End Of File Reached Prematurely :pre.dat.new" +
                             std::string(54, ' ') +
                             "\n This should not happen.  Check file for complete "
                             "content\n Program Terminating \n\n");
  EXPECT_EQ(said.end.status(), 0);
}

TEST(FaultMessages, ReportTheEndInASkippedLineAsARunTimeError) {
  const Said said = said_of(EndAtSkippedLine{.line = 1}, false);
  EXPECT_EQ(said.screen, "");
  EXPECT_EQ(said.end.report(),
            "Run-time error:\nAttempt to read past end of file\n? READ(UNIT=13,...\n");
}

}  // namespace
}  // namespace veldmark
