// Runs the program as a process: exit status, standard error, the order of output and
// shell commands, and output that cannot be written.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "driver/running_program.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

// Runs the program in the current folder with `answers` as its input; `redirection` is
// for standard output and standard error. `clear` and `ls` are replaced by scripts that
// write their name and arguments. Returns the exit status, -1 after a signal.
int run_program_with(const std::string& answers, const std::string& redirection) {
  make_stand_ins();
  write_file("answers", answers);
  const std::string command =
      "PATH=\"$PWD/bin:$PATH\" '" VELDMARK_PROGRAM "' < answers " + redirection;
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool in_order(const std::string& text, const std::string& first,
              const std::string& second) {
  const std::size_t place = text.find(first);
  return place != std::string::npos && text.find(second, place) != std::string::npos;
}

TEST(Program, EndsWithStatusZeroAtTheMenu) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_program_with("\n\n0\n", "> screen 2> errors"), 0);
  EXPECT_EQ(file_content("errors"), "");
  const std::string screen = file_content("screen");
  EXPECT_TRUE(
      screen.ends_with("Enter a value from 0 to 11 ==>  \nProgram Terminating\n"));
}

TEST(Program, FlushesBeforeItRunsACommand) {
  const TemporaryFolder folder;
  write_file("a.dat.new", "");
  run_program_with("\n\n0\n", "> screen 2> errors");
  const std::string screen = file_content("screen");
  EXPECT_TRUE(screen.starts_with("$ clear \n\n Program Veldmark_v24"));
  EXPECT_TRUE(in_order(screen, " Hit RETURN to CONTINUE\n$ clear \n$ ls a.dat.new\n",
                       "    Select the Variable"));
}

TEST(Program, ReportsARunTimeErrorWithStatus255) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_program_with("\n\n3x\n", "> screen 2> errors"), 255);
  EXPECT_EQ(file_content("errors"),
            "Run-time error:\nIllegal character in numeric input\n? READ(UNIT=5,...\n");
}

TEST(Program, WritesTheScreenBeforeTheReport) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_program_with("\n\n3x\n", "> both 2>&1"), 255);
  EXPECT_TRUE(in_order(file_content("both"), "Enter a value from 0 to 11 ==> Run-time",
                       "? READ(UNIT=5,...\n"));
}

TEST(Program, EndsWithoutInput) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_program_with("", "> screen 2> errors <&-"), 255);
  EXPECT_TRUE(in_order(file_content("errors"), "Attempt to read past end of file\n",
                       "? READ(UNIT=5,...\n"));
}

// An output must not get the descriptor of a closed stream: an error report would be
// written to the file.
TEST(Program, GivesNoFileTheDescriptorOfAClosedStream) {
  const TemporaryFolder folder;
  write_file("cru_ts4.01.1901.2016.pre.dat.new", std::string(4320, '\n'));
  RunningProgram program([] { ::close(STDERR_FILENO); });
  program.type("\n\n1\n\n\n");
  program.wait_for("[TOP]   ==> ");
  EXPECT_EQ(program.file_of(STDERR_FILENO), "/dev/null");
  EXPECT_EQ(program.end(), 255);
}

TEST(Program, ReportsAScreenThatCannotBeWritten) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_program_with("\n\n0\n", "> /dev/full 2> errors"), 255);
  EXPECT_TRUE(file_content("errors").ends_with(
      "Run-time error:\nCannot write file: standard output: No space left on device\n"
      "? WRITE(UNIT=5,...\n"));
}

TEST(Program, ReportsAFullDiskWhileSaving) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP();
  const TemporaryFolder folder;
  std::filesystem::create_symlink("/dev/full", "cru_ts4.01.1901.2016.pre.dat.new.XY");
  write_file("cru_ts4.01.1901.2016.pre.dat.new", std::string(4320, '\n'));
  const std::string answers =
      "\n\n1\n\n\n10.25\n10.25\n20.0\n0.0\nT\n1901\n1901\nT\n1\ny\nF\nF\n";
  EXPECT_EQ(run_program_with(answers, "> screen 2> errors"), 255);
  EXPECT_EQ(
      file_content("errors"),
      "Run-time error:\nCannot write file: cru_ts4.01.1901.2016.pre.dat.new.XY: No "
      "space left on device\n? WRITE(UNIT=15,...\n");
  const std::string screen = file_content("screen");
  EXPECT_EQ(screen.find("PROGRAM TERMINATING NORMALLY"), std::string::npos);
  // Output that no question has flushed is not lost.
  EXPECT_NE(screen.find("  Saving Cell data : 1901 - 1901\n"), std::string::npos);
}

}  // namespace
}  // namespace veldmark::testing
