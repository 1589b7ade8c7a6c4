// Transcripts: whole sessions as text, the data they run on, and all they must give.
//
//   # what the case shows
//   data ...            how the folder is prepared, see prepare_data
//   answers             the answers alone, a line each: a case whose screen is not yet
//                       written (see README.md in this folder)
//   status N            the exit status
//   --- screen          the screen, in the notation of support/session.h; a line @NAME
//                       stands for the lines of blocks/NAME.txt
//   --- stderr          standard error, |line| each; without this section: nothing
//   --- file NAME       a file that the session leaves, |line| each. All files count:
//                       beside these and the unchanged data there must be none.

#ifndef VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_
#define VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark::testing {

struct Transcript {
  std::vector<std::string> comments;
  std::vector<std::string> data;
  int status = 0;
  std::vector<std::string> screen;  // blocks spelt out
  std::string errors;
  std::map<std::string, std::string> files;
  std::vector<std::string> answers;  // as the screen, or the answers section, has them
};

using Blocks = std::map<std::string, std::vector<std::string>>;

Blocks read_blocks(const std::filesystem::path& folder);

Transcript read_transcript(const std::filesystem::path& path, const Blocks& blocks);

// Writes `transcript` to `path`, with the longest known blocks in place of their lines.
void write_transcript(const std::filesystem::path& path, const Transcript& transcript,
                      const Blocks& blocks);

// Prepares the current folder. Each line is one of
//   grid VARIABLE LAST_YEAR FIRST_ROW-LAST_ROW MISSING
//                                      a grid file with full lines for these rows and
//                                      empty ones for all others
//   series VARIABLE YEAR ROW COLUMN V1 ... V12    twelve months of a cell
//   constant VARIABLE FIRST_YEAR-LAST_YEAR ROW COLUMN V    all months of a cell
//   value VARIABLE YEAR MONTH ROW COLUMN V        one month of a cell
//   field VARIABLE YEAR MONTH ROW COLUMN |five|   five characters as they are
//   line VARIABLE YEAR MONTH ROW |text|           a whole line
//   crlf VARIABLE                                 CR LF line ends
//   cut VARIABLE YEAR MONTH ROW CHARACTERS        the file ends in that line
//   folder NAME                                   a folder of that name
//   file NAME |text|                              a file with one line
void prepare_data(const std::vector<std::string>& lines);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_
