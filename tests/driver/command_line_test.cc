// Runs the program as a process with arguments: what it writes where, and its exit
// status.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temporary_folder.h"

namespace veldmark::testing {
namespace {

const std::string kUsage =
    "Usage: veldmark\n"
    "       veldmark --help | --version\n";

// Runs the program in the current folder with `arguments`, which the shell parses. If
// it starts a session, the answers end it at the menu. Returns the exit status, -1
// after a signal.
int run_with(const std::string& arguments) {
  write_file("answers", "\n\n0\n");
  const std::string command =
      "'" VELDMARK_PROGRAM "' < answers > screen 2> errors " + arguments;
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void expect_refused(const std::string& arguments, const std::string& named) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_with(arguments), 2) << arguments;
  EXPECT_EQ(file_content("screen"), "") << arguments;
  EXPECT_EQ(file_content("errors"),
            "veldmark: unexpected argument '" + named + "'\n" + kUsage);
}

const std::string kHelp = R"(
Cuts monthly climate series out of condensed CRU TS 4.01 grid files. Without arguments
it asks for a variable, a region and a span of years. Start it in the folder that holds
the grid files:

  cru_ts4.01.1901.2016.VAR.dat.new
                    VAR is one of pre tmp dtr tmn tmx vap pet cld frs wet
  scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new
                    the drought index

The extract is written beside the grid file: its name and .TSF (the series), .XY (the
cells) and .ftst (the variance report, where it is asked for).

  --help     show this text
  --version  show the version

Exit status: 0 when the session was ended by an answer or by a fault in the grid file
that the screen tells of, 2 for a wrong command line, 255 after a run-time error.
)";

TEST(ProgramArguments, HelpSaysWhatTheProgramDoesAndNeeds) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_with("--help"), 0);
  EXPECT_EQ(file_content("errors"), "");
  EXPECT_EQ(file_content("screen"), kUsage + kHelp);
}

TEST(ProgramArguments, AFullDiskIsReported) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_with("--help > /dev/full"), 255);
  EXPECT_EQ(file_content("errors"), "veldmark: standard output cannot be written\n");
}

TEST(ProgramArguments, HelpLinesFitATerminal) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_with("--help"), 0);
  const std::string help = file_content("screen");
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = help.find('\n', begin)) != std::string::npos;) {
    EXPECT_LE(end - begin, 88U) << help.substr(begin, end - begin);
    begin = end + 1;
  }
  EXPECT_EQ(begin, help.size());
}

TEST(ProgramArguments, VersionIsTheProjects) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_with("--version"), 0);
  EXPECT_EQ(file_content("screen"), "veldmark " VELDMARK_PROJECT_VERSION "\n");
  EXPECT_EQ(file_content("errors"), "");
}

TEST(ProgramArguments, TheFirstOfTwoCounts) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_with("--version --help"), 0);
  EXPECT_EQ(file_content("screen"), "veldmark " VELDMARK_PROJECT_VERSION "\n");
}

TEST(ProgramArguments, RefusesAnyOtherArgument) {
  expect_refused("tmp", "tmp");
  expect_refused("-h", "-h");
  expect_refused("--hel", "--hel");
  expect_refused("--help=1", "--help=1");
  expect_refused("--", "--");
  expect_refused("''", "");
  expect_refused("--help tmp", "tmp");
}

TEST(ProgramArguments, ShowsNoControlCharacters) {
  expect_refused("\"$(printf '\\033[2Jx')\"", "?[2Jx");
}

TEST(ProgramArguments, WithoutArgumentsTheSessionStarts) {
  const TemporaryFolder folder;
  EXPECT_EQ(run_with(""), 0);
  EXPECT_NE(file_content("screen").find("Program Veldmark_v24"), std::string::npos);
  EXPECT_TRUE(file_content("screen").ends_with("\nProgram Terminating\n"));
}

}  // namespace
}  // namespace veldmark::testing
