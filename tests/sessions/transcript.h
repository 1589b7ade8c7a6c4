// Transcripts: whole sessions as text, the data they run on, and all they must give.
//
//   # what the case shows
//   data ...            how the folder is prepared, see prepared_data.h
//   answers             the answers alone, a line each: a case whose screen is not yet
//                       written (see README.md in this folder)
//   status N            the exit status
//   --- screen          the screen, in the notation of support/session.h; a line @NAME
//   ...
//                       stands for the lines of blocks/NAME.txt, see blocks.h
//   --- stderr          standard error, |line| each; without this section: nothing
//   --- file NAME       a plain file with the mode 644 that the session leaves, |line|
//                       each; with another one: --- file NAME mode 640. All files
//                       count: beside these and the unchanged data there must be none.

#ifndef VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_
#define VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "sessions/blocks.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {

struct Transcript {
  std::vector<std::string> comments;
  std::vector<std::string> data;
  int status = 0;
  std::vector<std::string> screen;  // blocks spelt out
  std::string errors;
  std::map<std::string, FolderEntry> files;
  std::vector<std::string> answers;  // as the screen, or the answers section, has them
};

// Fails the test where a line is not understood.
Transcript read_transcript(const std::filesystem::path& path, const Blocks& blocks);

// Writes `transcript` to `path`, with blocks in place of their lines.
void write_transcript(const std::filesystem::path& path, const Transcript& transcript,
                      const Blocks& blocks);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_
